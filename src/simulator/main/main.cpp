#include "simulator/main/SignalWatch.h"
#include "simulator/program/Program.h"
#include "simulator/program/ReplayProgram.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace {

constexpr int Failed = 1;
constexpr int WrongArguments = 2;

void PrintOut(const std::string& text)
{
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

void PrintLog(const std::string& line)
{
    std::fprintf(stderr, "veltorkyn-radio: %s\n", line.c_str());
}

constexpr auto VersionText = "veltorkyn-radio " VELTORKYN_VERSION "\n";

int RunReplay(const sim::Options& options, const sim::SignalWatch& signalWatch)
{
    sim::ReplayProgram program(options, {PrintOut, PrintLog});
    QObject::connect(&signalWatch, &sim::SignalWatch::Ended, &program, [&program] {
        const auto& end = program.TheEnd();
        if (!end)
            PrintLog("ended before the trace was");
        QCoreApplication::exit(end && end->isFaithful ? 0 : Failed);
    });
    // Queued: the end may come before the event loop has begun.
    QObject::connect(
        &program, &sim::ReplayProgram::Ended, qApp,
        [](bool isFaithful) { QCoreApplication::exit(isFaithful ? 0 : Failed); }, Qt::QueuedConnection);
    PrintOut("ready: " + program.PortName().toStdString() + '\n');
    program.ReadCommands(STDIN_FILENO);
    return QCoreApplication::exec();
}

int Run(const sim::Options& options)
{
    try {
        sim::SignalWatch signalWatch;
        if (!options.replay.isEmpty())
            return RunReplay(options, signalWatch);
        QObject::connect(&signalWatch, &sim::SignalWatch::Ended, qApp, &QCoreApplication::quit);
        sim::Program program(options, {PrintOut, PrintLog});
        PrintOut("ready: " + program.PortName().toStdString() + '\n');
        program.ReadCommands(STDIN_FILENO);
        return QCoreApplication::exec();
    } catch (const std::exception& error) {
        PrintLog(error.what());
        return Failed;
    }
}

} // namespace

int main(int argc, char** argv)
{
    std::signal(SIGPIPE, SIG_IGN);
    QCoreApplication application(argc, argv);
    const auto parsed = sim::ParseOptions(QCoreApplication::arguments().mid(1));
    if (std::holds_alternative<sim::HelpWanted>(parsed)) {
        PrintOut(sim::OptionsHelp());
        return 0;
    }
    if (std::holds_alternative<sim::VersionWanted>(parsed)) {
        PrintOut(VersionText);
        return 0;
    }
    if (const auto* problem = std::get_if<sim::OptionsProblem>(&parsed)) {
        PrintLog(problem->reason);
        return WrongArguments;
    }
    return Run(std::get<sim::Options>(parsed));
}
