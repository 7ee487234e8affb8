#include "dao/sqlite/Migrations.h"
#include "dao/sqlite/Connection.h"
#include <QFileInfo>

namespace dao::sqlite {

namespace {

constexpr int CopyShare = 50; // percent of the time of a migration that the copy takes

QString FreeCopyName(const QString& path, int version)
{
    const QString base = path + ".v" + QString::number(version);
    QString name = base + ".bak";
    for (int i = 2; QFileInfo::exists(name); ++i)
        name = base + '-' + QString::number(i) + ".bak";
    return name;
}

void StoreInfo(Connection& connection, const QString& name, const QString& value)
{
    connection.Change("INSERT INTO main.file_info (name, value) VALUES (?, ?) ON CONFLICT (name) DO UPDATE "
                      "SET value=excluded.value",
                      {name, value});
}

// Runs the scripts after `from` within the open transaction. `told` is called with the part that is done, in
// percent.
void RunScripts(Connection& connection, const QList<Migration>& migrations, int from,
                const std::function<void(int)>& told)
{
    const int steps = migrations.last().version - from;
    for (const Migration& migration : migrations) {
        if (migration.version <= from)
            continue;
        const int done = 100 * (migration.version - from - 1) / steps;
        told(done);
        connection.Execute(migration.sql, [&] { told(done); });
        StoreInfo(connection, "schema_version", QString::number(migration.version));
    }
    if (connection.Value("SELECT count(*) FROM pragma_foreign_key_check()").toInt() != 0)
        throw Error(Kind::InUse, {}, "foreign key violation");
}

} // namespace

QList<Migration> MigrationsOf(FileKind kind)
{
    return SchemaScripts(kind == FileKind::Workgroup ? "sqlite/workgroup-" : "sqlite/");
}

void BuildSchema(Connection& connection, FileKind kind, const QList<Migration>& migrations,
                 const QString& databaseId)
{
    ChangeScope scope(connection);
    RunScripts(connection, migrations, 0, [](int) {});
    StoreInfo(connection, "kind", kind == FileKind::Database ? "database" : "workgroup");
    StoreInfo(connection, "database_id", databaseId);
    scope.Commit();
}

MigrationResult Migrate(const QString& path, FileKind kind, const QList<Migration>& migrations,
                        std::chrono::milliseconds busyTimeout, const MigrationProgress& told)
{
    const auto connection = Connection::Open(path, Connection::Mode::ReadWrite, busyTimeout);
    const int newest = migrations.last().version;
    int version = ReadFileInfo(*connection, "main", path, kind).version;
    if (version > newest)
        throw Error(Kind::Newer, {path, QString::number(version), QString::number(newest)});
    if (version == newest)
        return {version, version, {}};

    // Rebuilding a table needs references unchecked until the end; the setting cannot be changed within a
    // transaction.
    connection->Execute("PRAGMA foreign_keys=OFF");
    ChangeScope scope(*connection);
    version = ReadFileInfo(*connection, "main", path, kind).version;
    if (version >= newest) // another workstation was faster
        return {version, version, {}};

    const auto tell = [&](int percent) {
        if (told)
            told(path, percent);
    };
    tell(0);
    // The write lock is held, so nothing can change between the copy and the migration; a second connection
    // reads.
    const QString copyPath = FreeCopyName(path, version);
    NewFile copy(copyPath);
    copy.Make(AccessOfCopy(path));
    CopyContents(path, copy.TemporaryPath(), busyTimeout,
                 [&](int percent) { tell(percent * CopyShare / 100); });
    copy.Publish();
    try {
        RunScripts(*connection, migrations, version,
                   [&](int percent) { tell(CopyShare + percent * (99 - CopyShare) / 100); });
        tell(99);
        scope.Commit();
    } catch (const Error& error) {
        if (error.kind == Kind::Locked || error.kind == Kind::DiskFull)
            throw;
        throw Error(Kind::MigrationFailed, {path, QString::number(newest)},
                    error.engineText.isEmpty() ? QString::fromUtf8(error.what()) : error.engineText);
    }
    copy.Keep();
    tell(100);
    return {version, newest, copyPath};
}

} // namespace dao::sqlite
