#pragma once

#include "simulator/base/Scenario.h"
#include "simulator/script/JsonNode.h"

#include <QByteArray>

namespace sim {

// A scenario document (docs/scenarios.md), its base included. Throws ScenarioError.
Scenario ReadScenario(const QByteArray& json);

// One of the built-in ones by its bare name ("busy-day"), else a file of up to 16 MiB, or a resource when the
// name begins with ":/". A built-in name goes before a file of that name in the working folder, which is
// "./busy-day". Throws ScenarioError that begins with the name.
Scenario LoadScenario(const QString& name);

} // namespace sim
