#include "dao/sqlite/SqliteQueryDef.h"
#include "dao/sqlite/SnapshotRecordset.h"
#include <sqlite3.h>

namespace dao::sqlite {

SqliteQueryDef::SqliteQueryDef(std::shared_ptr<SqliteDatabase> database,
                               std::shared_ptr<Connection> connection,
                               std::shared_ptr<const StoredQuery> query)
    : m_database(std::move(database)),
      m_connection(std::move(connection)),
      m_query(std::move(query)),
      m_parameterNames(m_connection->Kept(m_query->sql)->ParameterNames()),
      m_values(static_cast<std::size_t>(m_parameterNames.size()))
{
}

void SqliteQueryDef::SetParameter(const QString& name, const QVariant& value)
{
    for (qsizetype i = 0; i < m_parameterNames.size(); ++i) {
        if (m_parameterNames[i].compare(name, Qt::CaseInsensitive) != 0)
            continue;
        m_values[static_cast<std::size_t>(i)] = value;
        return;
    }
    throw Error(Kind::NoSuchParameter, {m_query->name, name});
}

StatementUse SqliteQueryDef::Bound() const
{
    auto statement = m_connection->Kept(m_query->sql);
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        const int parameter = static_cast<int>(i);
        if (!m_values[i])
            throw Error(Kind::MissingParameter, {m_query->name, m_parameterNames[parameter]});
        statement->Bind(parameter, *m_values[i]);
    }
    return statement;
}

std::unique_ptr<Recordset> SqliteQueryDef::OpenSnapshot()
{
    auto statement = Bound();
    if (!statement->IsSelect())
        throw Error(Kind::WrongUse, {m_query->name});
    return std::make_unique<SnapshotRecordset>(std::move(statement));
}

std::unique_ptr<Recordset> SqliteQueryDef::OpenDynaset()
{
    return m_database->OpenQueryDynaset(*m_query);
}

int SqliteQueryDef::Execute()
{
    const auto statement = Bound();
    if (statement->IsSelect())
        throw Error(Kind::WrongUse, {m_query->name});
    m_connection->CheckTransaction();
    while (statement->Step()) {
    }
    return sqlite3_changes(m_connection->Handle());
}

} // namespace dao::sqlite
