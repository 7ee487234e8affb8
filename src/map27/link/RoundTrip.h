#pragma once

#include "map27/link/Time.h"

#include <algorithm>

namespace map27 {

// How late a line is: the time from an LT to the LA that acknowledges it, less what the octets take. Measured
// only where one LT can be meant; of a repeated one nobody knows which copy was acknowledged. Kept from one
// link to the next, since the line is the same.
class RoundTrip {
public:
    // A new link: what was measured holds until something new is.
    void Begin() { m_isNew = true; }
    // None is taken to be longer: what was sent before has been lost, or nobody was there.
    static constexpr Milliseconds LongestOfAll{8000};
    // Of an LT that was sent once. A longer time than the longest of all tells that the LA was lost, and what
    // acknowledges is the next that the peer sent of its own accord.
    void Take(Milliseconds time);
    // It is at most so long. Holds until something is measured; a repeated LT tells no more, and so does a
    // request that was answered.
    void TakeLimit(Milliseconds longest) { m_limit = std::max(m_limit, std::min(longest, LongestOfAll)); }

    // 0: not measured.
    Milliseconds Usual() const { return m_usual; }
    // What few exceed.
    Milliseconds Longest() const { return m_usual + 4 * m_deviation; }
    // Likewise, or by the limit.
    Milliseconds AtMost() const { return std::max(Longest(), m_limit + m_limit / 4); }
    Milliseconds Shortest() const { return m_shortest; }
    // Whether the line as it was measured may have taken so long.
    bool IsLikely(Milliseconds time, Milliseconds margin) const
    {
        return m_isMeasured && time >= m_shortest * 3 / 4 - margin && time <= Longest() + margin;
    }

private:
    bool m_isMeasured = false;
    bool m_isNew = true;
    Milliseconds m_usual{0};
    Milliseconds m_deviation{0};
    Milliseconds m_shortest{0};
    Milliseconds m_limit{0};
};

} // namespace map27
