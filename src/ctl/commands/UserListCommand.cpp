#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/PasswordReader.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"
#include "dao/tables/UserProfileTable.h"

namespace {

int Run(const Request& request)
{
    PasswordReader passwords(request.options.isSet("password-stdin"));
    const auto workspace = AccountOptions::OpenAs(request.options.value("as"), request, passwords);
    const auto query = workspace->Database().QueryDef("find_users_ob_user");
    query->SetParameter("lookfor", QString());
    const auto accounts = query->OpenSnapshot();
    Console::Print("name\tcallsign\tgroups\tregrouping\tlogged on");
    for (; !accounts->Eof(); accounts->MoveNext()) {
        const dao::UserProfileRecord profile = dao::UserProfileTable::Read(*accounts);
        const QString& name = profile.userName;
        const QStringList groups = workspace->Users().Contains(name)
                                       ? workspace->Users().Item(name)->Groups().Names()
                                       : QStringList();
        Console::Print(QStringList{name, profile.callsign, groups.join(','),
                                   profile.allowRegrouping ? "yes" : "no", profile.loggedOn ? "yes" : "no"}
                           .join('\t'));
    }
    return exitOk;
}

} // namespace

Command UserListCommand()
{
    return {.words = "user list",
            .synopsis = "TARGET [--as NAME] [--password-stdin]",
            .summary = "list the accounts",
            .help = AccountOptions::AboutTarget() +
                    R"(Prints a line of headings and one line for each account: name, callsign, groups
(separated by commas), whether it may regroup radios, whether it is logged on; separated by
tabs. Asks for the password of the account that does it.)",
            .options = {AccountOptions::ActingAccount(), AccountOptions::PasswordFromStdin()},
            .fewestArguments = 1,
            .mostArguments = 1,
            .run = Run};
}
