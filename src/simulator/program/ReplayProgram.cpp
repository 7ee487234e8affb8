#include "simulator/program/ReplayProgram.h"

#include "simulator/program/MakePort.h"
#include "simulator/replay/MessageReplay.h"
#include "simulator/replay/Replay.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace sim {

namespace {

constexpr Milliseconds LastWords{300};

// Throws std::runtime_error when the trace cannot be played so.
std::unique_ptr<Player> MakePlayer(const Options& options,
                                   const std::function<void(const std::string& line)>& log)
{
    std::vector<ReplayEntry> entries = LoadReplay(options.replay);
    const auto why = WhyNotAllFrames(entries);
    if (options.replaysMessages) {
        if (why)
            log(*why + "; its messages are played as far as they are there");
        return std::make_unique<MessageReplay>(entries, options.replaySettings);
    }
    if (why)
        throw std::runtime_error(options.replay.toStdString() + ", " + *why +
                                 "; --messages plays the messages alone, over a link of its own");
    return std::make_unique<Replay>(std::move(entries), options.replaySettings);
}

} // namespace

ReplayProgram::ReplayProgram(const Options& options, Program::Console console)
    : m_console(std::move(console)),
      m_replay(MakePlayer(options, m_console.log)),
      m_trace(options.trace, m_console.log)
{
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] { Take(m_replay->OnTime(Now())); });
    m_port = MakePort(options);
    connect(m_port.get(), &Port::Came, this, [this] {
        m_console.log("console connected");
        m_trace.Write({.kind = map27::TraceEntry::Kind::Opened, .at = Now()});
        Take(m_replay->ConsoleCame(Now()));
    });
    connect(m_port.get(), &Port::Went, this, [this] {
        m_console.log("console gone");
        m_trace.Write({.kind = map27::TraceEntry::Kind::Closed, .at = Now()});
        Take(m_replay->ConsoleWent(Now()));
    });
    connect(m_port.get(), &Port::Received, this, [this](const QByteArray& octets) {
        const auto* first = reinterpret_cast<const std::uint8_t*>(octets.constData());
        Take(m_replay->Feed({first, static_cast<std::size_t>(octets.size())}, Now()));
    });
}

void ReplayProgram::ReadCommands(int descriptor)
{
    m_commands = std::make_unique<LineReader>(descriptor);
    connect(m_commands.get(), &LineReader::LineRead, this, &ReplayProgram::Execute);
    connect(m_commands.get(), &LineReader::LineTooLong, this,
            [this] { m_console.print("error the line is too long\n"); });
}

void ReplayProgram::Take(const ReplayOutput& output)
{
    if (!output.toConsole.empty())
        m_port->Send(QByteArray(reinterpret_cast<const char*>(output.toConsole.data()),
                                static_cast<qsizetype>(output.toConsole.size())));
    for (const map27::TraceEntry& entry : output.traced)
        m_trace.Write(entry);
    for (const std::string& note : output.notes)
        m_console.log(note);
    if (const auto& end = m_replay->TheEnd(); end && !std::exchange(m_ended, true)) {
        m_console.log(end->text);
        // The last octets are still on their way.
        QTimer::singleShot(LastWords, this,
                           [this, isFaithful = end->isFaithful] { Q_EMIT Ended(isFaithful); });
    }
    if (const Deadline next = m_replay->NextDeadline())
        m_timer.start(std::max(*next - Now(), Milliseconds(0)));
    else
        m_timer.stop();
}

void ReplayProgram::Execute(const QByteArray& line)
{
    const QByteArray command = line.trimmed();
    if (command.isEmpty() || command.startsWith('#'))
        return;
    const auto [text, output] = m_replay->Execute(command.toStdString(), Now());
    m_console.print(text + '\n');
    Take(output);
}

} // namespace sim
