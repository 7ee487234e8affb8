#pragma once

#include "simulator/base/Scenario.h"
#include "simulator/script/JsonNode.h"

namespace sim {

// One of a scenario's events: when it happens, and a command line that says what. The names in it are those
// of the fleet read before.
TimedEvent ReadEvent(const JsonNode& node, const Scenario& scenario);

} // namespace sim
