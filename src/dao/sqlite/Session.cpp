#include "dao/sqlite/Session.h"
#include "dao/base/Passwords.h"
#include "dao/base/UserName.h"
#include "dao/sqlite/Accounts.h"
#include "dao/sqlite/ChangeCounter.h"
#include "dao/sqlite/Migrations.h"
#include "dao/sqlite/Rights.h"

namespace dao::sqlite {

namespace {

constexpr std::chrono::milliseconds NewFileTimeout{2000}; // nobody else knows the file yet

void CreateDatabaseFile(const QString& path, const QString& databaseId, const QString& adminUser)
{
    const auto connection = Connection::Open(path, Connection::Mode::Create, NewFileTimeout);
    BuildSchema(*connection, FileKind::Database, MigrationsOf(FileKind::Database), databaseId);
    connection->Change("INSERT INTO user_profile (\"UserName\", allow_dr) VALUES (?, 1)", {adminUser});
}

void CreateWorkgroupFile(const QString& path, const QString& databaseId, const QString& adminUser,
                         const QByteArray& hash)
{
    const auto connection = Connection::Open(path, Connection::Mode::Create, NewFileTimeout);
    BuildSchema(*connection, FileKind::Workgroup, MigrationsOf(FileKind::Workgroup), databaseId);
    connection->Change("INSERT INTO account (user_name, pid, password_hash) VALUES (?, ?, ?)",
                       {adminUser, RandomText(20), QString::fromLatin1(hash)});
    for (const char* group : {AdminsGroupName, UsersGroupName})
        connection->Change(
            "INSERT INTO membership (account_id, group_name) SELECT account_id, ? FROM account",
            {QString(group)});
}

int NewestVersion(FileKind kind)
{
    return MigrationsOf(kind).last().version;
}

void RequireKnownVersion(const FileInfo& info, FileKind kind, const QString& path)
{
    if (info.version > NewestVersion(kind))
        throw Error(Kind::Newer, {path, QString::number(info.version), QString::number(NewestVersion(kind))});
}

void RequireNewestVersion(const FileInfo& info, FileKind kind, const QString& path)
{
    if (info.version < NewestVersion(kind))
        throw Error(Kind::Older, {path, QString::number(info.version), QString::number(NewestVersion(kind))});
}

// What makes the same session again.
struct Logon {
    Location location;
    QString name;
    QString databaseId;
    OpenOptions options;
    std::shared_ptr<OwnChanges> changes = std::make_shared<OwnChanges>(); // of all that is made so
};

// Somebody may have set another mode with a tool; a commit over both files would no longer be one.
void UseRollbackJournal(Connection& connection)
{
    connection.Execute("PRAGMA main.journal_mode=DELETE; PRAGMA workgroup.journal_mode=DELETE;");
}

EngineSession OpenAgain(const Logon& logon);

EngineSession SessionOf(const std::shared_ptr<Connection>& connection, const Logon& logon, bool again)
{
    connection->SetUser(logon.name);
    RestrictToRights(*connection);
    const auto changes = std::make_shared<ChangeCounter>(*connection, logon.changes);
    if (again)
        changes->TellFamily();
    return {connection,
            std::make_shared<Accounts>(connection, logon.name, logon.options.passwordCost),
            {},
            [connection, changes] { return changes->ChangedElsewhere(); },
            [logon] { return OpenAgain(logon); }};
}

EngineSession OpenAgain(const Logon& logon)
{
    const AttachedFiles files = AttachFiles(logon.location, logon.options);
    // The password was given for these files and no others.
    if (files.database.databaseId != logon.databaseId)
        throw Error(Kind::WorkgroupMismatch, {logon.location.workgroup, logon.location.database});
    RequireNewestVersion(files.database, FileKind::Database, logon.location.database);
    RequireNewestVersion(files.workgroup, FileKind::Workgroup, logon.location.workgroup);
    UseRollbackJournal(*files.connection);
    return SessionOf(files.connection, logon, true);
}

} // namespace

AttachedFiles AttachFiles(const Location& location, const OpenOptions& options)
{
    RequireUsableFile(location.database, FileKind::Database);
    RequireUsableFile(location.workgroup, FileKind::Workgroup);
    AttachedFiles files;
    files.connection =
        Connection::Open(location.database, Connection::Mode::ReadWrite, options.busyTimeout, options.now);
    files.database = ReadFileInfo(*files.connection, "main", location.database, FileKind::Database);
    RequireKnownVersion(files.database, FileKind::Database, location.database);
    files.connection->Attach(location.workgroup, "workgroup");
    files.workgroup = ReadFileInfo(*files.connection, "workgroup", location.workgroup, FileKind::Workgroup);
    RequireKnownVersion(files.workgroup, FileKind::Workgroup, location.workgroup);
    files.connection->NameInErrors(location.database);
    if (files.database.databaseId != files.workgroup.databaseId)
        throw Error(Kind::WorkgroupMismatch, {location.workgroup, location.database});
    return files;
}

std::shared_ptr<Connection> OpenFiles(const Location& location, const OpenOptions& options)
{
    auto files = AttachFiles(location, options);
    if (files.database.version < NewestVersion(FileKind::Database) ||
        files.workgroup.version < NewestVersion(FileKind::Workgroup)) {
        files.connection->Close();
        Migrate(location.database, FileKind::Database, MigrationsOf(FileKind::Database), options.busyTimeout,
                options.migrating);
        Migrate(location.workgroup, FileKind::Workgroup, MigrationsOf(FileKind::Workgroup),
                options.busyTimeout, options.migrating);
        files = AttachFiles(location, options);
    }
    UseRollbackJournal(*files.connection);
    return files.connection;
}

void CreateFiles(const Location& location, const QString& adminUser, const QString& adminPassword,
                 const PasswordCost& cost, const QString& group)
{
    RequireUserName(adminUser);
    if (adminPassword.isEmpty())
        throw Error(Kind::BadPassword);
    const FileAccess databaseAccess = AccessFor(location.database, group);
    const FileAccess workgroupAccess = AccessFor(location.workgroup, group);
    NewFile database(location.database);
    NewFile workgroup(location.workgroup);
    database.Make(databaseAccess);
    workgroup.Make(workgroupAccess);
    const QByteArray hash = HashPassword(adminPassword, cost);
    const QString databaseId = RandomText(24);
    CreateDatabaseFile(database.TemporaryPath(), databaseId, adminUser);
    CreateWorkgroupFile(workgroup.TemporaryPath(), databaseId, adminUser, hash);
    workgroup.Publish();
    database.Publish();
    workgroup.Keep();
    database.Keep();
}

EngineSession OpenSession(const Location& location, const QString& user, const QString& password,
                          const OpenOptions& options)
{
    const auto connection = OpenFiles(location, options);
    const QString name = CheckLogon(*connection, user, password, options.passwordCost);
    OpenOptions kept = options;
    kept.migrating = {};
    return SessionOf(connection,
                     {location, name,
                      ReadFileInfo(*connection, "main", location.database, FileKind::Database).databaseId,
                      kept},
                     false);
}

} // namespace dao::sqlite
