#pragma once

#include "dao/Database.h"
#include "dao/TableShape.h"
#include <QHash>
#include <memory>

namespace dao {

class Engine;

struct StoredQuery {
    QString name;
    QString sql;
    QString table; // edited by its dynaset; may be empty
};

// The database of a workspace, on any engine.
class EngineDatabase : public Database, public std::enable_shared_from_this<EngineDatabase> {
public:
    explicit EngineDatabase(std::shared_ptr<Engine> engine);

    int SchemaVersion() const override { return m_schemaVersion; }
    QString Id() const override { return m_id; }
    std::unique_ptr<Recordset> OpenTable(const QString& name, bool appendOnly) override;
    std::unique_ptr<Recordset> OpenSnapshot(const QString& queryNameOrSql) override;
    std::unique_ptr<Recordset> OpenDynaset(const QString& queryNameOrSql) override;
    std::unique_ptr<dao::QueryDef> QueryDef(const QString& name) override;
    int FieldSize(const QString& table, const QString& field) override;

    std::unique_ptr<Recordset> OpenQueryDynaset(const StoredQuery& query);

private:
    QString Info(const QString& name);
    std::shared_ptr<const TableShape> Table(const QString& name);
    std::shared_ptr<const StoredQuery> Query(const QString& name); // empty when there is none

    std::shared_ptr<Engine> m_engine;
    int m_schemaVersion;
    QString m_id;
    QHash<QString, std::shared_ptr<const TableShape>> m_tables;   // by lower-case name
    QHash<QString, std::shared_ptr<const StoredQuery>> m_queries; // by lower-case name
};

} // namespace dao
