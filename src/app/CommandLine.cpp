#include "app/CommandLine.h"

CommandLine CommandLine::Parse(const QStringList& arguments)
{
    CommandLine line;
    const auto wrong = [&line](const QString& problem) {
        line.mode = Mode::Wrong;
        line.problem = problem;
        return line;
    };
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        const bool takesValue = argument == QLatin1String("--settings") ||
                                argument == QLatin1String("--tour") ||
                                argument == QLatin1String("-session") ||
                                argument == QLatin1String("--demonstration");
        if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            line.mode = Mode::Help;
            return line;
        }
        if (argument == QLatin1String("--version")) {
            line.mode = Mode::Version;
            return line;
        }
        if (!takesValue)
            return wrong(QStringLiteral("unknown argument: %1").arg(argument));
        if (i + 1 == arguments.size() || arguments[i + 1].isEmpty())
            return wrong(QStringLiteral("%1 needs a value").arg(argument));
        const QString& value = arguments[++i];
        if (argument == QLatin1String("-session")) // from a session manager that starts the console again
            continue;
        if (argument == QLatin1String("--settings")) {
            line.settingsFile = value;
            continue;
        }
        if (line.mode != Mode::Console)
            return wrong(QStringLiteral("--tour and --demonstration exclude each other"));
        line.mode = argument == QLatin1String("--tour") ? Mode::Tour : Mode::Demonstration;
        line.folder = value;
    }
    if (line.mode != Mode::Console && !line.settingsFile.isEmpty())
        return wrong(QStringLiteral("--settings cannot be combined with --tour or --demonstration"));
    return line;
}

QString CommandLine::Help()
{
    return QStringLiteral(
        "usage: veltorkyn [--settings FILE] | --demonstration DIR | --tour DIR\n"
        "\n"
        "The dispatcher console for MPT1327 trunked radio.\n"
        "\n"
        "  --settings FILE      another settings file than the user's own\n"
        "  --demonstration DIR  a demonstration database and a simulated radio, all kept in DIR\n"
        "  --tour DIR           the guided tour: pictures and tour.log in DIR; needs no display\n"
        "  --version            prints the version\n"
        "  --help               prints this\n"
        "\n"
        "Exit codes: 0 done, 1 failed (the reason is shown), 2 wrong arguments.\n");
}
