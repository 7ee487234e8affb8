#pragma once

#include "simulator/base/Scenario.h"
#include "simulator/script/JsonNode.h"

namespace sim {

// Members "prefix" and "ident" of the node: the address of a radio or group.
map27::Address ReadAddress(const JsonNode& node);

// Reads a behaviour's word, or an object of behaviour, reactAfterMs, answerAfterMs and talkMs.
Reaction ReadReaction(const JsonNode& node);

// "others" and "numbers" of a gateway.
TelephoneNetwork ReadTelephones(const JsonNode& node);

// Adds the members of the list to the scenario's fleet.
void ReadFleet(const JsonNode& list, Scenario& scenario);

} // namespace sim
