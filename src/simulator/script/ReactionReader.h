#pragma once

#include "simulator/base/Fleet.h"
#include "simulator/script/JsonNode.h"

namespace sim {

// A behaviour by its word alone, or an object of behaviour, reactAfterMs, answerAfterMs and talkMs.
Reaction ReadReaction(const JsonNode& node);

// The reactions of a fleet member: its own behaviour and times for everything, and "status", "text",
// "call" and "regroup" where one of them differs.
Reactions ReadReactions(const JsonNode& member);

// Throws at the node for a word that is no behaviour.
Behaviour ReadBehaviour(const JsonNode& node);

} // namespace sim
