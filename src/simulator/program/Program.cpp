#include "simulator/program/Program.h"

#include "map27/trace/TraceEntry.h"
#include "simulator/program/PtyPort.h"
#include "simulator/program/TcpPort.h"
#include "simulator/script/ScenarioReader.h"

#include <algorithm>

namespace sim {

namespace {

std::unique_ptr<Port> MakePort(const Options& options)
{
    if (!options.ptyLink.isEmpty())
        return std::make_unique<PtyPort>(options.ptyLink);
    return std::make_unique<TcpPort>(options.listenHost, options.listenPort);
}

map27::OctetSpan Octets(const QByteArray& bytes)
{
    return {reinterpret_cast<const std::uint8_t*>(bytes.constData()), static_cast<std::size_t>(bytes.size())};
}

} // namespace

std::string TraceLine(const TracedFrame& frame)
{
    return map27::WriteTraceEntry({.at = frame.at,
                                   .direction = frame.direction,
                                   .octets = frame.frame,
                                   .fault = std::string(frame.fault)});
}

Program::Program(const Options& options, Console console)
    : m_console(std::move(console)),
      m_simulation(LoadScenario(options.scenario), options.simulation)
{
    if (!options.trace.isEmpty()) {
        m_trace.setFileName(options.trace);
        // For its owner alone: it holds every text that is sent. What an earlier run wrote stays.
        if (!m_trace.open(QIODevice::WriteOnly | QIODevice::Append,
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner)) {
            throw std::runtime_error(options.trace.toStdString() +
                                     ": cannot be written: " + m_trace.errorString().toStdString());
        }
    }
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] { Take(m_simulation.OnTime(Now())); });

    m_port = MakePort(options);
    connect(m_port.get(), &Port::Came, this, [this] {
        m_console.log("console connected");
        Take(m_simulation.ConsoleCame(Now()));
    });
    connect(
        m_port.get(), &Port::Went, this,
        [this] {
            m_console.log("console gone");
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
    WriteTrace(output.traced);
    for (const std::string& note : output.notes)
        m_console.log(note);
    Plan();
}

void Program::WriteTrace(const std::vector<TracedFrame>& frames)
{
    if (!m_trace.isOpen())
        return;
    for (const TracedFrame& frame : frames) {
        const QByteArray line = QByteArray::fromStdString(TraceLine(frame)) + '\n';
        if (m_trace.write(line) == line.size() && m_trace.flush())
            continue;
        m_console.log("the trace ends here: " + m_trace.errorString().toStdString());
        m_trace.close();
        return;
    }
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
    const auto [text, output] =
        m_simulation.Execute({line.constData(), static_cast<std::size_t>(line.size())}, Now());
    m_console.print(text + '\n');
    Take(output);
}

} // namespace sim
