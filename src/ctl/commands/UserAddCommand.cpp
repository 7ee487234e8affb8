#include "core/session/AccountChanges.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "core/texts/Validation.h"
#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/PasswordReader.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"
#include "dao/base/Passwords.h"

namespace {

constexpr int PersonalIdentifierLength = 20;

int Run(const Request& request)
{
    NewAccount account;
    account.userName = request.arguments[1].trimmed();
    account.pid = dao::RandomText(PersonalIdentifierLength);
    account.callsign =
        request.options.isSet("callsign") ? request.options.value("callsign").trimmed() : account.userName;
    account.group = request.options.value("group");
    account.allowRegrouping = request.options.isSet("allow-regrouping");
    if (!IsValidCallsign(account.callsign))
        throw UsageError(QStringLiteral("callsign \"%1\": %2")
                             .arg(account.callsign, request.strings.LoadString(CoreText::CallsignRule)));

    PasswordReader passwords(request.options.isSet("password-stdin"));
    const auto workspace = AccountOptions::OpenAs(request.options.value("as"), request, passwords);
    account.password = passwords.New(account.userName);
    AddAccount(*workspace, account);
    Console::Print(QStringLiteral("Added %1").arg(account.userName));
    return exitOk;
}

} // namespace

Command UserAddCommand()
{
    return {.words = "user add",
            .synopsis = "TARGET NAME [--as NAME] [--callsign CALLSIGN] [--group GROUP] [--allow-regrouping] "
                        "[--password-stdin]",
            .summary = "add an operator's account",
            .help = AccountOptions::AboutTarget() +
                    R"(Asks for the password of the administrator that does it, then twice for that of the new
account. With --password-stdin these are two lines, in this order.)",
            .options = {AccountOptions::ActingAccount(),
                        QCommandLineOption(
                            "callsign", "the operator's callsign (default: the account's name)", "CALLSIGN"),
                        QCommandLineOption("group", "a group besides Users; Admins makes an administrator",
                                           "GROUP"),
                        QCommandLineOption("allow-regrouping", "the operator may regroup radios"),
                        AccountOptions::PasswordFromStdin()},
            .fewestArguments = 2,
            .mostArguments = 2,
            .run = Run};
}
