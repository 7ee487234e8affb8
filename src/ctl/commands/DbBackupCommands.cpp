#include "core/eventlog/ChainCheck.h"
#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/LogSigner.h"
#include "ctl/commands/PasswordReader.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"
#include "dao/Backup.h"

#include <QDir>
#include <QFileInfo>

namespace {

constexpr qsizetype MostNamed = 200; // characters of a backup's name in a record

void PrintTables(const dao::CopyReport& report)
{
    for (const dao::CopyReport::Table& table : report.tables)
        Console::Print(QStringLiteral("%1\t%2").arg(table.name).arg(table.records));
}

void RequireGiven(const QString& argument, const char* name)
{
    if (argument.isEmpty())
        throw UsageError(QStringLiteral("%1 is empty").arg(QLatin1String(name)));
}

int Back(const Request& request)
{
    const dao::Location from = AccountOptions::TargetOf(request);
    RequireGiven(request.arguments[1], "FOLDER");
    const QString admin = request.options.value("as");
    PasswordReader passwords(request.options.isSet("password-stdin"));
    const dao::BackupReport report = dao::MakeBackup(
        from, request.arguments[1], QDateTime::currentDateTimeUtc(), admin, passwords.Existing(admin));
    PrintTables(report);
    Console::Print(QStringLiteral("Backed up and examined: %1").arg(report.generation));
    if (!report.serverPassword.isEmpty())
        Console::Print(QStringLiteral("Passwords that only a restore to a server brings back: %1")
                           .arg(report.serverPassword.join(QStringLiteral(", "))));
    AccountOptions::TellWithoutPassword(report.withoutPassword);
    return exitOk;
}

int Restore(const Request& request)
{
    RequireGiven(request.arguments[0], "BACKUP");
    RequireGiven(request.arguments[1], "NEW_TARGET");
    const QString admin = request.options.value("as");
    PasswordReader passwords(request.options.isSet("password-stdin"));
    const QString password = passwords.Existing(admin);
    const QString note =
        ChainCheck::RestoreText + QFileInfo(QDir::cleanPath(request.arguments[0])).fileName().left(MostNamed);
    LogSigner signer;
    const dao::CopyReport report = dao::RestoreBackup(
        request.arguments[0], dao::LocationOf(request.arguments[1]), admin, password, note, signer.Signer());
    signer.Keep();
    PrintTables(report);
    Console::Print(QStringLiteral("Restored and examined"));
    AccountOptions::TellWithoutPassword(report.withoutPassword);
    return exitOk;
}

} // namespace

Command DbBackupCommand()
{
    return {
        .words = "db backup",
        .synopsis = "TARGET FOLDER [--as ADMINISTRATOR] [--password-stdin]",
        .summary = "add a backup of a database to a folder",
        .help =
            AccountOptions::AboutTargetWithUser() +
            R"(FOLDER gets a new folder, named after the database and the time, with everything that the database
holds, accounts and groups too, as files, and a receipt for "log verify"; it is examined before it
gets its name. Others stay as they are. Consoles may go on meanwhile. Asks for the password of an administrator of the database.

Of a database on a server, USER has to be one that may act as its owner. Passwords of its accounts are
only taken along when USER is a superuser, and only come back on a server; all others have to be reset
after a restore, but for that of the administrator who made the backup.)",
        .options = {AccountOptions::ActingAccount(), AccountOptions::PasswordFromStdin()},
        .fewestArguments = 2,
        .mostArguments = 2,
        .run = Back};
}

Command DbRestoreCommand()
{
    return {
        .words = "db restore",
        .synopsis = "BACKUP NEW_TARGET [--as ADMINISTRATOR] [--password-stdin]",
        .summary = "make a new database of a backup",
        .help =
            R"(BACKUP is a folder that "db backup" or the console has made, and stays as it is. NEW_TARGET is the
path of a database file, or postgresql://USER@HOST/NAME, whose USER may make databases and roles
there; it must not exist yet: nothing is ever overwritten. Point the consoles to it afterwards.
Asks for the password of an administrator in the backup. The log gets a record that says what was
restored, by which "log verify" knows what is missing since then.)",
        .options = {AccountOptions::ActingAccount(), AccountOptions::PasswordFromStdin()},
        .fewestArguments = 2,
        .mostArguments = 2,
        .run = Restore};
}
