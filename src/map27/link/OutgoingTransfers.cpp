#include "map27/link/OutgoingTransfers.h"

#include "map27/link/LinkPackets.h"

#include <algorithm>

namespace map27 {

OutgoingTransfers::OutgoingTransfers(const LinkParameters& own, const LinkParameters& agreed,
                                     FrameSender& sender, LinkCounters& counters)
    : m_own(own),
      m_agreed(agreed),
      m_sender(sender),
      m_counters(counters)
{
}

void OutgoingTransfers::Begin()
{
    Forget();
    m_nextToSend = 1;
    m_lastAcknowledged = 1;
    m_credit = 0;
    m_triesLeft = m_own.n2;
}

std::size_t OutgoingTransfers::Forget()
{
    const std::size_t forgotten = Backlog();
    m_queue.clear();
    m_outstanding.clear();
    m_t1.reset();
    return forgotten;
}

void OutgoingTransfers::Send(OctetSpan message, TimePoint now)
{
    m_queue.emplace_back(message.begin(), message.end());
    SendQueued(now);
}

std::optional<LinkFailure> OutgoingTransfers::TakeAcknowledgement(std::uint8_t number, int credit,
                                                                  TimePoint now)
{
    const std::size_t acknowledged = packet::Distance(m_lastAcknowledged, number);
    if (acknowledged > m_outstanding.size())
        return LinkFailure::WrongAcknowledgement;
    if (acknowledged == 0 && !m_outstanding.empty())
        return TakeRepeatedAcknowledgement(credit, now);
    if (acknowledged > 0) {
        m_outstanding.erase(m_outstanding.begin(),
                            m_outstanding.begin() + static_cast<std::ptrdiff_t>(acknowledged));
        m_lastAcknowledged = number;
        m_triesLeft = m_own.n2;
        m_t1 = m_outstanding.empty() ? Deadline{} : Deadline{now + m_own.t1};
    }
    m_credit = std::max(0, credit - static_cast<int>(m_outstanding.size()));
    SendQueued(now);
    return std::nullopt;
}

// The peer still expects what is under way. That asks for a repetition, with two exceptions.
std::optional<LinkFailure> OutgoingTransfers::TakeRepeatedAcknowledgement(int credit, TimePoint now)
{
    if (now < m_mayBeAnsweredFrom) {
        // It set out before our LT was there. Repeating now would make the peer acknowledge twice, and its
        // second LA would make us repeat the next LT, and so on for as long as there is traffic.
        ++m_counters.crossingAcknowledgements;
        return std::nullopt;
    }
    if (credit == 0) {
        // No room: a repetition would be dropped again. T1 goes on running.
        m_credit = 0;
        return std::nullopt;
    }
    if (--m_triesLeft <= 0)
        return LinkFailure::RetriesUsedUp;
    m_credit = std::max(0, credit - static_cast<int>(m_outstanding.size()));
    GoBack(now);
    return std::nullopt;
}

std::optional<LinkFailure> OutgoingTransfers::OnT1(TimePoint now)
{
    if (--m_triesLeft <= 0)
        return LinkFailure::RetriesUsedUp;
    GoBack(now);
    return std::nullopt;
}

Deadline OutgoingTransfers::UnacknowledgedSince() const
{
    return m_outstanding.empty() ? Deadline{} : Deadline{m_outstanding.front().since};
}

void OutgoingTransfers::SendQueued(TimePoint now)
{
    while (m_credit > 0 && !m_queue.empty() && m_outstanding.size() < m_agreed.k) {
        --m_credit;
        m_outstanding.push_back({m_nextToSend++, std::move(m_queue.front()), now});
        m_queue.pop_front();
        m_triesLeft = m_own.n2;
        ++m_counters.messagesOut;
        Transmit(m_outstanding.back(), m_credit == 0, now);
    }
}

void OutgoingTransfers::Transmit(const Sent& sent, bool acknowledgeAtOnce, TimePoint now)
{
    Octets body{packet::LinkTransfer, sent.number, static_cast<std::uint8_t>(acknowledgeAtOnce ? 1 : 0), 0};
    body.insert(body.end(), sent.message.begin(), sent.message.end());
    m_sender.Send(body, now);
    m_t1 = now + m_own.t1;
    // An LA may have been made before our LT arrived and still come later, having had to wait for a long LT
    // of the peer's.
    m_mayBeAnsweredFrom =
        m_sender.FreeAt() + m_sender.LineTime(packet::AcknowledgementOctets + packet::HeaderOctets +
                                              packet::FrameOverhead + m_agreed.LongestMessage());
}

void OutgoingTransfers::GoBack(TimePoint now)
{
    for (const Sent& sent : m_outstanding) {
        ++m_counters.retransmissions;
        Transmit(sent, true, now);
    }
}

} // namespace map27
