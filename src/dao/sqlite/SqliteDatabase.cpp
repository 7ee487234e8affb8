#include "dao/sqlite/SqliteDatabase.h"
#include "dao/sqlite/AppendRecordset.h"
#include "dao/sqlite/Connection.h"
#include "dao/sqlite/KeysetRecordset.h"
#include "dao/sqlite/SnapshotRecordset.h"
#include "dao/sqlite/SqliteQueryDef.h"
#include <algorithm>

namespace dao::sqlite {

namespace {

// Names of queries and tables hold no white space, a select statement always does.
bool IsSql(const QString& text)
{
    const QString trimmed = text.trimmed();
    return std::any_of(trimmed.begin(), trimmed.end(), [](QChar c) { return c.isSpace(); });
}

} // namespace

SqliteDatabase::SqliteDatabase(std::shared_ptr<Connection> connection)
    : m_connection(std::move(connection)),
      m_schemaVersion(
          m_connection->Value("SELECT value FROM main.file_info WHERE name='schema_version'").toInt())
{
}

std::shared_ptr<const TableShape> SqliteDatabase::Table(const QString& name)
{
    m_connection->Handle();
    const QString key = name.toLower();
    if (auto known = m_tables.value(key))
        return known;
    auto shape = TableShape::Read(*m_connection, name);
    m_tables.insert(key, shape);
    return shape;
}

std::shared_ptr<const StoredQuery> SqliteDatabase::Query(const QString& name)
{
    const QString key = name.toLower();
    if (auto known = m_queries.value(key))
        return known;
    const auto statement =
        m_connection->Kept("SELECT name, sql, table_name FROM main.stored_query WHERE name=?");
    statement->Bind(0, name);
    if (!statement->Step())
        return nullptr;
    auto query = std::make_shared<const StoredQuery>(StoredQuery{
        statement->Column(0).toString(), statement->Column(1).toString(), statement->Column(2).toString()});
    m_queries.insert(key, query);
    return query;
}

std::unique_ptr<Recordset> SqliteDatabase::OpenTable(const QString& name, bool appendOnly)
{
    auto table = Table(name);
    if (appendOnly)
        return std::make_unique<AppendRecordset>(m_connection, std::move(table));
    const QStringList fields = table->ColumnNames();
    return std::make_unique<KeysetRecordset>(m_connection, KeysetSource{std::move(table), fields, {}});
}

std::unique_ptr<Recordset> SqliteDatabase::OpenSnapshot(const QString& queryNameOrSql)
{
    if (IsSql(queryNameOrSql)) {
        auto statement = m_connection->Prepare(queryNameOrSql);
        if (!statement->IsSelect())
            throw Error(Kind::WrongUse, {queryNameOrSql});
        return std::make_unique<SnapshotRecordset>(std::move(statement));
    }
    if (Query(queryNameOrSql))
        return QueryDef(queryNameOrSql)->OpenSnapshot();
    try {
        return std::make_unique<SnapshotRecordset>(
            m_connection->Kept("SELECT * FROM main." + Quoted(Table(queryNameOrSql)->Name())));
    } catch (const Error& error) {
        if (error.kind == Kind::NoSuchTable)
            throw Error(Kind::NoSuchQuery, {queryNameOrSql});
        throw;
    }
}

std::unique_ptr<Recordset> SqliteDatabase::OpenDynaset(const QString& queryNameOrSql)
{
    if (IsSql(queryNameOrSql))
        throw Error(Kind::NotUpdatable);
    if (const auto query = Query(queryNameOrSql))
        return OpenQueryDynaset(*query);
    try {
        return OpenQueryDynaset(
            {queryNameOrSql, "SELECT * FROM main." + Quoted(Table(queryNameOrSql)->Name()), queryNameOrSql});
    } catch (const Error& error) {
        if (error.kind == Kind::NoSuchTable)
            throw Error(Kind::NoSuchQuery, {queryNameOrSql});
        throw;
    }
}

std::unique_ptr<Recordset> SqliteDatabase::OpenQueryDynaset(const StoredQuery& query)
{
    QStringList fields;
    {
        const auto statement = m_connection->Kept(query.sql);
        if (!statement->IsSelect())
            throw Error(Kind::WrongUse, {query.name});
        if (query.table.isEmpty() || !statement->ParameterNames().isEmpty())
            throw Error(Kind::NotUpdatable);
        fields = statement->ColumnNames();
    }
    return std::make_unique<KeysetRecordset>(m_connection,
                                             KeysetSource{Table(query.table), fields, query.sql});
}

std::unique_ptr<dao::QueryDef> SqliteDatabase::QueryDef(const QString& name)
{
    auto query = Query(name);
    if (!query)
        throw Error(Kind::NoSuchQuery, {name});
    return std::make_unique<SqliteQueryDef>(shared_from_this(), m_connection, std::move(query));
}

int SqliteDatabase::FieldSize(const QString& table, const QString& field)
{
    const auto shape = Table(table);
    return shape->Columns()[FieldPosition(shape->ColumnNames(), field)].size;
}

} // namespace dao::sqlite
