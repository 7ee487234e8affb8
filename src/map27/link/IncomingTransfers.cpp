#include "map27/link/IncomingTransfers.h"

#include "map27/link/LinkPackets.h"

namespace map27 {

IncomingTransfers::IncomingTransfers(const LinkParameters& own, const LinkParameters& agreed,
                                     FrameSender& sender, const RoundTrip& roundTrip, LinkCounters& counters)
    : m_own(own),
      m_agreed(agreed),
      m_sender(sender),
      m_roundTrip(roundTrip),
      m_counters(counters)
{
}

void IncomingTransfers::Begin(TimePoint now)
{
    m_nextExpected = 1;
    m_firstWithoutCredit = 1;
    Acknowledge(now);
}

void IncomingTransfers::Stop()
{
    m_t2.reset();
    m_t3.reset();
}

bool IncomingTransfers::IsWanted(std::uint8_t number) const
{
    return number == m_nextExpected && !(m_isHeld && number == m_firstWithoutCredit);
}

bool IncomingTransfers::IsOutsideWindow(std::uint8_t number) const
{
    const auto lowest = static_cast<std::uint8_t>(m_lastNumberTold - m_agreed.k);
    return m_own.checkWindow && packet::Distance(lowest, number) >= m_agreed.k + m_lastCreditTold;
}

bool IncomingTransfers::Take(const Octets& body, TimePoint now)
{
    const std::uint8_t number = body[1];
    if (!IsWanted(number)) {
        TakeUnwanted(number, now);
        return false;
    }
    const bool acknowledgeAtOnce = body[2] != 0;
    ++m_nextExpected;
    if (acknowledgeAtOnce || m_own.t2 == Milliseconds(0))
        Acknowledge(now);
    else
        m_t2 = now + m_own.t2;
    const bool isEmpty = body.size() == packet::HeaderOctets;
    ++(isEmpty ? m_counters.malformed : m_counters.messagesIn);
    return !isEmpty;
}

void IncomingTransfers::TakeUnwanted(std::uint8_t number, TimePoint now)
{
    if (number == m_nextExpected) {
        ++m_counters.noBuffer;
        Acknowledge(now);
        return;
    }
    const bool seenBefore = packet::Distance(number, m_nextExpected) <= m_agreed.k;
    ++(seenBefore ? m_counters.duplicates : m_counters.sequenceErrors);
    // On a late line a repetition may have set out before our LA can have been there. One more LA would make
    // the peer repeat again.
    const bool isLate = m_roundTrip.Usual() > m_own.t0First;
    if (!seenBefore || !isLate || now - m_acknowledgedAt > m_roundTrip.Longest())
        Acknowledge(now);
}

void IncomingTransfers::Acknowledge(TimePoint now)
{
    m_t2.reset();
    RestartT3(now);
    m_acknowledgedAt = now;
    m_lastNumberTold = m_nextExpected;
    if (!m_isHeld)
        m_firstWithoutCredit = static_cast<std::uint8_t>(m_nextExpected + m_agreed.k);
    m_lastCreditTold = packet::Distance(m_nextExpected, m_firstWithoutCredit);
    m_sender.Send({packet::LinkAcknowledgement, m_lastNumberTold, m_lastCreditTold, 0}, now);
}

} // namespace map27
