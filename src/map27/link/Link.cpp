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

Link::Link(LinkParameters parameters)
    : m_own(parameters),
      m_agreed(parameters),
      m_sender(parameters.bitRate),
      m_outgoing(m_own, m_agreed, m_sender, m_roundTrip, m_counters),
      m_incoming(m_own, m_agreed, m_sender, m_roundTrip, m_counters),
      m_setUp(m_own, m_roundTrip)
{
}

LinkOutput Link::Start(TimePoint now)
{
    m_decoder.Reset();
    m_counters.messagesLost += m_outgoing.Forget();
    m_setUp.ForgetFailures();
    AskForLink(now);
    return TakeOutput();
}

void Link::Stop()
{
    m_counters.messagesLost += m_outgoing.Forget();
    StopTimers();
    m_decoder.Reset();
    m_state = LinkState::Stopped;
    m_isKept = false;
    m_pausing = false;
}

LinkOutput Link::Reset(TimePoint now, Milliseconds pause)
{
    if (m_state == LinkState::Stopped)
        return {};
    ++m_counters.resets;
    m_counters.messagesLost += m_outgoing.Forget();
    m_setUp.ForgetFailures();
    StopTimers();
    m_isKept = false;
    m_state = LinkState::ResetWait;
    m_agreed = m_own;
    m_pausing = true;
    m_setUp.WaitUntil(now + std::max(pause, Milliseconds(0)));
    if (pause <= Milliseconds(0))
        OnT0(now);
    return TakeOutput();
}

LinkOutput Link::Feed(OctetSpan octets, TimePoint now)
{
    if (m_state == LinkState::Stopped || octets.empty())
        return {};
    for (const std::uint8_t octet : octets)
        if (const auto body = m_decoder.Feed(octet))
            HandleBody(*body, now);
    return TakeOutput();
}

LinkOutput Link::OnTime(TimePoint now)
{
    if (IsDue(m_t4, now))
        Fail(LinkFailure::Silent, now);
    if (IsDue(m_outgoing.NextDeadline(), now)) {
        if (const auto failure = m_outgoing.OnT1(now))
            Fail(*failure, now);
    }
    if (IsDue(m_incoming.NextDeadline(), now))
        m_incoming.Acknowledge(now);
    if (IsDue(m_setUp.NextT0(), now))
        OnT0(now);
    return TakeOutput();
}

Deadline Link::NextDeadline() const
{
    return Earlier(Earlier(Earlier(m_setUp.NextT0(), m_outgoing.NextDeadline()), m_incoming.NextDeadline()),
                   m_t4);
}

SendOutcome Link::Send(OctetSpan message, TimePoint now)
{
    if (!IsReady())
        return {SendResult::NotReady, {}};
    if (message.empty())
        return {SendResult::Empty, {}};
    if (message.size() > LongestMessage())
        return {SendResult::TooLong, {}};
    if (m_outgoing.IsFull())
        return {SendResult::QueueFull, {}};
    m_outgoing.Send(message, now);
    return {SendResult::Accepted, TakeOutput()};
}

LinkOutput Link::HoldReceiving(bool hold, TimePoint now)
{
    const bool released = m_incoming.IsHeld() && !hold;
    m_incoming.Hold(hold);
    if (released && m_state == LinkState::Ready)
        m_incoming.Acknowledge(now);
    return TakeOutput();
}

Milliseconds Link::RoundTripTime() const
{
    return m_roundTrip.Usual() > m_own.t0First ? m_roundTrip.Usual() : Milliseconds(0);
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
    m_setUp.Requested(now);
}

void Link::SendRequestAndAcknowledgement(TimePoint now)
{
    m_sender.Send({packet::LinkRequest, m_agreed.n1, m_agreed.k, m_agreed.version}, now);
    m_sender.Send({packet::LinkAcknowledgement, 1, 0, 0}, now);
    m_setUp.RequestedAndAcknowledged(now);
}

void Link::GiveCredit(TimePoint now)
{
    m_incoming.Begin(now);
    m_setUp.GaveCredit(now);
}

void Link::StopTimers()
{
    m_setUp.Stop();
    m_incoming.Stop();
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
    if (m_pausing)
        return;
    if (body.size() < packet::HeaderOctets) {
        ++m_counters.malformed;
        return;
    }
    switch (body[0]) {
    case packet::LinkRequest:
        return HandleLinkRequest(body, now);
    case packet::LinkAcknowledgement:
        return HandleAcknowledgement(body, now);
    case packet::LinkTransfer:
        return HandleTransfer(body, now);
    default:
        ++m_counters.unknownPackets;
    }
}

void Link::HandleLinkRequest(const Octets& body, TimePoint now)
{
    if (m_state == LinkState::Ready) {
        if (MaySettleAgain(now)) {
            SettleAgain(now);
        } else {
            LeaveReady(LinkFailure::PeerReset, now);
            m_setUp.BeginAgain();
            m_state = LinkState::ResetWait;
            m_agreed = m_own;
        }
    }
    m_setUp.Hear(now);
    m_setUp.HearRequest(now);
    if (m_setUp.IsLate()) {
        m_agreed = m_own;
        m_agreed.TakeMinima(body);
        m_state = LinkState::LinkWait;
        if (!m_setUp.HasAnswered())
            SendRequestAndAcknowledgement(now);
        return;
    }
    const bool answered = m_state == LinkState::LinkWait && m_agreed.Accept(body);
    m_agreed.TakeMinima(body);
    m_state = LinkState::LinkWait;
    if (!answered)
        SendLinkRequest(now);
    else if (!m_setUp.HasGivenCredit())
        GiveCredit(now);
}

void Link::HandleAcknowledgement(const Octets& body, TimePoint now)
{
    const std::uint8_t number = body[1];
    const int credit = std::min(body[2], m_agreed.k);
    if (m_state != LinkState::Ready) {
        HandleAcknowledgementInSetUp(number, credit, now);
        return;
    }
    m_t4 = now + m_own.t4;
    if (m_setUp.NextT0()) {
        m_creditHeldBack = credit;
        return;
    }
    if (const auto failure = m_outgoing.TakeAcknowledgement(number, credit, now))
        Fail(*failure, now);
}

void Link::HandleAcknowledgementInSetUp(std::uint8_t number, int credit, TimePoint now)
{
    const bool first = m_setUp.Hear(now);
    if (m_state == LinkState::ResetWait) {
        if (first && !m_setUp.HasAsked(now))
            SendLinkRequest(now);
        return;
    }
    if (number != 1) {
        // It belongs to the previous link: the peer has not seen our request yet.
        ++m_counters.crossingAcknowledgements;
        return;
    }
    // Only an end that knows the line to be late gives no credit with its first LA; or one that has no room.
    if (credit == 0)
        m_setUp.BeLate();
    m_setUp.HearAcknowledgement(credit, now);
    if (m_setUp.IsLate()) {
        m_roundTrip.TakeLimit(m_setUp.LongestRoundTrip());
        if (!m_setUp.HasGivenCredit())
            GiveCredit(now);
    }
    if (!m_setUp.IsLate() || m_setUp.IsSettled())
        EnterReady(credit, now);
}

// The peer has our credit, so it has seen all that was sent before: nothing older is under way.
void Link::HandleTransferInSetUp(const Octets& body, TimePoint now)
{
    const bool first = m_setUp.Hear(now);
    if (m_state == LinkState::LinkWait && m_setUp.HasGivenCredit() && body[1] == 1) {
        EnterReady(m_setUp.Credit(), now);
        HandleTransfer(body, now);
    } else if (first && !m_setUp.HasAsked(now)) {
        SendLinkRequest(now);
    }
}

void Link::HandleTransfer(const Octets& body, TimePoint now)
{
    if (m_state != LinkState::Ready) {
        HandleTransferInSetUp(body, now);
        return;
    }
    const std::uint8_t number = body[1];
    if (m_incoming.IsOutsideWindow(number)) {
        Fail(LinkFailure::OutsideWindow, now);
        return;
    }
    m_t4 = now + m_own.t4;
    if (m_setUp.NextT0() && m_incoming.IsWanted(number))
        TakeCredit(now); // the peer has seen all that we sent before
    if (m_incoming.Take(body, now))
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
    m_setUp.Begin();
    SendLinkRequest(now);
}

// Whether the request may be older than what we have said since we were ready, and nothing can arrive twice:
// a message that was sent may be there already, so that no new request may follow it.
bool Link::MaySettleAgain(TimePoint now) const
{
    return m_setUp.MayRequestBeOld(now) && !m_incoming.HasReceived() && !m_outgoing.IsAcknowledged() &&
           (!m_outgoing.HasSent() || m_setUp.HasAnswered());
}

void Link::SettleAgain(TimePoint now)
{
    StopTimers();
    m_outgoing.Recall();
    m_state = LinkState::LinkWait;
    m_isKept = true;
    m_keptSince = now;
    m_setUp.BeLate();
    m_t4 = now + m_own.t4;
}

void Link::EnterReady(int credit, TimePoint now)
{
    if (!m_setUp.HasGivenCredit())
        GiveCredit(now);
    m_setUp.Stop();
    m_state = LinkState::Ready;
    m_incoming.RestartT3(now);
    m_t4 = now + m_own.t4;
    if (!m_isKept) {
        m_outgoing.Begin();
        m_readySince = now;
        m_events.push_back(LinkReady{m_agreed.n1, m_agreed.k, m_agreed.version});
    }
    m_isKept = false;
    // Should another request of ours be answered yet, nothing must have been sent.
    m_creditHeldBack = credit;
    if (m_setUp.CertainAt() > now)
        m_setUp.WaitUntil(m_setUp.CertainAt());
    else
        TakeCredit(now);
}

void Link::TakeCredit(TimePoint now)
{
    m_setUp.Stop();
    m_outgoing.TakeCredit(std::exchange(m_creditHeldBack, 0), now);
}

void Link::LeaveReady(LinkFailure reason, TimePoint now)
{
    StopTimers();
    m_isKept = false;
    m_setUp.LinkFailed(m_readySince, now);
    const std::size_t lost = m_outgoing.Forget();
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

void Link::OnT0(TimePoint now)
{
    if (m_pausing) {
        AskForLink(now);
    } else if (m_state == LinkState::Ready) {
        TakeCredit(now);
    } else if (m_isKept && (m_setUp.IsPeerGone(now) || (m_outgoing.HasSent() && !m_setUp.PeerIsReady()))) {
        Fail(LinkFailure::PeerReset, now);
    } else if (m_setUp.IsPeerGone(now)) {
        AskForLink(now);
    } else if (m_state == LinkState::LinkWait && m_setUp.PeerIsReady()) {
        EnterReady(m_setUp.Credit(), now);
    } else {
        m_setUp.Lengthen();
        if (m_state == LinkState::LinkWait) {
            m_setUp.BeLate();
            SendRequestAndAcknowledgement(now);
        } else {
            SendLinkRequest(now);
        }
    }
}

} // namespace map27
