#pragma once

#include "simulator/Scenario.h"

#include <variant>

namespace sim {

// What a person or a program asks of the running simulation, one line each (docs/scenarios.md).
struct HelpCommand {};
struct ListCommand {};  // the fleet
struct StateCommand {}; // of the radio
struct LastCommand {};  // the console's last request
struct SilentCommand {
    bool silent = true; // nothing gets through the line
};

using Command = std::variant<Action, HelpCommand, ListCommand, StateCommand, LastCommand, SilentCommand>;

struct CommandProblem {
    std::string reason; // in plain words
};

// Names are looked up in the scenario's fleet.
std::variant<Command, CommandProblem> ParseCommand(std::string_view line, const Scenario& scenario);

// One line a command.
std::string CommandHelp();

} // namespace sim
