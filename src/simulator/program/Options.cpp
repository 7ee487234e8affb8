#include "simulator/program/Options.h"

#include <QCommandLineParser>

#include <array>
#include <cmath>

namespace sim {

namespace {

constexpr std::string_view HelpText = R"(veltorkyn-radio: a simulated MAP27 radio with its network.

usage: veltorkyn-radio (--pty LINK | --listen HOST:PORT) [switches]

Where the console connects:
  --pty LINK          a pseudo terminal; LINK becomes a symbolic link to it
  --listen HOST:PORT  a TCP port; port 0 takes any that is free

What it does:
  --scenario NAME     own numbering, fleet, behaviours and timed events: a JSON
                      file, or one of the built-in busy-day (default),
                      quiet-day, storm, failing-network, training and tour
  --speed BAUD        speed of the line in both directions, 50 to 1000000 bits
                      per second; 0: as fast as possible (default 9600)
  --trace FILE        write every frame to FILE, one JSON object a line; a file
                      that is there already is continued
  --seed N            seed of everything that happens by chance (default 1)

Instead of a simulation:
  --replay FILE       play the radio's side of a trace, and compare what the
                      console does with what it did then; ends with 0 at the
                      trace's end, and with 1 where the console does something
                      else, which it names
  --messages          play the messages only, over a link of its own: then
                      neither the console's questions nor the link's numbers
                      and moments have to be the same
  --fast              as fast as the console answers; else at the trace's times
  --with-commands     wait for the commands of the trace on standard input, and
                      answer each as it was answered then; else they are left out
  --patience S        seconds to wait for the console (default 60; 0: for ever)

Faults on purpose:
  --fault NAME[=VALUE]  see docs/scenarios.md; may be given several times
  --silent-after S    fall silent S seconds after the link came up first

  --help, --version

When the console may connect, one line "ready: ..." with the port is printed.
From then on commands are read from standard input, one a line; each is answered
with "ok" or "error" and the reason. The command "help" lists them.
)";

// Thrown inside, returned outside.
[[noreturn]] void Fail(const QString& name, const std::string& reason)
{
    throw OptionsProblem{name.toStdString() + ": " + reason};
}

double ParseReal(const QString& name, const QString& value, double highest)
{
    bool valid = false;
    const double number = value.toDouble(&valid);
    if (!valid || !std::isfinite(number) || number < 0 || number > highest)
        Fail(name, '"' + value.toStdString() + "\" is not a number from 0 to " +
                       QString::number(highest, 'g', 12).toStdString());
    return number;
}

void ParseListen(const QString& name, const QString& value, Options& options)
{
    const qsizetype colon = value.lastIndexOf(QLatin1Char(':'));
    bool valid = false;
    options.listenPort = value.mid(colon + 1).toUShort(&valid);
    options.listenHost = value.left(std::max<qsizetype>(colon, 0));
    if (options.listenHost.startsWith(QLatin1Char('[')) && options.listenHost.endsWith(QLatin1Char(']')))
        options.listenHost = options.listenHost.mid(1, options.listenHost.size() - 2);
    if (colon < 1 || !valid || options.listenHost.isEmpty())
        Fail(name, '"' + value.toStdString() + "\" is not HOST:PORT with a port from 0 to 65535");
}

void ParseSpeed(const QString& name, const QString& value, Options& options)
{
    bool valid = false;
    const uint speed = value.toUInt(&valid);
    if (!valid || (speed != 0 && (speed < 50 || speed > 1'000'000)))
        Fail(name, '"' + value.toStdString() + "\" is neither 0 nor 50 to 1000000");
    options.simulation.bitsPerSecond = speed;
}

void ParseSeed(const QString& name, const QString& value, Options& options)
{
    bool valid = false;
    options.simulation.seed = value.toULongLong(&valid);
    if (!valid)
        Fail(name, '"' + value.toStdString() + "\" is not a whole number from 0");
}

void ParseFault(const QString& name, const QString& value, Options& options)
{
    const std::string text = value.toStdString();
    const std::size_t equals = std::min(text.find('='), text.size());
    std::string problem;
    const auto choice = ChooseFault(text.substr(0, equals),
                                    equals < text.size() ? text.substr(equals + 1) : std::string{}, problem);
    if (!choice)
        Fail(name, problem);
    options.simulation.faults.Set(choice->kind, choice->value);
}

struct Switch {
    const char* name;
    void (*take)(const QString& name, const QString& value, Options& options);
};

constexpr double LongestSilence = 30.0 * 86400; // seconds
constexpr double LongestPatience = 86400;       // seconds

constexpr std::array Switches{
    Switch{"pty", [](const QString&, const QString& value, Options& o) { o.ptyLink = value; }},
    Switch{"listen", ParseListen},
    Switch{"scenario", [](const QString&, const QString& value, Options& o) { o.scenario = value; }},
    Switch{"speed", ParseSpeed},
    Switch{"trace", [](const QString&, const QString& value, Options& o) { o.trace = value; }},
    Switch{"seed", ParseSeed},
    Switch{"replay", [](const QString&, const QString& value, Options& o) { o.replay = value; }},
    Switch{"patience",
           [](const QString& name, const QString& value, Options& o) {
               o.replaySettings.patience =
                   Milliseconds(std::llround(ParseReal(name, value, LongestPatience) * 1000));
           }},
    Switch{"fault", ParseFault},
    Switch{"silent-after",
           [](const QString& name, const QString& value, Options& o) {
               o.simulation.silentAfter =
                   Milliseconds(std::llround(ParseReal(name, value, LongestSilence) * 1000));
           }},
};

// What a simulation alone needs, and what a replay alone needs.
void CheckReplay(const QCommandLineParser& parser, Options& options)
{
    const auto refuse = [&](std::initializer_list<const char*> names, const char* why) {
        for (const char* name : names)
            if (parser.isSet(QLatin1String(name)))
                throw OptionsProblem{std::string("--") + name + why};
    };
    if (options.replay.isEmpty())
        return refuse({"fast", "messages", "with-commands", "patience"}, " is for --replay only");
    refuse({"scenario", "speed", "seed", "fault", "silent-after"}, " does not go with --replay");
    options.replaySettings.fast = parser.isSet(QStringLiteral("fast"));
    options.replaysMessages = parser.isSet(QStringLiteral("messages"));
    options.replaySettings.withCommands = parser.isSet(QStringLiteral("with-commands"));
}

Options TakeSwitches(const QCommandLineParser& parser)
{
    Options options;
    for (const Switch& known : Switches) {
        const QString name = QLatin1String("--") + QLatin1String(known.name);
        for (const QString& value : parser.values(QLatin1String(known.name))) {
            if (value.isEmpty())
                Fail(name, "its value is empty");
            known.take(name, value, options);
        }
    }
    if (options.ptyLink.isEmpty() == options.listenHost.isEmpty())
        throw OptionsProblem{"one of --pty and --listen is needed; --help explains them"};
    CheckReplay(parser, options);
    return options;
}

} // namespace

std::variant<Options, HelpWanted, VersionWanted, OptionsProblem> ParseOptions(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.addOptions({QCommandLineOption(QStringList{"help", "h"}), QCommandLineOption("version"),
                       QCommandLineOption("fast"), QCommandLineOption("messages"),
                       QCommandLineOption("with-commands")});
    for (const Switch& known : Switches)
        parser.addOption(QCommandLineOption(QLatin1String(known.name), {}, QStringLiteral("value")));
    // The parser takes the first argument for the program's name.
    const bool understood = parser.parse(QStringList{QString()} + arguments);
    if (parser.isSet(QStringLiteral("help")))
        return HelpWanted{};
    if (parser.isSet(QStringLiteral("version")))
        return VersionWanted{};
    if (!understood)
        return OptionsProblem{parser.errorText().toStdString() + " --help lists the switches."};
    if (!parser.positionalArguments().isEmpty())
        return OptionsProblem{"unknown argument: " + parser.positionalArguments().first().toStdString()};
    try {
        return TakeSwitches(parser);
    } catch (const OptionsProblem& problem) {
        return problem;
    }
}

std::string OptionsHelp()
{
    return std::string(HelpText);
}

} // namespace sim
