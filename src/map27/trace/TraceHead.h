#pragma once

#include "map27/trace/TraceObserver.h"

#include <map>

namespace map27 {

// What a trace that is continued in another file has to say there, since the file before may be gone: the
// port, the state of the link, and what the radio has said of itself.
class TraceHead {
public:
    // Every entry of the trace, in order.
    void Take(const TraceEntry& entry);
    // None while the line is closed.
    std::vector<TraceEntry> Lines(TimePoint at) const;

private:
    TraceObserver m_observer;
    std::optional<TraceEntry> m_opened;
    std::map<std::uint8_t, Octets> m_said; // by type
};

} // namespace map27
