#pragma once

#include "simulator/JsonNode.h"
#include "simulator/Scenario.h"

namespace sim {

// One of a scenario's events; the names in it are those of the fleet read before.
TimedEvent ReadEvent(const JsonNode& node, const Scenario& scenario);

} // namespace sim
