#pragma once

#include "dao/QueryDef.h"
#include "dao/Recordset.h"
#include <QString>
#include <memory>

namespace dao {

// An open database; owned by its Workspace. Statements are prepared once per recordset shape and stored query
// and kept.
class Database {
public:
    Database() = default;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    virtual ~Database() = default;

    virtual int SchemaVersion() const = 0;
    // The same for all consoles that share this database, and for no other database.
    virtual QString Id() const = 0;

    // A table with its indexes. With `appendOnly` records can be added and nothing else, and none is read.
    virtual std::unique_ptr<Recordset> OpenTable(const QString& name, bool appendOnly = false) = 0;

    // A stored query (without parameters), a table by its name, or a select statement. Snapshots are
    // forward-only.
    virtual std::unique_ptr<Recordset> OpenSnapshot(const QString& queryNameOrSql) = 0;
    virtual std::unique_ptr<Recordset> OpenDynaset(const QString& queryNameOrSql) = 0;

    // A stored query by name, ignoring case. Kind::NoSuchQuery when there is none.
    virtual std::unique_ptr<dao::QueryDef> QueryDef(const QString& name) = 0;

    // Defined size of a text field in characters; 0 for one without a limit and for a field that is not text.
    virtual int FieldSize(const QString& table, const QString& field) = 0;
};

} // namespace dao
