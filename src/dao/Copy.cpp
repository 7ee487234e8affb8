#include "dao/Copy.h"
#include "dao/Workspace.h"
#include "dao/base/Error.h"
#include "dao/base/Names.h"
#include "dao/base/Passwords.h"
#include "dao/base/TextMatch.h"
#include "dao/postgresql/Accounts.h"
#include "dao/postgresql/ServerSetup.h"
#include "dao/records/Engine.h"
#include "dao/records/TableShape.h"
#include "dao/sqlite/Session.h"
#include <QCryptographicHash>
#include <QDateTime>
#include <functional>

namespace dao {

namespace {

// Those that others refer to come first.
constexpr const char* Tables[] = {"address",       "status",       "event",        "dynamic_regroup",
                                  "fleet",         "user_profile", "kyn_registry", "attention",
                                  "attention_act", "regroup_act"};
constexpr int PageSize = 2000;
constexpr int RowsAtOnce = 50;

struct Account {
    QString name;
    QString pid;
    QStringList groups;
    QString secret; // what stands in the place of the password; empty when it cannot be read
};

constexpr auto ServerSecret = "SCRAM-SHA-256$"; // how it begins on a server
constexpr auto NoSecret = "none";               // no password has this hash

struct Side {
    std::shared_ptr<Engine> engine;
    bool server;

    // The tables of accounts lie in the second file.
    QString Accounts(const char* table) const
    {
        return QLatin1String(server ? "" : "workgroup.") + QLatin1String(table);
    }
};

QStringList CommonColumns(const TableShape& one, const TableShape& other)
{
    QStringList columns;
    for (const QString& column : one.ColumnNames())
        if (other.ColumnNames().contains(column))
            columns.append(column);
    return columns;
}

// A file may hold a NUL in a received text, a server may not.
void ReplaceNulls(std::vector<QVariantList>& page)
{
    for (QVariantList& row : page)
        for (QVariant& value : row)
            if (value.typeId() == QMetaType::QString && value.toString().contains(QChar::Null))
                value = WithSignsForNull(value.toString());
}

// All records in the order of their keys, in pages.
void ForEachPage(Engine& engine, const TableShape& table, const QStringList& columns,
                 const std::function<void(const std::vector<QVariantList>&)>& take)
{
    const QString key = QuotedList(table.KeyFields());
    const QString marks = QStringList(table.KeyFields().size(), "?").join(", ");
    const QString select = "SELECT " + QuotedList(columns) + " FROM " + Quoted(table.Name());
    const QString order = " ORDER BY " + key + " LIMIT " + QString::number(PageSize);
    QVariantList last;
    while (true) {
        const QString after = last.isEmpty() ? QString() : " WHERE (" + key + ") > (" + marks + ")";
        auto page = engine.AllRows(select + after + order, last);
        if (page.empty())
            return;
        ReplaceNulls(page);
        take(page);
        last.clear();
        for (const QString& field : table.KeyFields())
            last.append(page.back()[columns.indexOf(field)]);
    }
}

void Insert(Engine& engine, const TableShape& table, const QStringList& columns,
            const std::vector<QVariantList>& page)
{
    const QString row = "(" + QStringList(columns.size(), "?").join(", ") + ")";
    const QString insert = "INSERT INTO " + Quoted(table.Name()) + " (" + QuotedList(columns) + ") VALUES ";
    for (std::size_t from = 0; from < page.size(); from += RowsAtOnce) {
        const std::size_t until = std::min(page.size(), from + RowsAtOnce);
        QVariantList values;
        for (std::size_t i = from; i < until; ++i)
            values += page[i];
        engine.Change(insert + QStringList(static_cast<qsizetype>(until - from), row).join(", "), values);
    }
}

QByteArray TextOf(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return "-";
    case QMetaType::QDateTime:
        return QByteArray::number(value.toDateTime().toMSecsSinceEpoch());
    case QMetaType::Bool:
        return value.toBool() ? "1" : "0";
    default:
        return value.toString().toUtf8();
    }
}

struct Digest {
    qlonglong records = 0;
    QByteArray contents;

    bool operator==(const Digest&) const = default;
};

Digest DigestOf(Engine& engine, const TableShape& table, const QStringList& columns)
{
    Digest digest;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    ForEachPage(engine, table, columns, [&](const std::vector<QVariantList>& page) {
        digest.records += static_cast<qlonglong>(page.size());
        for (const QVariantList& row : page)
            for (const QVariant& value : row) {
                const QByteArray text = TextOf(value);
                hash.addData(QByteArray::number(text.size()) + (value.isValid() ? ':' : '-') + text);
            }
    });
    digest.contents = hash.result();
    return digest;
}

// Ids that are not to be given again, those of records that are gone too.
void CopyCounter(const Side& from, const Side& to, const QString& table, const QString& column)
{
    QVariant last;
    if (from.server) {
        if (const auto row = from.engine->FirstRow(
                "SELECT last_value FROM pg_sequences WHERE schemaname = 'kyn' AND sequencename = ?",
                {table + "_" + column + "_seq"}))
            last = row->first();
    } else if (const auto row =
                   from.engine->FirstRow("SELECT seq FROM main.sqlite_sequence WHERE name = ?", {table})) {
        last = row->first();
    }
    // Files count only what is never to be given again; a server counts everything. The count of a file that
    // a server was copied to stays behind the records that came later.
    const QVariant newest =
        from.engine->FirstRow("SELECT max(" + Quoted(column) + ") FROM " + Quoted(table))->first();
    if (!last.isValid() || newest.toLongLong() > last.toLongLong())
        last = newest;
    if (!last.isValid())
        return;
    if (to.server)
        to.engine->FirstRow("SELECT setval(pg_get_serial_sequence(?, ?), ?)", {"kyn." + table, column, last});
    else if (to.engine->Change("UPDATE main.sqlite_sequence SET seq = ? WHERE name = ?", {last, table}) == 0)
        to.engine->Change("INSERT INTO main.sqlite_sequence (name, seq) VALUES (?, ?)", {table, last});
}

CopyReport CopyRecords(const Side& from, const Side& to, const QString& target)
{
    CopyReport report;
    to.engine->Change("DELETE FROM user_profile"); // of the administrator that a new file begins with
    for (const char* name : Tables) {
        const auto source = from.engine->ReadTable(name);
        const auto copy = to.engine->ReadTable(name);
        const QStringList columns = CommonColumns(*source, *copy);
        ForEachPage(*from.engine, *source, columns,
                    [&](const std::vector<QVariantList>& page) { Insert(*to.engine, *copy, columns, page); });
        const Digest wanted = DigestOf(*from.engine, *source, columns);
        if (DigestOf(*to.engine, *copy, columns) != wanted)
            throw Error(Kind::Damaged, {target}, QStringLiteral("the copy of %1 differs").arg(name));
        report.tables.append({name, wanted.records});
    }
    CopyCounter(from, to, "address", "address_id");
    CopyCounter(from, to, "user_profile", "profile_id");
    CopyCounter(from, to, "event", "event_id");
    to.engine->Change(
        "UPDATE file_info SET value = ? WHERE name = 'database_id'",
        {from.engine->FirstRow("SELECT value FROM file_info WHERE name = 'database_id'")->first()});
    return report;
}

// A server shows its passwords to superusers only.
QString SecretColumn(const Side& from)
{
    if (!from.server)
        return "password_hash";
    const bool shown = from.engine->FirstRow("SELECT has_table_privilege('pg_catalog.pg_authid', 'SELECT')")
                           ->first()
                           .toBool();
    return shown ? "(SELECT rolpassword FROM pg_catalog.pg_authid WHERE rolname = role_name)" : "NULL";
}

QList<Account> ReadAccounts(const Side& from)
{
    QList<Account> accounts;
    for (const QVariantList& row :
         from.engine->AllRows("SELECT user_name, pid, account_id, " + SecretColumn(from) + " FROM " +
                              from.Accounts("account") + " ORDER BY account_id")) {
        Account account{row[0].toString(), row[1].toString(), {}, row[3].toString()};
        for (const QVariantList& group : from.engine->AllRows(
                 "SELECT group_name FROM " + from.Accounts("membership") + " WHERE account_id = ?", {row[2]}))
            account.groups.append(group.first().toString());
        accounts.append(account);
    }
    return accounts;
}

QStringList ReadGroups(const Side& side)
{
    QStringList groups;
    for (const QVariantList& row :
         side.engine->AllRows("SELECT group_name FROM " + side.Accounts("account_group")))
        groups.append(row.first().toString());
    return groups;
}

QString VerifierOf(postgresql::Connection& server, const QString& database, const Account& account,
                   const QString& password)
{
    return QString::fromLatin1(
        postgresql::PasswordVerifier(server.Link(), postgresql::RoleName(database, account.name), password));
}

void AddToServer(postgresql::Connection& server, const Account& account, const QString& verifier)
{
    server.FirstRow("SELECT kyn_add_account(?, ?, ?)", {account.name, account.pid, verifier});
    for (const QString& group : account.groups)
        server.FirstRow("SELECT kyn_join(?, ?)", {account.name, group});
}

void AddToFile(Engine& file, const Account& account, const QString& hash)
{
    file.Change("INSERT INTO workgroup.account (user_name, pid, password_hash) VALUES (?, ?, ?)",
                {account.name, account.pid, hash});
    for (const QString& group : account.groups)
        file.Change("INSERT INTO workgroup.membership (account_id, group_name) SELECT account_id, ? FROM "
                    "workgroup.account WHERE user_name = ?",
                    {group, account.name});
}

bool IsAdministrator(const Account& account, const QString& admin)
{
    return Fold(account.name) == Fold(admin);
}

CopyReport CopyToServer(const Side& from, const postgresql::ServerAddress& to, const QString& admin,
                        const QString& password)
{
    postgresql::CreateServerDatabase(to, {}, {});
    try {
        const auto server = postgresql::ConnectAsServerAdministrator(to);
        server->Begin();
        server->Execute("SET LOCAL ROLE " + postgresql::OwnerRole(to.Database()));
        const Side target{server, true};
        CopyReport report = CopyRecords(from, target, to.Shown());
        const QStringList there = ReadGroups(target);
        for (const QString& group : ReadGroups(from))
            if (!there.contains(group))
                server->FirstRow("SELECT kyn_add_group(?)", {group});
        for (const Account& account : ReadAccounts(from)) {
            const bool own = IsAdministrator(account, admin);
            if (!own && account.secret.startsWith(QLatin1String(ServerSecret))) { // a backup of a server
                AddToServer(*server, account, account.secret);
                continue;
            }
            AddToServer(*server, account,
                        VerifierOf(*server, to.Database(), account, own ? password : RandomText(40)));
            if (!own)
                report.withoutPassword.append(account.name);
        }
        server->Commit();
        return report;
    } catch (const Error&) {
        postgresql::DropServerDatabase(to);
        throw;
    }
}

CopyReport CopyToFile(const Side& from, const Location& to, const QString& admin, const QString& password)
{
    sqlite::NewFile database(to.database);
    sqlite::NewFile workgroup(to.workgroup);
    const Location files{database.TemporaryPath(), workgroup.TemporaryPath()};
    sqlite::CreateFiles(files, admin, password, PasswordCost::Interactive());
    CopyReport report;
    {
        const auto connection = sqlite::OpenFiles(files, {});
        connection->Begin();
        report = CopyRecords(from, {connection, false}, to.database);
        connection->Change("DELETE FROM workgroup.account");
        for (const QString& group : ReadGroups(from))
            connection->Change("INSERT OR IGNORE INTO workgroup.account_group (group_name) VALUES (?)",
                               {group});
        for (const Account& account : ReadAccounts(from)) {
            if (IsAdministrator(account, admin)) {
                AddToFile(*connection, account,
                          QString::fromLatin1(HashPassword(password, PasswordCost::Interactive())));
                continue;
            }
            AddToFile(*connection, account, account.secret.isEmpty() ? QString(NoSecret) : account.secret);
            (account.secret.isEmpty() ? report.withoutPassword : report.serverPassword).append(account.name);
        }
        connection->Change("UPDATE workgroup.file_info SET value = (SELECT value FROM main.file_info WHERE "
                           "name = 'database_id') WHERE name = 'database_id'");
        connection->Commit();
        connection->Close();
    }
    workgroup.Publish();
    database.Publish();
    workgroup.Keep();
    database.Keep();
    return report;
}

} // namespace

CopyReport CopyDatabase(const Location& from, const Location& to, const QString& admin,
                        const QString& password)
{
    const bool fromServer = IsServerTarget(from.database);
    if (fromServer == IsServerTarget(to.database))
        throw Error(Kind::WrongUse, {to.database});
    QString name;
    {
        const auto workspace = OpenWorkspace(from, admin, password);
        name = workspace->UserName();
        if (!workspace->Users().Item(name)->Groups().Contains(AdminsGroupName))
            throw Error(Kind::NotPermitted);
    }
    if (fromServer) {
        const auto server =
            postgresql::ConnectAsServerAdministrator(postgresql::ServerAddress::Parse(from.database));
        // All of it as it is at one moment; consoles go on meanwhile.
        server->Execute("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY");
        return CopyToFile({server, true}, to, name, password);
    }
    const Side source{sqlite::OpenFiles(from, {}), false};
    return CopyToServer(source, postgresql::ServerAddress::Parse(to.database), name, password);
}

} // namespace dao
