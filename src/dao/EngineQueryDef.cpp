#include "dao/EngineQueryDef.h"
#include "dao/Engine.h"
#include "dao/Error.h"

namespace dao {

EngineQueryDef::EngineQueryDef(std::shared_ptr<EngineDatabase> database, std::shared_ptr<Engine> engine,
                               std::shared_ptr<const StoredQuery> query)
    : m_database(std::move(database)),
      m_engine(std::move(engine)),
      m_query(std::move(query)),
      m_parameterNames(m_engine->Describe(m_query->sql).parameters),
      m_values(static_cast<std::size_t>(m_parameterNames.size()))
{
}

void EngineQueryDef::SetParameter(const QString& name, const QVariant& value)
{
    for (qsizetype i = 0; i < m_parameterNames.size(); ++i) {
        if (m_parameterNames[i].compare(name, Qt::CaseInsensitive) != 0)
            continue;
        m_values[static_cast<std::size_t>(i)] = value;
        return;
    }
    throw Error(Kind::NoSuchParameter, {m_query->name, name});
}

QVariantList EngineQueryDef::Values() const
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

std::unique_ptr<Recordset> EngineQueryDef::OpenSnapshot()
{
    return m_engine->OpenSnapshot(m_query->sql, Values(), true);
}

std::unique_ptr<Recordset> EngineQueryDef::OpenDynaset()
{
    return m_database->OpenQueryDynaset(*m_query);
}

int EngineQueryDef::Execute()
{
    const QVariantList values = Values();
    if (m_engine->Describe(m_query->sql).isSelect)
        throw Error(Kind::WrongUse, {m_query->name});
    return m_engine->Change(m_query->sql, values);
}

} // namespace dao
