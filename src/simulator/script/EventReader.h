#pragma once

#include "simulator/base/Scenario.h"
#include "simulator/script/JsonNode.h"

namespace sim {

// One of a scenario's events; the names in it are those of the fleet read before.
TimedEvent ReadEvent(const JsonNode& node, const Scenario& scenario);

} // namespace sim
