#pragma once

#include "simulator/program/Options.h"
#include "simulator/program/Port.h"

#include <memory>

namespace sim {

// The port that the options ask for. Throws PortError.
std::unique_ptr<Port> MakePort(const Options& options);

} // namespace sim
