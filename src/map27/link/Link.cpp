#include "map27/link/Link.h"

#include "map27/link/LinkPackets.h"

#include <algorithm>
#include <utility>

namespace map27 {

namespace {

bool IsDue(const Deadline& deadline, TimePoint now)
{
    return deadline && *deadline <= now;
}

} // namespace

Link::Link(LinkParameters parameters) : m_own(parameters), m_agreed(parameters) {}

LinkOutput Link::Start(TimePoint now)
{
    m_decoder.Reset();
    m_counters.messagesLost += ForgetMessages();
    m_answersInARow = 0;
    AskForLink(now);
    return TakeOutput();
}

void Link::Stop()
{
    m_counters.messagesLost += ForgetMessages();
    StopTimers();
    m_decoder.Reset();
    m_state = LinkState::Stopped;
    m_pausing = false;
    m_waitingForQuiet = false;
}

LinkOutput Link::Reset(TimePoint now, Milliseconds pause)
{
    if (m_state == LinkState::Stopped)
        return {};
    ++m_counters.resets;
    m_counters.messagesLost += ForgetMessages();
    m_answersInARow = 0;
    StopTimers();
    m_state = LinkState::ResetWait;
    m_agreed = m_own;
    m_waitingForQuiet = false;
    m_pausing = true;
    m_t0 = now + std::max(pause, Milliseconds(0));
    if (pause <= Milliseconds(0))
        OnT0(now);
    return TakeOutput();
}

LinkOutput Link::Feed(OctetSpan octets, TimePoint now)
{
    if (m_state == LinkState::Stopped || octets.empty())
        return {};
    if (m_waitingForQuiet)
        m_t0 = std::min(now + m_own.t0First, m_quietLimit);
    for (const std::uint8_t octet : octets) {
        if (const auto body = m_decoder.Feed(octet))
            HandleBody(*body, now);
    }
    return TakeOutput();
}

LinkOutput Link::OnTime(TimePoint now)
{
    if (IsDue(m_t4, now))
        Fail(LinkFailure::Silent, now);
    if (IsDue(m_t1, now))
        OnT1(now);
    if (IsDue(m_t2, now) || IsDue(m_t3, now))
        SendAcknowledgement(now);
    if (IsDue(m_t0, now))
        OnT0(now);
    return TakeOutput();
}

Deadline Link::NextDeadline() const
{
    return Earlier(Earlier(Earlier(m_t0, m_t1), Earlier(m_t2, m_t3)), m_t4);
}

SendOutcome Link::Send(OctetSpan message, TimePoint now)
{
    if (!IsReady())
        return {SendResult::NotReady, {}};
    if (message.empty())
        return {SendResult::Empty, {}};
    if (message.size() > LongestMessage())
        return {SendResult::TooLong, {}};
    if (m_queue.size() >= m_own.queueLimit)
        return {SendResult::QueueFull, {}};
    m_queue.emplace_back(message.begin(), message.end());
    SendQueued(now);
    return {SendResult::Accepted, TakeOutput()};
}

LinkOutput Link::HoldReceiving(bool hold, TimePoint now)
{
    const bool released = m_holdReceiving && !hold;
    m_holdReceiving = hold;
    if (released && IsReady())
        SendAcknowledgement(now);
    return TakeOutput();
}

Deadline Link::UnacknowledgedSince() const
{
    return m_outstanding.empty() ? Deadline{} : Deadline{m_outstanding.front().since};
}

LinkCounters Link::Counters() const
{
    LinkCounters counters = m_counters;
    counters.framing = m_decoder.Counters();
    return counters;
}

// ---- sending ------------------------------------------------------------------------------------------

void Link::SendLinkRequest(TimePoint now)
{
    Transmit({packet::LinkRequest, m_agreed.n1, m_agreed.k, m_agreed.version}, now);
    m_t0 = now + m_t0Interval;
}

void Link::SendAcknowledgement(TimePoint now)
{
    m_t2.reset();
    m_t3 = now + m_own.t3;
    m_lastNumberTold = m_nextExpected;
    m_lastCreditTold = m_holdReceiving ? 0 : m_agreed.k;
    Transmit({packet::LinkAcknowledgement, m_lastNumberTold, m_lastCreditTold, 0}, now);
}

void Link::SendTransfer(const Sent& sent, bool acknowledgeAtOnce, TimePoint now)
{
    Octets body{packet::LinkTransfer, sent.number, static_cast<std::uint8_t>(acknowledgeAtOnce ? 1 : 0), 0};
    body.insert(body.end(), sent.message.begin(), sent.message.end());
    Transmit(body, now);
    m_t1 = now + m_own.t1;
    // An LA may have been made before our LT arrived and yet come later, since it had to wait for a long LT
    // of the peer's to leave.
    m_mayBeAnsweredFrom = m_lineFreeAt + LineTime(packet::AcknowledgementOctets + packet::HeaderOctets +
                                                  packet::FrameOverhead + LongestMessage());
}

void Link::SendQueued(TimePoint now)
{
    while (m_sendCredit > 0 && !m_queue.empty() && m_outstanding.size() < m_agreed.k) {
        --m_sendCredit;
        m_outstanding.push_back({m_nextToSend++, std::move(m_queue.front()), now});
        m_queue.pop_front();
        m_triesLeft = m_own.n2;
        ++m_counters.messagesOut;
        SendTransfer(m_outstanding.back(), m_sendCredit == 0, now);
    }
}

void Link::GoBack(TimePoint now)
{
    for (const Sent& sent : m_outstanding) {
        ++m_counters.retransmissions;
        SendTransfer(sent, true, now);
    }
}

void Link::Transmit(const Octets& body, TimePoint now)
{
    ++m_counters.framesOut;
    m_output.frames.push_back(EncodeFrame(body));
    m_lineFreeAt = std::max(m_lineFreeAt, now) + LineTime(m_output.frames.back().size());
}

std::size_t Link::ForgetMessages()
{
    const std::size_t forgotten = Backlog();
    m_queue.clear();
    m_outstanding.clear();
    return forgotten;
}

void Link::StopTimers()
{
    m_t0.reset();
    m_t1.reset();
    m_t2.reset();
    m_t3.reset();
    m_t4.reset();
}

Milliseconds Link::LineTime(std::size_t octets) const
{
    if (m_own.bitRate == 0)
        return Milliseconds(0);
    constexpr std::size_t bitsPerOctet = 10;
    return Milliseconds(octets * bitsPerOctet * 1000 / m_own.bitRate);
}

LinkOutput Link::TakeOutput()
{
    return std::exchange(m_output, {});
}

const char* LinkFailureText(LinkFailure failure)
{
    switch (failure) {
    case LinkFailure::Silent:
        return "nothing valid received for too long";
    case LinkFailure::RetriesUsedUp:
        return "message repeated too often without an acknowledgement";
    case LinkFailure::PeerReset:
        return "the other end asked for a new link";
    case LinkFailure::WrongAcknowledgement:
        return "acknowledgement of something that was not sent";
    case LinkFailure::OutsideWindow:
        return "message numbered outside the window";
    }
    return "unknown";
}

} // namespace map27
