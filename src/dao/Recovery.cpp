#include "dao/Recovery.h"
#include "dao/base/AccountStore.h"
#include "dao/base/Error.h"
#include "dao/base/Passwords.h"
#include "dao/postgresql/Accounts.h"
#include "dao/postgresql/ServerSetup.h"
#include "dao/records/Engine.h"
#include "dao/sqlite/Session.h"
#include <QDateTime>
#include <QFileInfo>
#include <memory>
#include <unistd.h>

namespace dao {

namespace {

constexpr int NoRadioEvent = 0; // of a log record: neither status nor text nor call

// The database without anybody's account.
struct Owned {
    std::shared_ptr<Engine> engine;
    std::shared_ptr<postgresql::Connection> server; // null for files
    QString database;

    QString Table(const char* name) const
    {
        return QLatin1String(server ? "" : "workgroup.") + QLatin1String(name);
    }
};

// A group's accounts may work on its files, but each of them is somebody.
void RequireOwner(const QString& file)
{
    const uid_t self = ::geteuid();
    if (const QFileInfo info(file); self != 0 && info.exists() && info.ownerId() != self)
        throw Error(Kind::NotOwner, {file, info.owner()});
}

Owned OpenOwned(const Location& location)
{
    if (IsServerTarget(location.database)) {
        const auto address = postgresql::ServerAddress::Parse(location.database);
        const auto server = postgresql::ConnectAsServerAdministrator(address);
        postgresql::SchemaVersionOf(*server); // so that it is one of ours
        return {server, server, address.Database()};
    }
    RequireOwner(location.database);
    RequireOwner(location.workgroup);
    return {sqlite::OpenFiles(location, {}), nullptr, {}};
}

QString SpelledName(const Owned& owned, const QString& user)
{
    const auto row = owned.engine->FirstRow("SELECT user_name FROM " + owned.Table("account") +
                                                " WHERE kyn_fold(user_name) = kyn_fold(?)",
                                            {user});
    if (!row)
        throw Error(Kind::NoSuchUser, {user});
    return row->first().toString();
}

void StorePassword(const Owned& owned, const QString& name, const QString& password)
{
    if (owned.server) {
        const QByteArray role = postgresql::RoleName(owned.database, name);
        owned.server->FirstRow(
            "SELECT kyn_set_password(?, ?)",
            {name, QString::fromLatin1(postgresql::PasswordVerifier(owned.server->Link(), role, password))});
    } else {
        owned.engine->Change(
            "UPDATE workgroup.account SET password_hash = ? WHERE user_name = ?",
            {QString::fromLatin1(HashPassword(password, PasswordCost::Interactive())), name});
    }
}

} // namespace

QStringList AdministratorsOf(const Location& location)
{
    const Owned owned = OpenOwned(location);
    QStringList names;
    for (const QVariantList& row : owned.engine->AllRows(
             "SELECT user_name FROM " + owned.Table("account") + " JOIN " + owned.Table("membership") +
                 " USING (account_id) WHERE group_name = ? ORDER BY user_name",
             {QString(AdminsGroupName)}))
        names.append(row.first().toString());
    return names;
}

QString RecoverAccount(const Location& location, const QString& user, const QString& password,
                       const QString& note, const EventTable::Signer& signer)
{
    if (password.isEmpty())
        throw Error(Kind::BadPassword);
    const Owned owned = OpenOwned(location);
    const QString name = SpelledName(owned, user);
    // Either both or none: nobody gets in without a trace.
    owned.engine->Begin();
    StorePassword(owned, name, password);
    Database database(owned.engine);
    EventTable::AppendSigned(
        database, {.time = QDateTime::currentDateTimeUtc(), .kind = NoRadioEvent, .desc = note}, signer);
    owned.engine->Commit();
    return name;
}

} // namespace dao
