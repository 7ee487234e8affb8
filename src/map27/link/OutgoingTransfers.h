#pragma once

#include "map27/link/FrameSender.h"
#include "map27/link/LinkEvents.h"
#include "map27/link/LinkParameters.h"

#include <deque>
#include <optional>

namespace map27 {

// The messages that one end of a link sends: they wait for credit, go out numbered, and go out again until
// the peer acknowledges them (MAP27 v1.5, 4.4). The standard's names of the variables stand in brackets.
class OutgoingTransfers {
public:
    // `agreed`: N1 and k as negotiated so far; all belong to the link.
    OutgoingTransfers(const LinkParameters& own, const LinkParameters& agreed, FrameSender& sender,
                      LinkCounters& counters);

    // A new link: numbered from 1, without credit, with nothing to send.
    void Begin();
    // How many messages are lost with it.
    std::size_t Forget();

    bool IsFull() const { return m_queue.size() >= m_own.queueLimit; }
    // Sends at once or as soon as there is credit, in order.
    void Send(OctetSpan message, TimePoint now);
    void SetCredit(int credit) { m_credit = credit; }
    // An LA on the link that is up: N(R) and N(k). Why the link has failed with it; empty: it has not.
    std::optional<LinkFailure> TakeAcknowledgement(std::uint8_t number, int credit, TimePoint now);

    // For the repetition of what the peer does not acknowledge (T1).
    Deadline NextDeadline() const { return m_t1; }
    std::optional<LinkFailure> OnT1(TimePoint now);

    std::size_t Backlog() const { return m_queue.size() + m_outstanding.size(); }
    Deadline UnacknowledgedSince() const;

private:
    struct Sent {
        std::uint8_t number;
        Octets message;
        TimePoint since;
    };

    std::optional<LinkFailure> TakeRepeatedAcknowledgement(int credit, TimePoint now);
    void SendQueued(TimePoint now);
    void Transmit(const Sent& sent, bool acknowledgeAtOnce, TimePoint now);
    void GoBack(TimePoint now);

    const LinkParameters& m_own;
    const LinkParameters& m_agreed;
    FrameSender& m_sender;
    LinkCounters& m_counters;

    std::uint8_t m_nextToSend = 1;       // V(S)
    std::uint8_t m_lastAcknowledged = 1; // last N(R) received
    int m_credit = 0;                    // S(k)
    int m_triesLeft = 0;                 // C1
    std::deque<Octets> m_queue;          // not sent yet
    std::deque<Sent> m_outstanding;      // sent, not acknowledged
    TimePoint m_mayBeAnsweredFrom{};     // no LA that answers the last LT can be here before
    Deadline m_t1;
};

} // namespace map27
