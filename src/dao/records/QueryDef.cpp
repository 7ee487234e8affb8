#include "dao/records/QueryDef.h"
#include "dao/base/Error.h"
#include "dao/records/Engine.h"

namespace dao {

QueryDef::QueryDef(std::shared_ptr<Engine> engine, std::shared_ptr<const StoredQuery> query)
    : m_engine(std::move(engine)),
      m_query(std::move(query)),
      m_parameterNames(m_engine->Parameters(m_query->sql)),
      m_values(static_cast<std::size_t>(m_parameterNames.size()))
{
}

void QueryDef::SetParameter(const QString& name, const QVariant& value)
{
    for (qsizetype i = 0; i < m_parameterNames.size(); ++i) {
        if (m_parameterNames[i].compare(name, Qt::CaseInsensitive) != 0)
            continue;
        m_values[static_cast<std::size_t>(i)] = value;
        return;
    }
    throw Error(Kind::NoSuchParameter, {m_query->name, name});
}

QVariantList QueryDef::Values() const
{
    if (!m_engine->IsOpen())
        throw Error(Kind::Closed);
    QVariantList values;
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        if (!m_values[i])
            throw Error(Kind::MissingParameter, {m_query->name, m_parameterNames[static_cast<qsizetype>(i)]});
        values.append(*m_values[i]);
    }
    return values;
}

std::unique_ptr<Recordset> QueryDef::OpenSnapshot()
{
    return m_engine->OpenSnapshot(m_query->sql, Values(), true);
}

int QueryDef::Execute()
{
    return m_engine->Change(m_query->sql, ActionValues());
}

void QueryDef::ExecuteLater()
{
    m_engine->ChangeLater(
        m_query->sql, ActionValues(), [](Error&) {});
}

QVariantList QueryDef::ActionValues() const
{
    if (m_engine->IsSelect(m_query->sql))
        throw Error(Kind::WrongUse, {m_query->name});
    return Values();
}

} // namespace dao
