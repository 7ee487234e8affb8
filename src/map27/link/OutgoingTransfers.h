#pragma once

#include "map27/link/FrameSender.h"
#include "map27/link/LinkEvents.h"
#include "map27/link/LinkParameters.h"
#include "map27/link/RoundTrip.h"

#include <deque>
#include <optional>

namespace map27 {

// The messages that one end of a link sends: they wait for credit, go out numbered, and go out again until
// the peer acknowledges them (MAP27 v1.5, 4.4). The standard's names of the variables stand in brackets.
class OutgoingTransfers {
public:
    // `agreed`: N1 and k as negotiated so far; all belong to the link.
    OutgoingTransfers(const LinkParameters& own, const LinkParameters& agreed, FrameSender& sender,
                      RoundTrip& roundTrip, LinkCounters& counters);

    // A new link: numbered from 1, without credit, with nothing to send.
    void Begin();
    // How many messages are lost with it.
    std::size_t Forget();

    bool IsFull() const { return m_queue.size() >= m_own.queueLimit; }
    // Sends at once or as soon as there is credit, in order.
    void Send(OctetSpan message, TimePoint now);
    void TakeCredit(int credit, TimePoint now);
    // The same messages on the same link set up once more: numbered from 1, without credit.
    void Recall();
    // Something has been sent since the link was ready first.
    bool HasSent() const { return m_hasSent; }
    bool IsAcknowledged() const { return m_lastAcknowledged != 1; }

    // An LA on the link that is up: N(R) and N(k). Why the link has failed with it; empty: it has not.
    std::optional<LinkFailure> TakeAcknowledgement(std::uint8_t number, int credit, TimePoint now);

    // For the repetition of what the peer does not acknowledge (T1).
    Deadline NextDeadline() const { return m_t1; }
    std::optional<LinkFailure> OnT1(TimePoint now);

    // A message would go out at once, and nothing waits for its acknowledgement.
    bool IsFree() const { return Backlog() == 0 && m_credit > 0; }
    std::size_t Backlog() const { return m_queue.size() + m_outstanding.size(); }
    Deadline UnacknowledgedSince() const;

private:
    struct Sent {
        std::uint8_t number;
        Octets message;
        TimePoint since;
        int copies;
        TimePoint lastCopy;
        TimePoint copyBefore;
    };

    void StartNumbering();
    std::optional<LinkFailure> TakeRepeatedAcknowledgement(int credit, TimePoint now);
    void SendQueued(TimePoint now);
    void Transmit(Sent& sent, bool acknowledgeAtOnce, TimePoint now);
    void Measure(std::size_t acknowledged, TimePoint now);
    Milliseconds RepetitionTime() const { return std::max(m_own.t1, m_roundTrip.AtMost() + m_own.t0First); }
    void GoBack(TimePoint now);

    const LinkParameters& m_own;
    const LinkParameters& m_agreed;
    FrameSender& m_sender;
    RoundTrip& m_roundTrip;
    LinkCounters& m_counters;

    std::uint8_t m_nextToSend = 1;       // V(S)
    std::uint8_t m_lastAcknowledged = 1; // last N(R) received
    int m_credit = 0;                    // S(k)
    bool m_hasSent = false;
    int m_triesLeft = 0;             // C1
    std::deque<Octets> m_queue;      // not sent yet
    std::deque<Sent> m_outstanding;  // sent, not acknowledged
    TimePoint m_mayBeAnsweredFrom{}; // no LA that answers the last LT can be here before
    int m_echoesDue = 0;             // LAs that answer the copies of what the last new one acknowledged
    TimePoint m_echoesUntil{};
    Deadline m_t1;
};

} // namespace map27
