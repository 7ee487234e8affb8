#pragma once

#include "map27/codec/Octets.h"
#include "map27/link/Time.h"

#include <deque>

namespace sim {

using map27::Deadline;
using map27::TimePoint;

// One direction of a serial line: octets come out as fast as the line carries them, ten bits each.
class Pacer {
public:
    // 0: the line takes no time.
    explicit Pacer(unsigned bitsPerSecond) : m_rate(bitsPerSecond) {}

    void Push(map27::OctetSpan octets, TimePoint now);
    // The octets whose last bit has arrived.
    map27::Octets Take(TimePoint now);
    Deadline NextDeadline() const;
    void Clear() { m_octets.clear(); }

private:
    using Microseconds = std::chrono::microseconds;

    // When that many octets of the row will have arrived, since the epoch.
    Microseconds ArrivalOf(std::size_t octets) const;

    unsigned m_rate;
    std::deque<std::uint8_t> m_octets;
    // A row is a run of octets without a gap.
    Microseconds m_rowBegin{};
    std::size_t m_taken = 0;
};

} // namespace sim
