#include "simulator/program/Program.h"

#include "simulator/program/MakePort.h"
#include "simulator/script/ScenarioReader.h"

#include <algorithm>

namespace sim {

namespace {

map27::OctetSpan Octets(const QByteArray& bytes)
{
    return {reinterpret_cast<const std::uint8_t*>(bytes.constData()), static_cast<std::size_t>(bytes.size())};
}

} // namespace

Program::Program(const Options& options, Console console)
    : m_console(std::move(console)),
      m_simulation(LoadScenario(options.scenario), options.simulation),
      m_bitsPerSecond(options.simulation.bitsPerSecond),
      m_trace(options.trace, m_console.log)
{
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] { Take(m_simulation.OnTime(Now())); });

    m_port = MakePort(options);
    connect(m_port.get(), &Port::Came, this, [this] {
        m_console.log("console connected");
        m_trace.Write({.kind = map27::TraceEntry::Kind::Opened, .at = Now(), .number = m_bitsPerSecond});
        Take(m_simulation.ConsoleCame(Now()));
    });
    connect(
        m_port.get(), &Port::Went, this,
        [this] {
            m_console.log("console gone");
            m_trace.Write({.kind = map27::TraceEntry::Kind::Closed, .at = Now()});
            Take(m_simulation.ConsoleWent(Now()));
        });
    connect(m_port.get(), &Port::Received, this,
            [this](const QByteArray& octets) { Take(m_simulation.Feed(Octets(octets), Now())); });
    Plan();
}

void Program::ReadCommands(int descriptor)
{
    m_commands = std::make_unique<LineReader>(descriptor);
    connect(m_commands.get(), &LineReader::LineRead, this, &Program::Execute);
    connect(m_commands.get(), &LineReader::LineTooLong, this,
            [this] { m_console.print("error the line is too long\n"); });
}

TimePoint Program::Now() const
{
    return TimePoint(Milliseconds(m_clock.elapsed()));
}

void Program::Take(const SimulationOutput& output)
{
    if (!output.toConsole.empty())
        m_port->Send(QByteArray(reinterpret_cast<const char*>(output.toConsole.data()),
                                static_cast<qsizetype>(output.toConsole.size())));
    for (const TracedFrame& frame : output.traced)
        m_trace.Write(EntryOf(frame));
    for (const std::string& note : output.notes)
        m_console.log(note);
    Plan();
}

void Program::Plan()
{
    const Deadline next = m_simulation.NextDeadline();
    if (!next)
        m_timer.stop();
    else
        m_timer.start(std::max(*next - Now(), Milliseconds(0)));
}

void Program::Execute(const QByteArray& line)
{
    const QByteArray command = line.trimmed();
    if (command.isEmpty() || command.startsWith('#'))
        return;
    const TimePoint now = Now();
    Take(m_simulation.OnTime(now)); // what went before is traced before
    const auto [text, output] =
        m_simulation.Execute({line.constData(), static_cast<std::size_t>(line.size())}, now);
    m_console.print(text + '\n');
    m_trace.Write({.kind = map27::TraceEntry::Kind::Command,
                   .at = now,
                   .command = command.toStdString(),
                   .answer = text});
    Take(output);
}

} // namespace sim
