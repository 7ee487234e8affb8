#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/PasswordReader.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"
#include "dao/Transaction.h"
#include "dao/tables/RegistryTable.h"

namespace {

std::unique_ptr<dao::Workspace> Open(const Request& request)
{
    PasswordReader passwords(request.options.isSet("password-stdin"));
    return AccountOptions::OpenAs(request.options.value("as"), request, passwords);
}

int Show(const Request& request)
{
    const auto workspace = Open(request);
    const QMap<QString, QString> settings = dao::RegistryTable::All(workspace->Database());
    for (auto setting = settings.begin(); setting != settings.end(); ++setting)
        Console::Print(setting.key() + '\t' + setting.value());
    return exitOk;
}

int Reset(const Request& request)
{
    const QStringList keys = request.arguments.mid(1);
    const bool all = request.options.isSet("all");
    if (all != keys.isEmpty())
        throw UsageError(QStringLiteral("either the KEYs or --all"));
    const auto workspace = Open(request);
    dao::Transaction transaction(*workspace);
    const QMap<QString, QString> settings = dao::RegistryTable::All(workspace->Database());
    for (auto setting = settings.begin(); setting != settings.end(); ++setting) {
        if (!all && !keys.contains(setting.key()))
            continue;
        dao::RegistryTable::Remove(workspace->Database(), setting.key());
        Console::Print(QStringLiteral("Was: %1\t%2").arg(setting.key(), setting.value()));
    }
    transaction.Commit();
    for (const QString& key : keys)
        if (!settings.contains(key))
            Console::Print(QStringLiteral("Was never stored: %1").arg(key));
    return exitOk;
}

} // namespace

Command SettingsShowCommand()
{
    return {
        .words = "settings show",
        .synopsis = "TARGET [--as NAME] [--password-stdin]",
        .summary = "list the settings that all consoles of a database share",
        .help =
            AccountOptions::AboutTarget() +
            R"(Prints a line for each setting that was ever stored: its key and its value, separated by a tab.
Asks for the password of the account that does it.)",
        .options = {AccountOptions::ActingAccount(), AccountOptions::PasswordFromStdin()},
        .fewestArguments = 1,
        .mostArguments = 1,
        .run = Show};
}

Command SettingsResetCommand()
{
    return {
        .words = "settings reset",
        .synopsis = "TARGET KEY... | --all [--as ADMINISTRATOR] [--password-stdin]",
        .summary = "forget settings that all consoles of a database share",
        .help =
            AccountOptions::AboutTarget() +
            R"(For settings with which no console can be used any more, a numbering that does not exist for example.
They get their defaults again, as in a new database; what they were is printed. A KEY that was never
stored is at its default already. The subscriber numbering is subscriber_numbering. Consoles that are
logged on should log off before. Asks for the password of an administrator.)",
        .options = {QCommandLineOption("all", "all settings"), AccountOptions::ActingAccount(),
                    AccountOptions::PasswordFromStdin()},
        .fewestArguments = 1,
        .mostArguments = -1,
        .run = Reset};
}
