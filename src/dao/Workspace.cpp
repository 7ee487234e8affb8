#include "dao/Workspace.h"
#include "dao/Maintenance.h"
#include "dao/postgresql/ServerMaintenance.h"
#include "dao/postgresql/ServerSetup.h"
#include "dao/postgresql/ServerWorkspace.h"
#include "dao/sqlite/FilesCheck.h"
#include "dao/sqlite/SqliteWorkspace.h"

// The place where a location chooses its engine.

namespace dao {

using postgresql::ServerAddress;

std::unique_ptr<Workspace> OpenWorkspace(const Location& location, const QString& user,
                                         const QString& password, const OpenOptions& options)
{
    if (IsServerTarget(location.database))
        return postgresql::ServerWorkspace::Open(ServerAddress::Parse(location.database), user, password,
                                                 options);
    return sqlite::SqliteWorkspace::Open(location, user, password, options);
}

void CreateDatabase(const Location& location, const QString& adminUser, const QString& adminPassword,
                    const PasswordCost& cost, const QString& group)
{
    if (!IsServerTarget(location.database)) {
        sqlite::CreateFiles(location, adminUser, adminPassword, cost, group);
        return;
    }
    const ServerAddress address = ServerAddress::Parse(location.database);
    if (!group.isEmpty())
        throw Error(Kind::FilesOnly, {address.Shown()});
    postgresql::CreateServerDatabase(address, adminUser, adminPassword);
}

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

void BackupDatabase(const Location& from, const Location& to)
{
    for (const QString& target : {from.database, to.database})
        if (IsServerTarget(target))
            throw Error(Kind::FilesOnly, {ServerAddress::Parse(target).Shown()});
    sqlite::BackupFiles(from, to);
}

MigrationReport MigrateDatabase(const Location& location)
{
    if (IsServerTarget(location.database))
        return postgresql::MigrateServerDatabase(ServerAddress::Parse(location.database),
                                                 SchemaScripts("postgresql/"));
    return sqlite::MigrateFiles(location);
}

} // namespace dao
