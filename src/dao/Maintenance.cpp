#include "dao/Maintenance.h"
#include "dao/base/Error.h"
#include "dao/base/SchemaScripts.h"
#include "dao/postgresql/ServerMaintenance.h"
#include "dao/sqlite/FilesCheck.h"

namespace dao {

using postgresql::ServerAddress;

QList<Finding> CheckDatabase(const Location& location)
{
    try {
        if (IsServerTarget(location.database))
            return postgresql::CheckServerDatabase(ServerAddress::Parse(location.database));
        return sqlite::CheckFiles(location);
    } catch (const Error& error) {
        return {{Finding::Severity::Error, TextId(error), error.values}};
    }
}

MigrationReport MigrateDatabase(const Location& location, const MigrationProgress& told)
{
    if (IsServerTarget(location.database))
        return postgresql::MigrateServerDatabase(ServerAddress::Parse(location.database),
                                                 SchemaScripts("postgresql/"), told);
    return sqlite::MigrateFiles(location, told);
}

} // namespace dao
