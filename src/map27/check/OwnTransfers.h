#pragma once

#include "map27/codec/Octets.h"
#include "map27/link/Time.h"

#include <optional>

namespace map27 {

// The LTs of this end on the link that is up: which number is next, and which waits for its LA.
class OwnTransfers {
public:
    void Begin() { *this = {}; }
    // An LT as a frame, and its N(S).
    void Take(const Octets& frame, std::uint8_t number, TimePoint now);
    // An LA. How long it took when it is the first for the last LT.
    std::optional<Milliseconds> TakeAcknowledgement(std::uint8_t number, TimePoint at);

    // The body of the next LT with this message.
    Octets Next(const Octets& message) const;
    // The message with octets after its end that give the next LT a check sequence of flags.
    Octets WithFlagFcs(const Octets& message) const;
    // Whether an LA with this number acknowledges the next LT, too.
    bool IsBeyond(std::uint8_t number) const { return number == static_cast<std::uint8_t>(m_next + 1); }
    // The last LT as a frame; empty: none was sent.
    const Octets& Last() const { return m_last; }

private:
    Octets m_last;
    std::uint8_t m_next = 1;
    std::optional<TimePoint> m_unconfirmed; // when the last one went out first
};

} // namespace map27
