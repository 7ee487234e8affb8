#include "dao/Workspace.h"
#include "dao/Maintenance.h"
#include "dao/sqlite/FilesCheck.h"
#include "dao/sqlite/SqliteWorkspace.h"
#include <QUrl>

// The place where a location chooses its engine.

namespace dao {

namespace {

void RequireFileEngine(const Location& location)
{
    if (IsServerTarget(location.database))
        throw Error(Kind::ServerNotSupported, {QUrl(location.database).toString(QUrl::RemovePassword)});
}

} // namespace

std::unique_ptr<Workspace> OpenWorkspace(const Location& location, const QString& user,
                                         const QString& password, const OpenOptions& options)
{
    RequireFileEngine(location);
    return sqlite::SqliteWorkspace::Open(location, user, password, options);
}

void CreateDatabase(const Location& location, const QString& adminUser, const QString& adminPassword,
                    const PasswordCost& cost)
{
    RequireFileEngine(location);
    sqlite::CreateFiles(location, adminUser, adminPassword, cost);
}

QList<Finding> CheckDatabase(const Location& location)
{
    try {
        RequireFileEngine(location);
        return sqlite::CheckFiles(location);
    } catch (const Error& error) {
        return {{Finding::Severity::Error, TextId(error), error.values}};
    }
}

void BackupDatabase(const Location& from, const Location& to)
{
    RequireFileEngine(from);
    RequireFileEngine(to);
    sqlite::BackupFiles(from, to);
}

MigrationReport MigrateDatabase(const Location& location)
{
    RequireFileEngine(location);
    return sqlite::MigrateFiles(location);
}

} // namespace dao
