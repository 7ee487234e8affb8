#include "map27/link/Link.h"

#include "map27/link/LinkPackets.h"

#include <algorithm>
#include <utility>

namespace map27 {

namespace {

// With one LR too many under way, two ends can answer LR with LR and LA with LA for ever. After this many
// answers an end waits for a quiet line, but no longer than this many T0.
constexpr int AnswersBeforeQuiet = 6;
constexpr int LongestQuietWait = 5;

bool IsDue(const Deadline& deadline, TimePoint now)
{
    return deadline && *deadline <= now;
}

} // namespace

Link::Link(LinkParameters parameters)
    : m_own(parameters),
      m_agreed(parameters),
      m_sender(parameters.bitRate),
      m_transfers(m_own, m_agreed, m_sender, m_counters)
{
}

LinkOutput Link::Start(TimePoint now)
{
    m_decoder.Reset();
    m_counters.messagesLost += m_transfers.Forget();
    m_answersInARow = 0;
    AskForLink(now);
    return TakeOutput();
}

void Link::Stop()
{
    m_counters.messagesLost += m_transfers.Forget();
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
    m_counters.messagesLost += m_transfers.Forget();
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
    for (const std::uint8_t octet : octets)
        if (const auto body = m_decoder.Feed(octet))
            HandleBody(*body, now);
    return TakeOutput();
}

LinkOutput Link::OnTime(TimePoint now)
{
    if (IsDue(m_t4, now))
        Fail(LinkFailure::Silent, now);
    if (IsDue(m_transfers.NextDeadline(), now)) {
        if (const auto failure = m_transfers.OnT1(now))
            Fail(*failure, now);
    }
    if (IsDue(m_t2, now) || IsDue(m_t3, now))
        SendAcknowledgement(now);
    if (IsDue(m_t0, now))
        OnT0(now);
    return TakeOutput();
}

Deadline Link::NextDeadline() const
{
    return Earlier(Earlier(Earlier(m_t0, m_transfers.NextDeadline()), Earlier(m_t2, m_t3)), m_t4);
}

SendOutcome Link::Send(OctetSpan message, TimePoint now)
{
    if (!IsReady())
        return {SendResult::NotReady, {}};
    if (message.empty())
        return {SendResult::Empty, {}};
    if (message.size() > LongestMessage())
        return {SendResult::TooLong, {}};
    if (m_transfers.IsFull())
        return {SendResult::QueueFull, {}};
    m_transfers.Send(message, now);
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

LinkCounters Link::Counters() const
{
    LinkCounters counters = m_counters;
    counters.framesOut = m_sender.Count();
    counters.framing = m_decoder.Counters();
    return counters;
}

// Sending.

void Link::SendLinkRequest(TimePoint now)
{
    m_sender.Send({packet::LinkRequest, m_agreed.n1, m_agreed.k, m_agreed.version}, now);
    m_t0 = now + m_t0Interval;
}

void Link::SendAcknowledgement(TimePoint now)
{
    m_t2.reset();
    m_t3 = now + m_own.t3;
    m_lastNumberTold = m_nextExpected;
    if (!m_holdReceiving)
        m_firstWithoutCredit = static_cast<std::uint8_t>(m_nextExpected + m_agreed.k);
    m_lastCreditTold = packet::Distance(m_nextExpected, m_firstWithoutCredit);
    m_sender.Send({packet::LinkAcknowledgement, m_lastNumberTold, m_lastCreditTold, 0}, now);
}

void Link::StopTimers()
{
    m_t0.reset();
    m_t2.reset();
    m_t3.reset();
    m_t4.reset();
}

LinkOutput Link::TakeOutput()
{
    return {m_sender.Take(), std::exchange(m_events, {})};
}

// Bodies received.

void Link::HandleBody(const Octets& body, TimePoint now)
{
    ++m_counters.framesIn;
    if (m_pausing || m_waitingForQuiet)
        return;
    if (body.size() < packet::HeaderOctets) {
        ++m_counters.malformed;
        return;
    }
    switch (body[0]) {
    case packet::LinkRequest:
        HandleLinkRequest(body, now);
        break;
    case packet::LinkAcknowledgement:
        HandleAcknowledgement(body, now);
        break;
    case packet::LinkTransfer:
        HandleTransfer(body, now);
        break;
    default:
        ++m_counters.unknownPackets;
        break;
    }
}

void Link::HandleLinkRequest(const Octets& body, TimePoint now)
{
    if (m_state == LinkState::LinkWait && IsAcceptable(body)) {
        TakeMinima(body);
        EnterReady(now);
        SendAcknowledgement(now);
        return;
    }
    if (IsReady()) {
        LeaveReady(LinkFailure::PeerReset, now);
        m_agreed = m_own;
    }
    TakeMinima(body);
    AnswerByLinkRequest(LinkState::LinkWait, now);
}

void Link::HandleAcknowledgement(const Octets& body, TimePoint now)
{
    const std::uint8_t number = body[1];
    const int credit = std::min(body[2], m_agreed.k);
    if (m_state == LinkState::ResetWait) {
        AnswerByLinkRequest(LinkState::ResetWait, now);
        return;
    }
    if (m_state == LinkState::LinkWait) {
        // Any other number belongs to the previous link: the peer has not seen our request yet.
        if (number != 1) {
            ++m_counters.crossingAcknowledgements;
            return;
        }
        EnterReady(now);
        m_transfers.SetCredit(credit);
        SendAcknowledgement(now);
        return;
    }

    m_t4 = now + m_own.t4;
    if (const auto failure = m_transfers.TakeAcknowledgement(number, credit, now))
        Fail(*failure, now);
}

void Link::HandleTransfer(const Octets& body, TimePoint now)
{
    if (!IsReady()) {
        m_agreed = m_own;
        AnswerByLinkRequest(LinkState::ResetWait, now);
        return;
    }
    const std::uint8_t number = body[1];
    if (m_own.checkWindow) {
        const auto lowest = static_cast<std::uint8_t>(m_lastNumberTold - m_agreed.k);
        if (packet::Distance(lowest, number) >= m_agreed.k + m_lastCreditTold) {
            Fail(LinkFailure::OutsideWindow, now);
            return;
        }
    }
    m_t4 = now + m_own.t4;
    if (number != m_nextExpected) {
        const bool seenBefore = packet::Distance(number, m_nextExpected) <= m_agreed.k;
        ++(seenBefore ? m_counters.duplicates : m_counters.sequenceErrors);
        SendAcknowledgement(now);
    } else if (m_holdReceiving && number == m_firstWithoutCredit) {
        ++m_counters.noBuffer;
        SendAcknowledgement(now);
    } else {
        TakeTransfer(body, now);
    }
}

void Link::TakeTransfer(const Octets& body, TimePoint now)
{
    const bool acknowledgeAtOnce = body[2] != 0;
    ++m_nextExpected;
    if (acknowledgeAtOnce || m_own.t2 == Milliseconds(0))
        SendAcknowledgement(now);
    else
        m_t2 = now + m_own.t2;
    if (body.size() == packet::HeaderOctets) {
        ++m_counters.malformed;
        return;
    }
    ++m_counters.messagesIn;
    m_events.push_back(MessageReceived{Octets(body.begin() + packet::HeaderOctets, body.end())});
}

// Changes of state.

// Enters reset_wait: our own maximum parameters, the first request, T0 at its shortest.
void Link::AskForLink(TimePoint now)
{
    StopTimers();
    m_state = LinkState::ResetWait;
    m_agreed = m_own;
    m_pausing = false;
    m_waitingForQuiet = false;
    m_t0Interval = m_own.t0First;
    SendLinkRequest(now);
}

// The peer is there, so T0 starts small again.
void Link::AnswerByLinkRequest(LinkState next, TimePoint now)
{
    if (++m_answersInARow > AnswersBeforeQuiet) {
        WaitForQuietLine(now);
        return;
    }
    m_state = next;
    m_t0Interval = m_own.t0First;
    SendLinkRequest(now);
}

void Link::WaitForQuietLine(TimePoint now)
{
    ++m_counters.quietWaits;
    StopTimers();
    m_state = LinkState::ResetWait;
    m_agreed = m_own;
    m_waitingForQuiet = true;
    m_quietLimit = now + m_own.t0First * LongestQuietWait;
    m_t0 = now + m_own.t0First;
}

void Link::EnterReady(TimePoint now)
{
    StopTimers();
    m_transfers.Begin();
    m_state = LinkState::Ready;
    m_readySince = now;
    m_nextExpected = 1;
    m_firstWithoutCredit = 1;
    m_t4 = now + m_own.t4;
    m_events.push_back(LinkReady{m_agreed.n1, m_agreed.k, m_agreed.version});
}

void Link::LeaveReady(LinkFailure reason, TimePoint now)
{
    StopTimers();
    if (now - m_readySince > m_own.t1)
        m_answersInARow = 0;
    const std::size_t lost = m_transfers.Forget();
    m_counters.messagesLost += lost;
    ++m_counters.resets;
    m_events.push_back(LinkFailed{reason, lost});
}

void Link::Fail(LinkFailure reason, TimePoint now)
{
    if (reason == LinkFailure::Silent)
        ++m_counters.silences;
    else if (reason == LinkFailure::RetriesUsedUp)
        ++m_counters.retryFailures;
    LeaveReady(reason, now);
    AskForLink(now);
}

void Link::TakeMinima(const Octets& linkRequest)
{
    m_agreed.n1 = std::min(m_agreed.n1, linkRequest[1]);
    // With a window of 0 the link would carry nothing.
    m_agreed.k = std::max<std::uint8_t>(1, std::min(m_agreed.k, linkRequest[2]));
    m_agreed.version = std::min(m_agreed.version, linkRequest[3]);
}

bool Link::IsAcceptable(const Octets& linkRequest) const
{
    return linkRequest[1] <= m_agreed.n1 && linkRequest[2] <= m_agreed.k &&
           linkRequest[3] <= m_agreed.version;
}

void Link::OnT0(TimePoint now)
{
    // Nothing has come for a while, so nothing goes round in circles.
    m_answersInARow = 0;
    if (m_pausing || m_waitingForQuiet) {
        AskForLink(now);
        return;
    }
    m_state = LinkState::ResetWait;
    m_agreed = m_own;
    m_t0Interval = std::min(m_t0Interval * 2, m_own.t0Longest);
    SendLinkRequest(now);
}

} // namespace map27
