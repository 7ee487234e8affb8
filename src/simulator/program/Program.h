#pragma once

#include "simulator/program/LineReader.h"
#include "simulator/program/Options.h"
#include "simulator/program/Port.h"
#include "simulator/program/Simulation.h"
#include "simulator/program/TraceWriter.h"

#include <QElapsedTimer>
#include <QTimer>

#include <functional>
#include <memory>
#include <string>

namespace sim {

// The simulation on a real port, with the system's clock, a trace file, and commands from a file descriptor.
class Program : public QObject {
    Q_OBJECT

public:
    // Where output goes. Answers end with a line end.
    struct Console {
        std::function<void(const std::string& text)> print; // standard output
        std::function<void(const std::string& line)> log;   // standard error
    };

    // Opens the port and the trace file. Throws ScenarioError, PortError or std::runtime_error, each with a
    // sentence for a person.
    Program(const Options& options, Console console);

    QString PortName() const { return m_port->Name(); }
    // Starts to read commands. The caller keeps the descriptor.
    void ReadCommands(int descriptor);

private:
    TimePoint Now() const;
    void Take(const SimulationOutput& output);
    void Plan();
    void Execute(const QByteArray& line);

    Console m_console;
    Simulation m_simulation;
    QElapsedTimer m_clock;
    QTimer m_timer;
    unsigned m_bitsPerSecond; // 0: unpaced
    TraceWriter m_trace;
    std::unique_ptr<Port> m_port;
    std::unique_ptr<LineReader> m_commands;
};

} // namespace sim
