#pragma once

#include "simulator/line/Line.h"

#include <string>

namespace sim {

// One line of a trace file, without line end: {"ms":1234,"dir":"D>R","frame":"16 10 02 ..."}, and "fault"
// when the frame was spoiled on purpose. Milliseconds count from the epoch of the caller's time line.
std::string TraceLine(const TracedFrame& frame);

} // namespace sim
