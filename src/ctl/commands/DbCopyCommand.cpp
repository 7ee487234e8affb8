#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/PasswordReader.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"
#include "dao/Copy.h"

namespace {

int Run(const Request& request)
{
    const dao::Location from = AccountOptions::TargetOf(request);
    const dao::Location to = dao::LocationOf(request.arguments[1]);
    if (dao::IsServerTarget(from.database) == dao::IsServerTarget(to.database))
        throw UsageError(QStringLiteral("one of FROM and TO has to be on a server, the other a file"));
    const QString admin = request.options.value("as");
    PasswordReader passwords(request.options.isSet("password-stdin"));
    const dao::CopyReport report = dao::CopyDatabase(from, to, admin, passwords.Existing(admin));
    for (const dao::CopyReport::Table& table : report.tables)
        Console::Print(QStringLiteral("%1\t%2").arg(table.name).arg(table.records));
    Console::Print(QStringLiteral("Copied and compared"));
    AccountOptions::TellWithoutPassword(report.withoutPassword + report.serverPassword);
    return exitOk;
}

} // namespace

Command DbCopyCommand()
{
    return {
        .words = "db copy",
        .synopsis = "FROM TO [--as ADMINISTRATOR] [--password-stdin]",
        .summary = "move a database from files to a server or back",
        .help =
            "One of FROM and TO is the path of a database file, the other postgresql://USER@HOST/NAME, whose "
            "USER\n"
            "may make databases and roles there. TO must not exist yet. Everything is copied, read back and\n"
            "compared; consoles should be closed meanwhile. Asks for the password of an administrator of "
            "FROM, who\n"
            "keeps it. Other passwords cannot be carried over: their owners are let in after an "
            "administrator has\n"
            "reset theirs.",
        .options = {AccountOptions::ActingAccount(), AccountOptions::PasswordFromStdin()},
        .fewestArguments = 2,
        .mostArguments = 2,
        .run = Run};
}
