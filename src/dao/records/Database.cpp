#include "dao/records/Database.h"
#include "dao/base/Error.h"
#include "dao/base/Names.h"
#include "dao/records/AppendRecordset.h"
#include "dao/records/EditBuffer.h"
#include "dao/records/Engine.h"
#include "dao/records/KeysetRecordset.h"
#include "dao/records/TableShape.h"
#include <algorithm>

namespace dao {

namespace {

// Names of queries and tables hold no white space, a select statement always does.
bool IsSql(const QString& text)
{
    const QString trimmed = text.trimmed();
    return std::any_of(trimmed.begin(), trimmed.end(), [](QChar c) { return c.isSpace(); });
}

} // namespace

Database::Database(std::shared_ptr<Engine> engine) : m_engine(std::move(engine)), m_id(Info("database_id")) {}

bool Database::IsInPlace() const
{
    return m_engine->IsInPlace();
}

QString Database::Fold(const QString& text)
{
    const auto row = m_engine->FirstRow("SELECT kyn_fold(?)", {text});
    return row ? row->first().toString() : text;
}

QString Database::Info(const QString& name)
{
    const auto row = m_engine->FirstRow("SELECT value FROM file_info WHERE name=?", {name});
    return row ? row->first().toString() : QString();
}

std::shared_ptr<const TableShape> Database::Table(const QString& name)
{
    if (!m_engine->IsOpen())
        throw Error(Kind::Closed);
    const QString key = name.toLower();
    if (auto known = m_tables.value(key))
        return known;
    auto shape = m_engine->ReadTable(name);
    m_tables.insert(key, shape);
    return shape;
}

std::shared_ptr<const StoredQuery> Database::Query(const QString& name)
{
    if (!m_engine->IsOpen())
        throw Error(Kind::Closed);
    if (m_queries.isEmpty())
        for (const QVariantList& row : m_engine->AllRows(StoredQuery::AllSql))
            m_queries.insert(row[0].toString().toLower(),
                             std::make_shared<const StoredQuery>(
                                 StoredQuery{row[0].toString(), row[1].toString(), row[2].toString()}));
    return m_queries.value(name.toLower());
}

void Database::ReadAhead(const QList<Reading>& readings)
{
    QList<Request> requests;
    for (const Reading& reading : readings) {
        try {
            requests.append(RequestFor(reading));
        } catch (const Error& error) {
            if (error.kind == Kind::Closed)
                throw;
        }
    }
    m_engine->ReadAhead(requests);
}

Request Database::RequestFor(const Reading& reading)
{
    if (!reading.index.isEmpty())
        return {Table(reading.source)->IndexNamed(reading.index).seekSql, reading.key};
    if (IsSql(reading.source))
        return {reading.source, {}};
    const auto query = Query(reading.source);
    if (!query)
        return {"SELECT * FROM " + Quoted(Table(reading.source)->Name()), {}};
    QVariantList values;
    for (const QString& parameter : m_engine->Parameters(query->sql))
        values.append(reading.parameters.value(parameter));
    return {query->sql, values};
}

void Database::Put(const QString& table, const QList<QPair<QString, QVariant>>& fields)
{
    const auto shape = Table(table);
    EditBuffer record(shape);
    record.Begin(EditBuffer::Kind::Adding);
    for (const auto& [field, value] : fields)
        record.Set(FieldPosition(shape->ColumnNames(), field), value);
    record.Put(*m_engine);
}

std::unique_ptr<Recordset> Database::OpenTable(const QString& name, bool appendOnly)
{
    auto table = Table(name);
    if (appendOnly)
        return std::make_unique<AppendRecordset>(m_engine, std::move(table));
    const QStringList fields = table->ColumnNames();
    return std::make_unique<KeysetRecordset>(m_engine, KeysetSource{std::move(table), fields, {}});
}

void Database::Append(const QString& table, const QStringList& fields,
                      const std::vector<QVariantList>& records)
{
    const QString row = '(' + QStringList(fields.size(), "?").join(", ") + ')';
    const QStringList rows(static_cast<qsizetype>(records.size()), row);
    QVariantList values;
    for (const QVariantList& record : records)
        values += record;
    m_engine->ChangeLater("INSERT INTO " + Quoted(Table(table)->Name()) + " (" + QuotedList(fields) +
                              ") VALUES " + rows.join(", "),
                          values, [](Error&) {});
}

std::unique_ptr<Recordset> Database::OpenSnapshot(const QString& queryNameOrSql)
{
    if (IsSql(queryNameOrSql))
        return m_engine->OpenSnapshot(queryNameOrSql, {}, false);
    if (Query(queryNameOrSql))
        return QueryDef(queryNameOrSql)->OpenSnapshot();
    try {
        return m_engine->OpenSnapshot("SELECT * FROM " + Quoted(Table(queryNameOrSql)->Name()), {}, true);
    } catch (const Error& error) {
        if (error.kind == Kind::NoSuchTable)
            throw Error(Kind::NoSuchQuery, {queryNameOrSql});
        throw;
    }
}

std::unique_ptr<Recordset> Database::OpenDynaset(const QString& queryNameOrSql)
{
    if (IsSql(queryNameOrSql))
        throw Error(Kind::NotUpdatable);
    if (const auto query = Query(queryNameOrSql))
        return OpenQueryDynaset(*query);
    try {
        return OpenQueryDynaset(
            {queryNameOrSql, "SELECT * FROM " + Quoted(Table(queryNameOrSql)->Name()), queryNameOrSql});
    } catch (const Error& error) {
        if (error.kind == Kind::NoSuchTable)
            throw Error(Kind::NoSuchQuery, {queryNameOrSql});
        throw;
    }
}

std::unique_ptr<Recordset> Database::OpenQueryDynaset(const StoredQuery& query)
{
    const StatementShape shape = m_engine->Describe(query.sql);
    if (!shape.isSelect)
        throw Error(Kind::WrongUse, {query.name});
    if (query.table.isEmpty() || !shape.parameters.isEmpty())
        throw Error(Kind::NotUpdatable);
    return std::make_unique<KeysetRecordset>(m_engine,
                                             KeysetSource{Table(query.table), shape.columns, query.sql});
}

std::unique_ptr<dao::QueryDef> Database::QueryDef(const QString& name)
{
    auto query = Query(name);
    if (!query)
        throw Error(Kind::NoSuchQuery, {name});
    return std::make_unique<dao::QueryDef>(m_engine, std::move(query));
}

bool Database::HasField(const QString& table, const QString& field)
{
    return Table(table)->ColumnNames().contains(field, Qt::CaseInsensitive);
}

int Database::FieldSize(const QString& table, const QString& field)
{
    const auto shape = Table(table);
    return shape->Columns()[FieldPosition(shape->ColumnNames(), field)].size;
}

} // namespace dao
