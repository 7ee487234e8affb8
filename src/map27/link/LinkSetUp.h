#pragma once

#include "map27/link/LinkParameters.h"
#include "map27/link/RoundTrip.h"

#include <deque>

namespace map27 {

// What one end knows while it sets a link up: what it has sent, what has come, and what follows from both.
// The line is prompt as long as answers come before T0 is over, and the standard's table is followed then.
// Else it is late: requests and answers may be under way that are older than what they seem to answer, and an
// end that answers each of them goes round in circles with the other. So on a late line
//
// * a request of the peer is answered once, and then only every T0;
// * with the answer goes the LA that would have to follow it, without credit: a peer that goes by the table
// is ready
//   with both together, in whatever state they find it, and has nothing to lose if that happens to it twice;
// * after the peer's own LA an end asks no more, and gives credit; so whoever has credit will see no old
// request;
// * an end is ready when nothing that it has caused can still be under way.
class LinkSetUp {
public:
    LinkSetUp(const LinkParameters& own, const RoundTrip& roundTrip) : m_own(own), m_roundTrip(roundTrip) {}

    // Asks for a link, of a peer that is not there as far as is known.
    void Begin();
    // A link was ready since then, and has failed.
    void LinkFailed(TimePoint readySince, TimePoint now);
    // The peer has asked for a new link. What was sent for the last one may still be answered.
    void BeginAgain();
    // The first failures are forgotten.
    void ForgetFailures() { m_failures = 0; }

    // Sent.
    void Requested(TimePoint now);
    void RequestedAndAcknowledged(TimePoint now);
    void GaveCredit(TimePoint now);
    // T0 is over: the next one is longer.
    void Lengthen();

    // Received. True when it is the first sign of the peer, which is answered at once.
    bool Hear(TimePoint now);
    void HearRequest(TimePoint now);
    void HearAcknowledgement(int credit, TimePoint now);

    Deadline NextT0() const { return m_t0; }
    void Stop() { m_t0.reset(); }
    void WaitUntil(TimePoint t0) { m_t0 = t0; }

    bool IsLate() const { return m_isLate; }
    // Of nothing that has come it is known what it answers.
    void BeLate() { m_isLate = true; }
    bool HasAsked(TimePoint now) const { return now - m_lastRequest < First(); }
    // Since the peer was heard.
    bool HasAnswered() const { return m_answers > 0; }
    bool HasGivenCredit() const { return m_hasGivenCredit; }
    // The last that came was its LA.
    bool PeerIsReady() const { return m_peerIsReady; }
    int Credit() const { return m_peerIsReady ? m_credit : 0; }
    // All that our requests can have caused has come.
    bool IsSettled() const;
    // No answer to any of our requests comes later than this.
    TimePoint CertainAt() const;
    // A request that comes now may be the answer to one of ours from before the link was ready.
    bool MayRequestBeOld(TimePoint now) const;
    bool IsPeerGone(TimePoint now) const;
    // The longest that the round trip can be, by what the peer's LA may have answered.
    Milliseconds LongestRoundTrip() const { return m_longestRoundTrip; }

private:
    Milliseconds First() const;
    void Forget();
    TimePoint SettledAt(TimePoint now) const;

    const LinkParameters& m_own;
    const RoundTrip& m_roundTrip;

    Deadline m_t0;
    Milliseconds m_interval{0};
    int m_failures = 0; // links in a row that failed soon after they were ready

    std::deque<TimePoint> m_requests; // sent, not older than any round trip
    TimePoint m_lastRequest{};
    TimePoint m_lastHeard{};
    bool m_isHeard = false;
    bool m_isLate = false;
    bool m_peerIsReady = false;
    bool m_hasGivenCredit = false; // since the last request
    int m_credit = 0;
    Milliseconds m_longestRoundTrip = RoundTrip::LongestOfAll;
    // Since the peer was heard.
    std::optional<TimePoint> m_firstRequest;
    std::size_t m_received = 0;         // LRs and LAs
    std::size_t m_acknowledgements = 0; // LAs among them
    std::size_t m_answers = 0;          // requests sent with an LA
    std::size_t m_creditsGiven = 0;     // while the line seemed prompt
    TimePoint m_lastHeardRequest{};
    bool m_isQuick = false;        // it has come on, asked, and answered at once
    bool m_peerKnowsDelay = false; // an LA without credit has come
};

} // namespace map27
