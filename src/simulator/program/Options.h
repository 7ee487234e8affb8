#pragma once

#include "simulator/program/Simulation.h"
#include "simulator/replay/Player.h"

#include <QStringList>

#include <variant>

namespace sim {

// The command line of veltorkyn-radio.
struct Options {
    QString ptyLink; // either this or listenHost is set
    QString listenHost;
    quint16 listenPort = 0;
    QString scenario = QStringLiteral("busy-day");
    QString trace;  // empty: none
    QString replay; // a trace; empty: the simulation runs
    ReplaySettings replaySettings;
    bool replaysMessages = false; // over a link of its own
    SimulationSettings simulation;
};

// What to print instead of running.
struct HelpWanted {};
struct VersionWanted {};
struct OptionsProblem {
    std::string reason; // in plain words
};

// The arguments after the program's name.
std::variant<Options, HelpWanted, VersionWanted, OptionsProblem> ParseOptions(const QStringList& arguments);

std::string OptionsHelp();

} // namespace sim
