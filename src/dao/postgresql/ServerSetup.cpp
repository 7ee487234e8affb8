#include "dao/postgresql/ServerSetup.h"
#include "dao/base/AccountStore.h"
#include "dao/base/Names.h"
#include "dao/base/Passwords.h"
#include "dao/base/UserName.h"
#include "dao/postgresql/Accounts.h"
#include <QRegularExpression>

namespace dao::postgresql {

namespace {

constexpr auto IsOurs = "SELECT to_regclass('kyn.file_info') IS NOT NULL";
constexpr auto Version = "SELECT value FROM file_info WHERE name='schema_version'";
constexpr int PidLength = 20;

// The name begins those of the roles, and it is typed in psql without quotes.
void RequireDatabaseName(const QString& name)
{
    static const QRegularExpression accepted("^(?!pg_|template|postgres$)[a-z][a-z0-9_]{0,30}$");
    if (!accepted.match(name).hasMatch())
        throw Error(Kind::BadDatabaseName, {name});
}

void MakeRoles(Connection& server, const QString& database)
{
    const QString owner = OwnerRole(database);
    const QString admins = AdminsRole(database);
    const QString users = UsersRole(database);
    const bool superuser =
        server.Value("SELECT rolsuper FROM pg_roles WHERE rolname = current_user").toBool();
    QString script = "CREATE ROLE " + owner + " NOLOGIN CREATEROLE; CREATE ROLE " + admins +
                     " NOLOGIN; CREATE ROLE " + users + " NOLOGIN; GRANT " + users + " TO " + admins +
                     "; GRANT " + admins + ", " + users + " TO " + owner + " WITH ADMIN OPTION;";
    if (!superuser)
        script += "GRANT " + owner + " TO CURRENT_USER;";
    server.Execute(script); // one transaction
}

void DropAll(Connection& server, const QString& database)
{
    server.Execute("DROP DATABASE IF EXISTS " + Quoted(database) + " WITH (FORCE)");
    const auto roles = server.AllRows("SELECT rolname::text FROM pg_roles WHERE rolname LIKE ? ESCAPE '\\'",
                                      {QString(database).replace('_', "\\_") + ".%"});
    for (const QVariantList& role : roles)
        server.Execute("DROP ROLE " + Quoted(role.first().toString()));
    for (const QString& role : {AdminsRole(database), UsersRole(database), OwnerRole(database)})
        server.Execute("DROP ROLE IF EXISTS " + role);
}

void FillDatabase(const ServerAddress& address, const QString& adminUser, const QString& adminPassword)
{
    const auto connection = ConnectAsServerAdministrator(address);
    connection->Begin();
    RunScripts(*connection, address.Database(), SchemaScripts("postgresql/"), 0, [](int, int) {});
    connection->Change("INSERT INTO file_info (name, value) VALUES ('kind', 'database'), ('database_id', ?)",
                       {RandomText(24)});
    if (!adminUser.isEmpty()) {
        const QByteArray role = RoleName(address.Database(), adminUser);
        connection->Change("INSERT INTO user_profile (\"UserName\", allow_dr) VALUES (?, true)", {adminUser});
        connection->Change("SELECT kyn_add_account(?, ?, ?)",
                           {adminUser, RandomText(PidLength),
                            QString::fromLatin1(PasswordVerifier(connection->Link(), role, adminPassword))});
        for (const char* group : {AdminsGroupName, UsersGroupName})
            connection->Change("SELECT kyn_join(?, ?)", {adminUser, QString(group)});
    }
    connection->Commit();
}

} // namespace

QString OwnerRole(const QString& database)
{
    return Quoted(database + "_owner");
}

QString AdminsRole(const QString& database)
{
    return Quoted(database + "_admins");
}

QString UsersRole(const QString& database)
{
    return Quoted(database + "_users");
}

std::shared_ptr<Connection> ConnectAsServerAdministrator(const ServerAddress& address,
                                                         const QByteArray& database)
{
    Logon logon{address, database.isEmpty() ? address.Database().toUtf8() : database, address.User(),
                address.Password()};
    logon.passwordRequired = false;
    return Connection::Open(logon);
}

QList<Request> SchemaRequests()
{
    return {{IsOurs, {}}, {Version, {}}};
}

int SchemaVersionOf(Connection& connection)
{
    const QVariant isOurs = connection.Value(IsOurs);
    const QVariant version = isOurs.toBool() ? connection.Value(Version) : QVariant();
    if (!version.isValid())
        throw Error(Kind::NotADatabase, {connection.Link().Server()});
    return version.toInt();
}

void RunScripts(Connection& connection, const QString& database, const QList<Migration>& migrations, int from,
                const std::function<void(int, int)>& told)
{
    connection.Execute("SET LOCAL ROLE " + OwnerRole(database));
    for (const Migration& migration : migrations) {
        if (migration.version <= from)
            continue;
        told(migration.version - from - 1, migrations.last().version - from);
        QString sql = migration.sql;
        connection.Execute(sql.replace("{owner}", OwnerRole(database))
                               .replace("{admins}", AdminsRole(database))
                               .replace("{users}", UsersRole(database)));
        connection.Change("INSERT INTO file_info (name, value) VALUES ('schema_version', ?) "
                          "ON CONFLICT (name) DO UPDATE SET value = excluded.value",
                          {QString::number(migration.version)});
    }
}

void CreateServerDatabase(const ServerAddress& address, const QString& adminUser,
                          const QString& adminPassword)
{
    const QString name = address.Database();
    RequireDatabaseName(name);
    if (!adminUser.isEmpty() || !adminPassword.isEmpty()) {
        RequireUserName(adminUser);
        if (adminPassword.isEmpty() || adminPassword == QLatin1String(EmptyPassword))
            throw Error(Kind::BadPassword);
    }
    const auto server = ConnectAsServerAdministrator(address, "postgres");
    const bool taken = server
                           ->FirstRow("SELECT 1 FROM pg_database WHERE datname = ? UNION ALL "
                                      "SELECT 1 FROM pg_roles WHERE starts_with(rolname::text, ? || '.') "
                                      "OR rolname::text IN (? || '_owner', ? || '_admins', ? || '_users')",
                                      {name, name, name, name, name})
                           .has_value();
    if (taken)
        throw Error(Kind::FileExists, {address.Shown()});
    MakeRoles(*server, name);
    try {
        // Texts compare by their characters' codes, as in a file; what ignores case asks for it by kyn_fold.
        server->Execute("CREATE DATABASE " + Quoted(name) + " OWNER " + OwnerRole(name) +
                        " TEMPLATE template0 ENCODING 'UTF8' LC_COLLATE 'C' LC_CTYPE 'C'");
        server->Execute("REVOKE ALL ON DATABASE " + Quoted(name) +
                        " FROM PUBLIC; GRANT CONNECT ON DATABASE " + Quoted(name) + " TO " + UsersRole(name) +
                        "; ALTER DATABASE " + Quoted(name) + " SET search_path = kyn");
        FillDatabase(address, adminUser, adminPassword);
    } catch (const Error&) {
        DropAll(*server, name);
        throw;
    }
}

void DropServerDatabase(const ServerAddress& address)
{
    DropAll(*ConnectAsServerAdministrator(address, "postgres"), address.Database());
}

} // namespace dao::postgresql
