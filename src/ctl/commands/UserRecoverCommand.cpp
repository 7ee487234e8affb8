#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/LogSigner.h"
#include "ctl/commands/PasswordReader.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"
#include "dao/Recovery.h"

#include <pwd.h>
#include <unistd.h>

namespace {

// Of the operating system.
QString OwnAccount()
{
    const passwd* entry = ::getpwuid(::getuid());
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString::number(::getuid());
}

int Run(const Request& request)
{
    const dao::Location location = AccountOptions::TargetOf(request);
    if (request.arguments.size() == 1) {
        Console::Print(QStringLiteral("Administrators: %1")
                           .arg(dao::AdministratorsOf(location).join(QStringLiteral(", "))));
        return exitOk;
    }
    const QString account = request.arguments[1];
    PasswordReader passwords(request.options.isSet("password-stdin"));
    const QString note = QStringLiteral("veltorkynctl: new password for %1, set by %2 of this computer")
                             .arg(account, OwnAccount());
    const QString password = passwords.New(account);
    LogSigner signer;
    const QString name = dao::RecoverAccount(location, account, password, note, signer.Signer());
    signer.Keep();
    Console::Print(QStringLiteral("%1 has a new password; the log has a record of it").arg(name));
    return exitOk;
}

} // namespace

Command UserRecoverCommand()
{
    return {
        .words = "user recover",
        .synopsis = "TARGET [NAME] [--password-stdin]",
        .summary = "a new password for an account, when no administrator can log on",
        .help =
            AccountOptions::AboutTargetWithUser() +
            R"(Nobody's old password is asked for, only the new one, twice. For whoever owns the database: of files
the account of this computer that they belong to, or root; on a server a USER that may act as the
owner. The message log gets a record that says so. Without NAME the administrators are listed.)",
        .options = {AccountOptions::PasswordFromStdin()},
        .fewestArguments = 1,
        .mostArguments = 2,
        .run = Run};
}
