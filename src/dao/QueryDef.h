#pragma once

#include "dao/Recordset.h"
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>

namespace dao {

// A stored query with its parameters. Valid as long as the database is open. Every parameter must be set
// before the query is opened or executed (Kind::MissingParameter); values stay for the next time.
class QueryDef {
public:
    QueryDef() = default;
    QueryDef(const QueryDef&) = delete;
    QueryDef& operator=(const QueryDef&) = delete;
    virtual ~QueryDef() = default;

    virtual QString Name() const = 0;
    virtual QStringList ParameterNames() const = 0;
    // Parameter names ignore case; one that the query does not have raises Kind::NoSuchParameter.
    virtual void SetParameter(const QString& name, const QVariant& value) = 0;

    virtual std::unique_ptr<Recordset> OpenSnapshot() = 0;
    virtual std::unique_ptr<Recordset> OpenDynaset() = 0;
    // Runs an action query. Returns how many records it changed or deleted.
    virtual int Execute() = 0;
};

} // namespace dao
