#pragma once

#include "simulator/script/CommandWords.h"

#include <variant>

namespace sim {

// What a person or a program can ask of a running simulation, one command a line (docs/scenarios.md).
struct HelpCommand {};
struct ListCommand {};  // the fleet
struct StateCommand {}; // of the radio
struct LastCommand {};  // the console's last request
struct GroupsCommand {  // a radio's dynamic groups
    map27::Address radio;
};
struct SignalsCommand { // of an outstation
    map27::Address outstation;
};

using Command =
    std::variant<Action, HelpCommand, ListCommand, StateCommand, LastCommand, GroupsCommand, SignalsCommand>;

// Names are looked up in the scenario's fleet.
std::variant<Command, CommandProblem> ParseCommand(std::string_view line, const Scenario& scenario);

// One line a command.
std::string CommandHelp();

} // namespace sim
