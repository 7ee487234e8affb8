#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/PasswordReader.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"

namespace {

int Run(const Request& request)
{
    const QString administrator = request.options.value("admin");
    const dao::Location location = AccountOptions::TargetOf(request);
    PasswordReader passwords(request.options.isSet("password-stdin"));
    dao::CreateDatabase(location, administrator, passwords.New(administrator),
                        dao::PasswordCost::Interactive(), request.options.value("group"));
    Console::Print(location.workgroup.isEmpty()
                       ? QStringLiteral("Created %1").arg(AccountOptions::ShownTarget(request))
                       : QStringLiteral("Created %1 and %2").arg(location.database, location.workgroup));
    return exitOk;
}

} // namespace

Command DbCreateCommand()
{
    return {
        .words = "db create",
        .synopsis = "TARGET [--admin NAME] [--group NAME] [--password-stdin]",
        .summary = "make an empty database with its first administrator",
        .help = AccountOptions::AboutTargetWithUser() +
                R"(The file of a database file's accounts is made beside it, with the same name and the ending
kynw. On a server USER has to be one that may make databases and roles. Nothing that exists is
ever touched. The administrator's password is asked for twice.
Both files are for your account of this computer alone. With --group the accounts of a group share
them; their folder is then made for the group, or has to be so (chgrp NAME, chmod 2770).)",
        .options = {QCommandLineOption("admin", "the administrator's name (default: admin)", "NAME",
                                       AccountOptions::DefaultAdministrator),
                    QCommandLineOption("group", "the group of this computer whose accounts share the files",
                                       "NAME"),
                    AccountOptions::PasswordFromStdin()},
        .fewestArguments = 1,
        .mostArguments = 1,
        .run = Run};
}
