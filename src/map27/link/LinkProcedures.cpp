#include "map27/link/Link.h"

#include "map27/link/LinkPackets.h"

#include <algorithm>

namespace map27 {

namespace {

// With one LR too many under way two ends can answer LR by LR and LA by LA for ever. After this many answers
// an end waits for a quiet line, but no longer than this many T0.
constexpr int AnswersBeforeQuiet = 6;
constexpr int LongestQuietWait = 5;

std::uint8_t Distance(std::uint8_t from, std::uint8_t to)
{
    return static_cast<std::uint8_t>(to - from);
}

} // namespace

// ---- bodies received ----------------------------------------------------------------------------------

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
        // Any other number speaks of the link before; the peer has not seen our request yet.
        if (number != 1) {
            ++m_counters.crossingAcknowledgements;
            return;
        }
        EnterReady(now);
        m_sendCredit = credit;
        SendAcknowledgement(now);
        return;
    }

    const std::size_t acknowledged = Distance(m_lastAcknowledged, number);
    if (acknowledged > m_outstanding.size()) {
        Fail(LinkFailure::WrongAcknowledgement, now);
        return;
    }
    m_t4 = now + m_own.t4;
    if (acknowledged == 0 && !m_outstanding.empty()) {
        HandleRepeatedAcknowledgement(credit, now);
        return;
    }
    if (acknowledged > 0) {
        m_outstanding.erase(m_outstanding.begin(),
                            m_outstanding.begin() + static_cast<std::ptrdiff_t>(acknowledged));
        m_lastAcknowledged = number;
        m_triesLeft = m_own.n2;
        if (m_outstanding.empty())
            m_t1.reset();
        else
            m_t1 = now + m_own.t1;
    }
    m_sendCredit = std::max(0, credit - static_cast<int>(m_outstanding.size()));
    SendQueued(now);
}

// The peer still expects what is under way. That asks for a repetition, with two exceptions.
void Link::HandleRepeatedAcknowledgement(int credit, TimePoint now)
{
    if (now < m_mayBeAnsweredFrom) {
        // It set out before our LT was there. Repeating now would make the peer acknowledge twice, and its
        // second LA would make us repeat the next LT, and so on for as long as there is traffic.
        ++m_counters.crossingAcknowledgements;
        return;
    }
    if (credit == 0) {
        // No room: a repetition would be dropped again. T1 goes on running.
        m_sendCredit = 0;
        return;
    }
    if (--m_triesLeft <= 0) {
        Fail(LinkFailure::RetriesUsedUp, now);
        return;
    }
    m_sendCredit = std::max(0, credit - static_cast<int>(m_outstanding.size()));
    GoBack(now);
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
        if (Distance(lowest, number) >= m_agreed.k + m_lastCreditTold) {
            Fail(LinkFailure::OutsideWindow, now);
            return;
        }
    }
    m_t4 = now + m_own.t4;
    if (number != m_nextExpected) {
        const bool seenBefore = Distance(number, m_nextExpected) <= m_agreed.k;
        ++(seenBefore ? m_counters.duplicates : m_counters.sequenceErrors);
        SendAcknowledgement(now);
    } else if (m_holdReceiving) {
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
    m_output.events.push_back(MessageReceived{Octets(body.begin() + packet::HeaderOctets, body.end())});
}

// ---- changes of state ---------------------------------------------------------------------------------

// reset_wait is entered: own maximum parameters, first request, T0 from its beginning.
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
    ForgetMessages();
    m_state = LinkState::Ready;
    m_readySince = now;
    m_nextToSend = 1;
    m_nextExpected = 1;
    m_lastAcknowledged = 1;
    m_sendCredit = 0;
    m_triesLeft = m_own.n2;
    m_t4 = now + m_own.t4;
    m_output.events.push_back(LinkReady{m_agreed.n1, m_agreed.k, m_agreed.version});
}

void Link::LeaveReady(LinkFailure reason, TimePoint now)
{
    StopTimers();
    if (now - m_readySince > m_own.t1)
        m_answersInARow = 0;
    const std::size_t lost = ForgetMessages();
    m_counters.messagesLost += lost;
    ++m_counters.resets;
    m_output.events.push_back(LinkFailed{reason, lost});
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
    // A window of none would be a link that carries nothing.
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
    // Nothing came for a while, so nothing is going round in circles.
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

void Link::OnT1(TimePoint now)
{
    if (--m_triesLeft <= 0)
        Fail(LinkFailure::RetriesUsedUp, now);
    else
        GoBack(now);
}

} // namespace map27
