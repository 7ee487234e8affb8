#pragma once

#include "simulator/JsonNode.h"
#include "simulator/Scenario.h"

#include <QByteArray>

namespace sim {

// A scenario document (docs/scenarios.md), its base included. Throws ScenarioError.
Scenario ReadScenario(const QByteArray& json);

// A file, a resource when the name begins with ":/", or one of the built-in ones by its bare name
// ("busy-day"). A file of that name goes before it. Throws ScenarioError that begins with the name.
Scenario LoadScenario(const QString& name);

} // namespace sim
