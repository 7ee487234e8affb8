#include "simulator/program/Trace.h"

namespace sim {

std::string TraceLine(const TracedFrame& frame)
{
    std::string line = "{\"ms\":" + std::to_string(frame.at.time_since_epoch().count());
    line += frame.direction == map27::Direction::ToRadio ? ",\"dir\":\"D>R\"" : ",\"dir\":\"R>D\"";
    line += ",\"frame\":\"" + map27::ToHex(frame.frame) + '"';
    if (!frame.fault.empty())
        line += ",\"fault\":\"" + std::string(frame.fault) + '"';
    return line + '}';
}

} // namespace sim
