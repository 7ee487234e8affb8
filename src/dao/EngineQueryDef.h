#pragma once

#include "dao/EngineDatabase.h"
#include "dao/QueryDef.h"
#include <optional>
#include <vector>

namespace dao {

class EngineQueryDef : public QueryDef {
public:
    EngineQueryDef(std::shared_ptr<EngineDatabase> database, std::shared_ptr<Engine> engine,
                   std::shared_ptr<const StoredQuery> query);

    QString Name() const override { return m_query->name; }
    QStringList ParameterNames() const override { return m_parameterNames; }
    void SetParameter(const QString& name, const QVariant& value) override;
    std::unique_ptr<Recordset> OpenSnapshot() override;
    std::unique_ptr<Recordset> OpenDynaset() override;
    int Execute() override;

private:
    QVariantList Values() const;

    std::shared_ptr<EngineDatabase> m_database;
    std::shared_ptr<Engine> m_engine;
    std::shared_ptr<const StoredQuery> m_query;
    QStringList m_parameterNames;
    std::vector<std::optional<QVariant>> m_values;
};

} // namespace dao
