#pragma once

#include "dao/records/Recordset.h"
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>
#include <optional>
#include <vector>

namespace dao {

class Engine;

// A query as the database stores it.
struct StoredQuery {
    QString name;
    QString sql;
    QString table; // edited by its dynaset; may be empty

    // All of them, in the order of these fields.
    static constexpr auto AllSql = "SELECT name, sql, table_name FROM stored_query";
};

// A stored query with its parameters. Valid as long as the database is open. Every parameter must be set
// before the query is opened or executed (Kind::MissingParameter); values stay for the next time.
class QueryDef {
public:
    QueryDef(std::shared_ptr<Engine> engine, std::shared_ptr<const StoredQuery> query);
    QueryDef(const QueryDef&) = delete;
    QueryDef& operator=(const QueryDef&) = delete;

    // Parameter names ignore case; one that the query does not have raises Kind::NoSuchParameter.
    void SetParameter(const QString& name, const QVariant& value);

    std::unique_ptr<Recordset> OpenSnapshot();
    // Runs an action query. Returns how many records it changed or deleted.
    int Execute();
    // The same in a transaction of Workspace::BeginTogether, where nobody asks how many.
    void ExecuteLater();

private:
    QVariantList Values() const;
    QVariantList ActionValues() const; // Kind::WrongUse for a query that is none

    std::shared_ptr<Engine> m_engine;
    std::shared_ptr<const StoredQuery> m_query;
    QStringList m_parameterNames;
    std::vector<std::optional<QVariant>> m_values;
};

} // namespace dao
