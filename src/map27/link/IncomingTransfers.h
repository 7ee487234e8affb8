#pragma once

#include "map27/link/FrameSender.h"
#include "map27/link/LinkEvents.h"
#include "map27/link/LinkParameters.h"
#include "map27/link/RoundTrip.h"

namespace map27 {

// The messages that one end of a link receives, and the LAs that it sends for them (MAP27 v1.5, 4.4). The
// standard's names of the variables stand in brackets.
class IncomingTransfers {
public:
    // `agreed`: k as negotiated so far; all belong to the link.
    IncomingTransfers(const LinkParameters& own, const LinkParameters& agreed, FrameSender& sender,
                      const RoundTrip& roundTrip, LinkCounters& counters);

    // A new link: numbered from 1; the first LA gives credit.
    void Begin(TimePoint now);
    void Stop();

    // While held, the peer gets no further credit.
    void Hold(bool hold) { m_isHeld = hold; }
    bool IsHeld() const { return m_isHeld; }

    // Something has arrived on this link.
    bool HasReceived() const { return m_nextExpected != 1; }
    // The next LT, and there is room for it.
    bool IsWanted(std::uint8_t number) const;
    // With the optional check: a number that no peer can have sent.
    bool IsOutsideWindow(std::uint8_t number) const;
    // An LT on the link that is up; true: its message is to be delivered.
    bool Take(const Octets& body, TimePoint now);

    void Acknowledge(TimePoint now);
    // The LA of T2 or T3.
    Deadline NextDeadline() const { return Earlier(m_t2, m_t3); }
    void RestartT3(TimePoint now) { m_t3 = now + m_own.t3; }

private:
    void TakeUnwanted(std::uint8_t number, TimePoint now);

    const LinkParameters& m_own;
    const LinkParameters& m_agreed;
    FrameSender& m_sender;
    const RoundTrip& m_roundTrip;
    LinkCounters& m_counters;

    std::uint8_t m_nextExpected = 1;   // V(R)
    TimePoint m_acknowledgedAt{};      // the last LA
    std::uint8_t m_lastNumberTold = 1; // N(R) and N(k) of the last LA
    std::uint8_t m_lastCreditTold = 0;
    // The peer's first LT beyond all credit it was told; R(k) with V(R).
    std::uint8_t m_firstWithoutCredit = 1;
    bool m_isHeld = false;
    Deadline m_t2;
    Deadline m_t3;
};

} // namespace map27
