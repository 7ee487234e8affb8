#pragma once

#include "simulator/program/LineReader.h"
#include "simulator/program/Options.h"
#include "simulator/program/Port.h"
#include "simulator/program/Program.h"
#include "simulator/program/TraceWriter.h"
#include "simulator/replay/Player.h"

#include <QElapsedTimer>
#include <QTimer>

#include <memory>

namespace sim {

// A replay on a real port, with the system's clock, a trace file, and commands from a file descriptor.
class ReplayProgram : public QObject {
    Q_OBJECT

public:
    // Opens the port and the files. Throws PortError or std::runtime_error, each with a sentence for a
    // person.
    ReplayProgram(const Options& options, Program::Console console);

    QString PortName() const { return m_port->Name(); }
    // Starts to read commands. The caller keeps the descriptor.
    void ReadCommands(int descriptor);

    // Empty until the replay has ended.
    const std::optional<Player::End>& TheEnd() const { return m_replay->TheEnd(); }

Q_SIGNALS:
    // The console has been told everything, or has deviated; the reason was logged.
    void Ended(bool isFaithful);

private:
    TimePoint Now() const { return TimePoint(Milliseconds(m_clock.elapsed())); }
    void Take(const ReplayOutput& output);
    void Execute(const QByteArray& line);

    Program::Console m_console;
    std::unique_ptr<Player> m_replay;
    TraceWriter m_trace;
    QElapsedTimer m_clock;
    QTimer m_timer;
    bool m_ended = false;
    std::unique_ptr<Port> m_port;
    std::unique_ptr<LineReader> m_commands;
};

} // namespace sim
