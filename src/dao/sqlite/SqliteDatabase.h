#pragma once

#include "dao/Database.h"
#include "dao/sqlite/TableShape.h"
#include <QHash>
#include <memory>

namespace dao::sqlite {

class Connection;

struct StoredQuery {
    QString name;
    QString sql;
    QString table; // edited by its dynaset; may be empty
};

class SqliteDatabase : public Database, public std::enable_shared_from_this<SqliteDatabase> {
public:
    explicit SqliteDatabase(std::shared_ptr<Connection> connection);

    int SchemaVersion() const override { return m_schemaVersion; }
    std::unique_ptr<Recordset> OpenTable(const QString& name, bool appendOnly) override;
    std::unique_ptr<Recordset> OpenSnapshot(const QString& queryNameOrSql) override;
    std::unique_ptr<Recordset> OpenDynaset(const QString& queryNameOrSql) override;
    std::unique_ptr<dao::QueryDef> QueryDef(const QString& name) override;
    int FieldSize(const QString& table, const QString& field) override;

    std::unique_ptr<Recordset> OpenQueryDynaset(const StoredQuery& query);

private:
    std::shared_ptr<const TableShape> Table(const QString& name);
    std::shared_ptr<const StoredQuery> Query(const QString& name); // empty when there is none

    std::shared_ptr<Connection> m_connection;
    int m_schemaVersion;
    QHash<QString, std::shared_ptr<const TableShape>> m_tables;   // by lower-case name
    QHash<QString, std::shared_ptr<const StoredQuery>> m_queries; // by lower-case name
};

} // namespace dao::sqlite
