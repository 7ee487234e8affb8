#include "app/CommandLine.h"

#include <QCommandLineParser>

namespace {

const QCommandLineOption SettingsOption{"settings", "another settings file than the user's own", "FILE"};
const QCommandLineOption DemonstrationOption{
    "demonstration", "a demonstration database and a simulated radio, all kept in DIR", "DIR"};
const QCommandLineOption TourOption{"tour", "the guided tour: pictures and tour.log in DIR; needs no display",
                                    "DIR"};
const QCommandLineOption ScriptOption{
    "script", "other steps for the tour than tour/console.tour beside the program", "FILE"};
const QCommandLineOption VersionOption{"version", "prints the version"};
const QCommandLineOption HelpOption{{"help", "h"}, "prints this"};

// Passed by a session manager that restarts the console; written with one dash.
QCommandLineOption SessionOption()
{
    QCommandLineOption option("session", {}, "ID");
    option.setFlags(QCommandLineOption::HiddenFromHelp);
    return option;
}

const QList<QCommandLineOption>& Options()
{
    static const QList<QCommandLineOption> options{SettingsOption, DemonstrationOption, TourOption,
                                                   ScriptOption,   VersionOption,       HelpOption};
    return options;
}

// Empty when the options go together.
QString ProblemOf(const QCommandLineParser& parser)
{
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("unknown argument: %1").arg(parser.positionalArguments().first());
    for (const QCommandLineOption& option : Options())
        if (!option.valueName().isEmpty() && parser.isSet(option) && parser.value(option).isEmpty())
            return QStringLiteral("--%1 needs a value").arg(option.names().first());
    const bool tour = parser.isSet(TourOption);
    const bool demonstration = parser.isSet(DemonstrationOption);
    if (tour && demonstration)
        return QStringLiteral("--tour and --demonstration exclude each other");
    if (parser.isSet(SettingsOption) && (tour || demonstration))
        return QStringLiteral("--settings cannot be combined with --tour or --demonstration");
    if (parser.isSet(ScriptOption) && !tour)
        return QStringLiteral("--script needs --tour");
    return {};
}

} // namespace

CommandLine CommandLine::Parse(const QStringList& arguments)
{
    CommandLine line;
    QCommandLineParser parser;
    parser.addOptions(Options());
    parser.addOption(SessionOption());
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const bool understood = parser.parse(arguments);
    if (parser.isSet(HelpOption)) {
        line.mode = Mode::Help;
        return line;
    }
    if (understood && parser.isSet(VersionOption)) {
        line.mode = Mode::Version;
        return line;
    }
    line.problem = understood ? ProblemOf(parser) : parser.errorText();
    line.settingsFile = parser.value(SettingsOption);
    line.script = parser.value(ScriptOption);
    if (!line.problem.isEmpty()) {
        line.mode = Mode::Wrong;
    } else if (parser.isSet(TourOption)) {
        line.mode = Mode::Tour;
        line.folder = parser.value(TourOption);
    } else if (parser.isSet(DemonstrationOption)) {
        line.mode = Mode::Demonstration;
        line.folder = parser.value(DemonstrationOption);
    }
    return line;
}

QString CommandLine::Help()
{
    QString text = QStringLiteral(
        "usage: veltorkyn [--settings FILE] | --demonstration DIR | --tour DIR [--script FILE]\n"
        "\n"
        "The dispatcher console for MPT1327 trunked radio.\n"
        "\n");
    for (const QCommandLineOption& option : Options()) {
        const QString name = QStringLiteral("--%1 %2").arg(option.names().first(), option.valueName());
        text += QStringLiteral("  %1  %2\n").arg(name, -19).arg(option.description());
    }
    return text +
           QStringLiteral("\nExit codes: 0 done, 1 failed (the reason is shown), 2 wrong arguments.\n");
}
