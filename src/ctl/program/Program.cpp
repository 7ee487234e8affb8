#include "ctl/program/Program.h"

#include "core/texts/Errors.h"
#include "core/texts/StringSourceImpl.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"

namespace {

constexpr auto Name = "veltorkynctl";

QList<Command> AllCommands()
{
    return {DbCreateCommand(),
            DbCheckCommand(),
            DbMigrateCommand(),
            DbCopyCommand(),
            DbBackupCommand(),
            DbRestoreCommand(),
            UserAddCommand(),
            UserListCommand(),
            UserPasswordCommand(),
            UserRecoverCommand(),
            SettingsShowCommand(),
            SettingsResetCommand(),
            FleetExportCommand(),
            FleetImportCommand(),
            DirectoryExportCommand(),
            DirectoryImportCommand(),
            StatusExportCommand(),
            StatusImportCommand(),
            DialCommand(),
            CatalogueCheckCommand(),
            TraceExplainCommand(),
            RadioCheckCommand(),
            LogShowCommand(),
            LogExportCommand(),
            LogFollowCommand(),
            LogVerifyCommand(),
            LogReceiptCommand(),
            ShiftReportCommand()};
}

QString Version()
{
    return QStringLiteral("%1 " VELTORKYN_VERSION).arg(QLatin1String(Name));
}

QString Overview(const QList<Command>& commands)
{
    QString text =
        QStringLiteral(
            "Usage: %1 COMMAND ...\n\n"
            "Keeps the databases and accounts of the radio dispatcher, and looks at its radio, from the\n"
            "command line.\n\n"
            "Commands:\n")
            .arg(QLatin1String(Name));
    for (const Command& command : commands)
        text += QStringLiteral("  %1  %2\n").arg(command.words, -16).arg(command.summary);
    text +=
        QStringLiteral("\n  %1 COMMAND --help  what a command takes and does\n"
                       "  %1 --version       the program's version\n\n"
                       "Exit codes: 0 done, 1 failed (the reason is on standard error), 2 wrong arguments.")
            .arg(QLatin1String(Name));
    return text;
}

QString HelpOf(const Command& command)
{
    QString text = QStringLiteral("Usage: %1 %2 %3\n\n%4")
                       .arg(QLatin1String(Name), command.words, command.synopsis, command.help);
    if (!command.options.isEmpty())
        text += "\n\nOptions:";
    for (const QCommandLineOption& option : command.options) {
        QString left = "--" + option.names().constFirst();
        if (!option.valueName().isEmpty())
            left += ' ' + option.valueName();
        text += QStringLiteral("\n  %1  %2").arg(left, -22).arg(option.description());
    }
    return text;
}

int FailUsage(const QString& reason, const QString& words)
{
    Console::PrintError(QStringLiteral("%1: %2").arg(QLatin1String(Name), reason));
    Console::PrintError(QStringLiteral("Try: %1").arg(
        QStringList{QLatin1String(Name), words, "--help"}.join(' ').simplified()));
    return exitWrongArguments;
}

int Fail(const QString& reason)
{
    Console::PrintError(QStringLiteral("%1: %2").arg(QLatin1String(Name), reason));
    return exitFailed;
}

int Run(const Command& command, const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.addOptions(command.options);
    parser.addOption(QCommandLineOption("help"));
    // The parser takes the first argument for the program's name.
    if (!parser.parse(QStringList{QLatin1String(Name)} + arguments))
        return FailUsage(parser.errorText(), command.words);
    if (parser.isSet("help")) {
        Console::Print(HelpOf(command));
        return exitOk;
    }
    const QStringList positional = parser.positionalArguments();
    if (positional.size() < command.fewestArguments)
        return FailUsage(QStringLiteral("something is missing: %1 %2").arg(command.words, command.synopsis),
                         command.words);
    if (command.mostArguments >= 0 && positional.size() > command.mostArguments)
        return FailUsage(QStringLiteral("too many arguments: %1").arg(positional[command.mostArguments]),
                         command.words);

    // The built-in texts, so that scripts meet the same sentences on every machine.
    const CStringSourceImpl strings{QStringList{}};
    try {
        return command.run({parser, positional, strings});
    } catch (const UsageError& error) {
        return FailUsage(QString::fromUtf8(error.what()), command.words);
    } catch (const std::exception& failure) {
        return Fail(DescribeError(failure, strings));
    }
}

int Dispatch(const QStringList& arguments)
{
    const QList<Command> commands = AllCommands();
    if (arguments.isEmpty()) {
        Console::PrintError(Overview(commands));
        return exitWrongArguments;
    }
    for (const Command& command : commands) {
        const QStringList words = command.words.split(' ');
        if (arguments.mid(0, words.size()) == words)
            return Run(command, arguments.mid(words.size()));
    }
    if (arguments.contains("--help")) {
        Console::Print(Overview(commands));
        return exitOk;
    }
    if (arguments == QStringList{"--version"}) {
        Console::Print(Version());
        return exitOk;
    }
    return FailUsage(QStringLiteral("unknown command: %1").arg(arguments.mid(0, 2).join(' ')), {});
}

} // namespace

int RunProgram(const QStringList& arguments)
{
    try {
        const int code = Dispatch(arguments);
        Console::Flush();
        return code;
    } catch (const std::exception& failure) {
        return Fail(QString::fromUtf8(failure.what()));
    }
}
