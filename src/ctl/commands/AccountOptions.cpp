#include "ctl/commands/AccountOptions.h"

#include "ctl/commands/PasswordReader.h"
#include "ctl/program/Console.h"

#include <QUrl>

namespace {

const QString TargetHelp = QStringLiteral(
    "TARGET is the path of a database file, or postgresql://%1/NAME for a database on a server.\n");

} // namespace

QCommandLineOption AccountOptions::PasswordFromStdin()
{
    return QCommandLineOption("password-stdin",
                              "read passwords from standard input, one a line, instead of the terminal");
}

QCommandLineOption AccountOptions::ActingAccount()
{
    return QCommandLineOption("as", "the account that does it (default: admin)", "NAME",
                              DefaultAdministrator);
}

QString AccountOptions::AboutTarget()
{
    return TargetHelp.arg("HOST");
}

QString AccountOptions::AboutTargetWithUser()
{
    return TargetHelp.arg("USER@HOST");
}

dao::Location AccountOptions::TargetOf(const Request& request)
{
    const QString target = request.arguments[0];
    if (target.isEmpty())
        throw UsageError(QStringLiteral("TARGET is empty"));
    return dao::LocationOf(target);
}

QString AccountOptions::ShownTarget(const Request& request)
{
    const QString target = request.arguments[0];
    return dao::IsServerTarget(target) ? QUrl(target).toString(QUrl::RemovePassword) : target;
}

std::unique_ptr<dao::Workspace> AccountOptions::OpenAs(const QString& account, const Request& request,
                                                       PasswordReader& passwords)
{
    const dao::Location location = TargetOf(request);
    return dao::OpenWorkspace(location, account, passwords.Existing(account));
}

void AccountOptions::TellWithoutPassword(const QStringList& accounts)
{
    if (!accounts.isEmpty())
        Console::Print(QStringLiteral("Need a new password from an administrator: %1")
                           .arg(accounts.join(QStringLiteral(", "))));
}
