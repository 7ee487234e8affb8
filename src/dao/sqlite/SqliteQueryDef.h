#pragma once

#include "dao/QueryDef.h"
#include "dao/sqlite/Connection.h"
#include "dao/sqlite/SqliteDatabase.h"
#include <optional>
#include <vector>

namespace dao::sqlite {

class SqliteQueryDef : public QueryDef {
public:
    SqliteQueryDef(std::shared_ptr<SqliteDatabase> database, std::shared_ptr<Connection> connection,
                   std::shared_ptr<const StoredQuery> query);

    QString Name() const override { return m_query->name; }
    QStringList ParameterNames() const override { return m_parameterNames; }
    void SetParameter(const QString& name, const QVariant& value) override;
    std::unique_ptr<Recordset> OpenSnapshot() override;
    std::unique_ptr<Recordset> OpenDynaset() override;
    int Execute() override;

private:
    StatementUse Bound() const;

    std::shared_ptr<SqliteDatabase> m_database;
    std::shared_ptr<Connection> m_connection;
    std::shared_ptr<const StoredQuery> m_query;
    QStringList m_parameterNames;
    std::vector<std::optional<QVariant>> m_values;
};

} // namespace dao::sqlite
