#pragma once

#include "map27/codec/Octets.h"
#include "map27/link/Time.h"

#include <utility>

namespace map27 {

// The frames that one call brings about, and how long the line needs for them.
class FrameSender {
public:
    // 0: the line takes no time.
    explicit FrameSender(unsigned bitsPerSecond) : m_bitRate(bitsPerSecond) {}

    void Send(const Octets& body, TimePoint now);
    std::vector<Octets> Take() { return std::exchange(m_frames, {}); }
    std::uint64_t Count() const { return m_count; }

    Milliseconds LineTime(std::size_t octets) const;
    // When everything sent so far has left.
    TimePoint FreeAt() const { return m_freeAt; }

private:
    unsigned m_bitRate;
    std::vector<Octets> m_frames;
    std::uint64_t m_count = 0;
    TimePoint m_freeAt{};
};

} // namespace map27
