#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/PasswordReader.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"

namespace {

int Run(const Request& request)
{
    const QString account = request.arguments[1];
    const QString acting = request.options.isSet("as") ? request.options.value("as") : account;
    const dao::Location location = AccountOptions::TargetOf(request);
    PasswordReader passwords(request.options.isSet("password-stdin"));
    const QString actingPassword = passwords.Existing(acting);
    const auto workspace = dao::OpenWorkspace(location, acting, actingPassword);
    const auto user = workspace->Users().Item(account);
    user->NewPassword(actingPassword, passwords.New(account));
    Console::Print(QStringLiteral("Changed the password of %1").arg(user->Name()));
    return exitOk;
}

} // namespace

Command UserPasswordCommand()
{
    return {
        .words = "user password",
        .synopsis = "TARGET NAME [--as ADMINISTRATOR] [--password-stdin]",
        .summary = "change an account's password",
        .help =
            AccountOptions::AboutTarget() +
            R"(Without --as the account changes its own password, and its old one is asked for; with --as an
administrator sets it, and the administrator's is asked for. Then the new one is asked for
twice. With --password-stdin these are two lines, in this order.)",
        .options = {QCommandLineOption("as", "the administrator that sets the password", "ADMINISTRATOR"),
                    AccountOptions::PasswordFromStdin()},
        .fewestArguments = 2,
        .mostArguments = 2,
        .run = Run};
}
