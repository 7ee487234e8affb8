#include "map27/link/LinkSetUp.h"

namespace map27 {

namespace {

// A peer that has not been heard for so long is gone.
constexpr Milliseconds Gone{20000};

} // namespace

void LinkSetUp::Begin()
{
    m_requests.clear();
    Forget();
}

void LinkSetUp::BeginAgain()
{
    Forget();
}

void LinkSetUp::Forget()
{
    m_longestRoundTrip = RoundTrip::LongestOfAll;
    m_peerKnowsDelay = false;
    m_isQuick = false;
    m_isHeard = false;
    m_isLate = false;
    m_peerIsReady = false;
    m_hasGivenCredit = false;
    m_received = 0;
    m_acknowledgements = 0;
    m_answers = 0;
    m_creditsGiven = 0;
    m_firstRequest.reset();
    m_interval = First();
}

void LinkSetUp::LinkFailed(TimePoint readySince, TimePoint now)
{
    m_failures = now - readySince > m_own.t1 + 2 * m_roundTrip.Longest() ? 0 : m_failures + 1;
}

// A known round trip is waited for. Each failure in a row but the first doubles the time.
Milliseconds LinkSetUp::First() const
{
    Milliseconds first = m_own.t0First;
    if (m_roundTrip.Shortest() > m_own.t0First)
        first = std::max(first, m_roundTrip.Longest() + m_own.t0First);
    for (int failure = 1; failure < m_failures && first < m_own.t0Longest; ++failure)
        first *= 2;
    return std::min(first, m_own.t0Longest);
}

void LinkSetUp::Requested(TimePoint now)
{
    m_requests.push_back(now);
    m_lastRequest = now;
    if (m_isHeard && !m_firstRequest)
        m_firstRequest = now;
    while (now - m_requests.front() > RoundTrip::LongestOfAll)
        m_requests.pop_front();
    m_peerIsReady = false;
    m_hasGivenCredit = false;
    m_t0 = now + m_interval;
}

void LinkSetUp::RequestedAndAcknowledged(TimePoint now)
{
    Requested(now);
    ++m_answers;
}

void LinkSetUp::GaveCredit(TimePoint now)
{
    m_hasGivenCredit = true;
    if (m_isLate)
        return;
    ++m_creditsGiven;
    // The peer is ready with it, unless it was lost; another request would end what the peer has begun.
    m_t0 = now + 10 * m_interval;
}

void LinkSetUp::Lengthen()
{
    m_interval = std::min(2 * m_interval, m_own.t0Longest);
}

bool LinkSetUp::Hear(TimePoint now)
{
    m_lastHeard = now;
    if (m_isHeard)
        return false;
    m_isHeard = true;
    while (!m_requests.empty() && now - m_requests.front() > RoundTrip::LongestOfAll)
        m_requests.pop_front();
    // Requests went unanswered in time, be it that nobody was there; or it is known of the line.
    m_isLate = m_requests.size() > 1 || m_failures > 1 || m_roundTrip.Shortest() > m_own.t0First;
    // After a long silence T0 is short again, and what has come answers the last request, or nothing.
    if (m_requests.size() < 2) {
        m_interval = First();
        m_requests.clear();
    }
    return true;
}

void LinkSetUp::HearRequest(TimePoint now)
{
    ++m_received;
    m_lastHeardRequest = now;
    if (m_hasGivenCredit && !m_isLate && m_t0)
        m_t0 = std::min(*m_t0, now + 2 * m_interval);
    if (!m_peerIsReady)
        return;
    m_peerIsReady = false;
    // Our last request may still be answered.
    m_t0 = std::max(now + m_own.t0First,
                    m_requests.back() + std::max(m_interval, m_longestRoundTrip + m_longestRoundTrip / 4));
}

void LinkSetUp::HearAcknowledgement(int credit, TimePoint now)
{
    ++m_received;
    ++m_acknowledgements;
    // A peer that was not there before: it asks, and answers our request with its own and the LA on end.
    m_isQuick = m_received == 3 && m_acknowledgements == 1 && now - m_lastHeardRequest < m_own.t0First / 2 &&
                m_firstRequest && now - *m_firstRequest < m_own.t0First;
    m_credit = credit;
    m_peerIsReady = true;
    m_peerKnowsDelay = m_peerKnowsDelay || credit == 0;
    const auto sinceFirst = std::chrono::duration_cast<Milliseconds>(now - m_requests.front());
    m_longestRoundTrip = std::min(m_longestRoundTrip, sinceFirst);
    if (m_isLate)
        m_t0 = SettledAt(now);
}

// Either by the longest round trip that is possible; or, should the first requests have been lost, by this:
// requests follow each other in doubled intervals, and so would what they cause.
TimePoint LinkSetUp::SettledAt(TimePoint now) const
{
    const TimePoint last = m_requests.back();
    const TimePoint possible = last + m_longestRoundTrip + m_longestRoundTrip / 4;
    const TimePoint likely = now + 2 * (now - m_firstRequest.value_or(last));
    TimePoint settled = std::min(possible, likely) + m_own.t0First;
    if (m_failures > 1)
        settled = std::max(settled, last + First());
    return std::max(settled, now);
}

bool LinkSetUp::IsSettled() const
{
    if (!m_peerIsReady || m_credit == 0 || m_failures > 1)
        return false;
    const std::size_t plain = m_requests.size() - std::min(m_requests.size(), m_answers);
    return m_peerKnowsDelay ||
           (m_received >= m_requests.size() && m_acknowledgements >= m_answers + m_creditsGiven + plain / 2);
}

TimePoint LinkSetUp::CertainAt() const
{
    if (!m_isLate || m_isQuick || IsSettled())
        return m_lastRequest;
    return m_lastRequest + 2 * m_longestRoundTrip + m_own.t0First;
}

bool LinkSetUp::MayRequestBeOld(TimePoint now) const
{
    return now - m_lastRequest <= RoundTrip::LongestOfAll;
}

bool LinkSetUp::IsPeerGone(TimePoint now) const
{
    return m_isHeard && now - m_lastHeard > Gone;
}

} // namespace map27
