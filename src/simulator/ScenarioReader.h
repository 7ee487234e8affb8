#pragma once

#include "simulator/JsonNode.h"
#include "simulator/Scenario.h"

#include <QByteArray>

namespace sim {

// A scenario document (docs/scenarios.md). Throws ScenarioError.
Scenario ReadScenario(const QByteArray& json);

// The file, or a resource when the path begins with ":/". Throws ScenarioError that begins with the path.
Scenario LoadScenario(const QString& path);

} // namespace sim
