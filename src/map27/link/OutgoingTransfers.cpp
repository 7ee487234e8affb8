#include "map27/link/OutgoingTransfers.h"

#include "map27/link/LinkPackets.h"

#include <algorithm>
#include <utility>

namespace map27 {

OutgoingTransfers::OutgoingTransfers(const LinkParameters& own, const LinkParameters& agreed,
                                     FrameSender& sender, RoundTrip& roundTrip, LinkCounters& counters)
    : m_own(own),
      m_agreed(agreed),
      m_sender(sender),
      m_roundTrip(roundTrip),
      m_counters(counters)
{
}

void OutgoingTransfers::Begin()
{
    Forget();
    StartNumbering();
    m_hasSent = false;
    m_roundTrip.Begin();
}

void OutgoingTransfers::Recall()
{
    for (; !m_outstanding.empty(); m_outstanding.pop_back())
        m_queue.push_front(std::move(m_outstanding.back().message));
    m_t1.reset();
    StartNumbering();
}

void OutgoingTransfers::StartNumbering()
{
    m_nextToSend = 1;
    m_lastAcknowledged = 1;
    m_credit = 0;
    m_triesLeft = m_own.n2;
    m_echoesDue = 0;
}

void OutgoingTransfers::TakeCredit(int credit, TimePoint now)
{
    m_credit = credit;
    SendQueued(now);
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
        Measure(acknowledged, now);
        m_outstanding.erase(m_outstanding.begin(),
                            m_outstanding.begin() + static_cast<std::ptrdiff_t>(acknowledged));
        m_lastAcknowledged = number;
        m_triesLeft = m_own.n2;
        m_t1 = m_outstanding.empty() ? Deadline{} : Deadline{now + RepetitionTime()};
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
    if (m_echoesDue > 0 && now < m_echoesUntil) {
        --m_echoesDue;
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
        m_outstanding.push_back({m_nextToSend++, std::move(m_queue.front()), now, 0, now, now});
        m_queue.pop_front();
        m_triesLeft = m_own.n2;
        ++m_counters.messagesOut;
        Transmit(m_outstanding.back(), m_credit == 0, now);
    }
}

void OutgoingTransfers::Transmit(Sent& sent, bool acknowledgeAtOnce, TimePoint now)
{
    ++sent.copies;
    sent.copyBefore = std::exchange(sent.lastCopy, now);
    m_hasSent = true;
    Octets body{packet::LinkTransfer, sent.number, static_cast<std::uint8_t>(acknowledgeAtOnce ? 1 : 0), 0};
    body.insert(body.end(), sent.message.begin(), sent.message.end());
    m_sender.Send(body, now);
    m_t1 = now + RepetitionTime();
    // An LA may have been made before our LT arrived and still come later, having had to wait for a long LT
    // of the peer's.
    m_mayBeAnsweredFrom = m_sender.FreeAt() + m_roundTrip.Shortest() * 3 / 4 +
                          m_sender.LineTime(packet::AcknowledgementOctets + packet::HeaderOctets +
                                            packet::FrameOverhead + m_agreed.LongestMessage());
}

// The last of those that one LA acknowledges tells the time, if it was sent once. Else the LA answers the
// last copy, if it comes when that is due; or an older one, the line being slower than we thought. Which one
// shows with the next messages, as they are given the time step by step.
void OutgoingTransfers::Measure(std::size_t acknowledged, TimePoint now)
{
    m_echoesDue = 0;
    for (std::size_t i = 0; i < acknowledged; ++i)
        m_echoesDue += m_outstanding[i].copies - 1;
    const Sent& last = m_outstanding[acknowledged - 1];
    const auto onTheLine =
        m_sender.LineTime(2 * (packet::HeaderOctets + packet::FrameOverhead) + last.message.size());
    const auto since = [&](TimePoint copy) {
        return std::chrono::duration_cast<Milliseconds>(now - copy) - onTheLine;
    };
    if (last.copies == 1)
        m_roundTrip.Take(since(last.lastCopy));
    else if (!m_roundTrip.IsLikely(since(last.lastCopy), m_own.t0First))
        m_roundTrip.TakeLimit(since(last.copyBefore));
    m_echoesUntil = last.lastCopy + RepetitionTime();
}

void OutgoingTransfers::GoBack(TimePoint now)
{
    for (Sent& sent : m_outstanding) {
        ++m_counters.retransmissions;
        Transmit(sent, true, now);
    }
}

} // namespace map27
