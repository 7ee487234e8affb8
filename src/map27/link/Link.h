#pragma once

#include "map27/codec/Octets.h"
#include "map27/link/Framing.h"
#include "map27/link/LinkParameters.h"

#include <deque>
#include <variant>

namespace map27 {

enum class LinkState {
    Stopped,   // before Start, after Stop: sends nothing, ignores everything
    ResetWait, // asking for a link (LR)
    LinkWait,  // the peer asked too; waiting for agreement
    Ready,     // messages flow
};

enum class LinkFailure {
    Silent,               // nothing valid received for T4
    RetriesUsedUp,        // an LT was repeated N2 times
    PeerReset,            // the peer asked for a new link while this one was ready
    WrongAcknowledgement, // N(R) outside what was sent
    OutsideWindow,        // N(S) outside the window (only with checkWindow)
};

// English, for log files.
const char* LinkFailureText(LinkFailure failure);

// Events of a link.
struct LinkReady {
    std::uint8_t n1; // agreed
    std::uint8_t k;
    std::uint8_t version;
    bool operator==(const LinkReady&) const = default;
};
// Messages that were queued or not yet acknowledged are lost with the link. The link goes on asking for a new
// one.
struct LinkFailed {
    LinkFailure reason;
    std::size_t messagesLost;
    bool operator==(const LinkFailed&) const = default;
};
struct MessageReceived {
    Octets message;
    bool operator==(const MessageReceived&) const = default;
};
using LinkEvent = std::variant<LinkReady, LinkFailed, MessageReceived>;

// What one call brought about.
struct LinkOutput {
    std::vector<Octets> frames;    // to transmit, in order
    std::vector<LinkEvent> events; // in order
};

enum class SendResult {
    Accepted, // sent, or waiting for credit
    NotReady,
    Empty,
    TooLong, // for the agreed N1
    QueueFull,
};

struct SendOutcome {
    SendResult result;
    LinkOutput output;
};

struct LinkCounters {
    std::uint64_t framesOut = 0;
    std::uint64_t framesIn = 0;    // with a correct FCS
    std::uint64_t messagesOut = 0; // LTs, each counted once however often it was sent
    std::uint64_t messagesIn = 0;  // delivered
    std::uint64_t retransmissions = 0;
    std::uint64_t duplicates = 0;     // LTs received again and dropped
    std::uint64_t sequenceErrors = 0; // LTs out of order that are no repetition of one already delivered
    std::uint64_t noBuffer = 0;       // LTs dropped since receiving was held
    std::uint64_t crossingAcknowledgements = 0; // LAs that set out before our LT could have arrived, ignored
    std::uint64_t malformed = 0;                // bodies too short for a header, LTs without data
    std::uint64_t unknownPackets = 0;
    std::uint64_t resets = 0;        // link failures and Reset, together
    std::uint64_t silences = 0;      // T4 failures
    std::uint64_t retryFailures = 0; // N2 failures
    std::uint64_t quietWaits = 0;   // set-ups that went round in circles and were broken off for a quiet line
    std::uint64_t messagesLost = 0; // queued or unacknowledged when a link ended
    FramingCounters framing;
};

// One end of the data link of MAP27 v1.5, section 4; both ends are alike. Neither reads nor writes a port,
// and knows no clock: the owner transmits LinkOutput::frames, feeds what it reads and calls OnTime at
// NextDeadline. Every call takes the current time, which must not run backwards.
class Link {
public:
    explicit Link(LinkParameters parameters = {});

    LinkOutput Start(TimePoint now);
    void Stop();

    // Ends the present link without reporting a failure and sets it up anew, first LR after the pause; until
    // then whatever arrives is ignored. Nothing happens when stopped.
    LinkOutput Reset(TimePoint now, Milliseconds pause);

    LinkOutput Feed(OctetSpan octets, TimePoint now);
    LinkOutput OnTime(TimePoint now);
    Deadline NextDeadline() const;

    // Sends at once or as soon as there is credit, in order.
    SendOutcome Send(OctetSpan message, TimePoint now);

    // While held, the peer gets no credit and its LTs are dropped; it repeats them. For an owner that cannot
    // take messages.
    LinkOutput HoldReceiving(bool hold, TimePoint now);

    LinkState State() const { return m_state; }
    bool IsReady() const { return m_state == LinkState::Ready; }
    std::size_t LongestMessage() const { return m_agreed.LongestMessage(); }
    // Messages waiting for credit or acknowledgement.
    std::size_t Backlog() const { return m_queue.size() + m_outstanding.size(); }
    // When the oldest message that still waits for its acknowledgement was sent first; empty when none does.
    Deadline UnacknowledgedSince() const;
    LinkCounters Counters() const;
    const LinkParameters& OwnParameters() const { return m_own; }

private:
    struct Sent {
        std::uint8_t number;
        Octets message;
        TimePoint since;
    };

    // Bodies received, by state.
    void HandleBody(const Octets& body, TimePoint now);
    void HandleLinkRequest(const Octets& body, TimePoint now);
    void HandleAcknowledgement(const Octets& body, TimePoint now);
    void HandleRepeatedAcknowledgement(int credit, TimePoint now);
    void HandleTransfer(const Octets& body, TimePoint now);
    void TakeTransfer(const Octets& body, TimePoint now);

    // Changes of state.
    void AskForLink(TimePoint now);
    void AnswerByLinkRequest(LinkState next, TimePoint now);
    void WaitForQuietLine(TimePoint now);
    void EnterReady(TimePoint now);
    void LeaveReady(LinkFailure reason, TimePoint now);
    void Fail(LinkFailure reason, TimePoint now);
    void TakeMinima(const Octets& linkRequest);
    bool IsAcceptable(const Octets& linkRequest) const;
    void OnT0(TimePoint now);
    void OnT1(TimePoint now);

    void SendLinkRequest(TimePoint now);
    void SendAcknowledgement(TimePoint now);
    void SendTransfer(const Sent& sent, bool acknowledgeAtOnce, TimePoint now);
    void SendQueued(TimePoint now);
    void GoBack(TimePoint now);
    void Transmit(const Octets& body, TimePoint now);
    std::size_t ForgetMessages();
    void StopTimers();
    Milliseconds LineTime(std::size_t octets) const;
    LinkOutput TakeOutput();

    LinkParameters m_own;
    LinkParameters m_agreed; // n1, k, version as negotiated so far; the rest as m_own
    LinkState m_state = LinkState::Stopped;
    FrameDecoder m_decoder;
    LinkOutput m_output;
    LinkCounters m_counters;

    // Setting up.
    bool m_pausing = false;         // Reset's pause: nothing is answered
    bool m_waitingForQuiet = false; // likewise, until the line has been quiet
    TimePoint m_quietLimit{};       // then the request goes out however noisy the line is
    Milliseconds m_t0Interval{};
    int m_answersInARow =
        0; // LRs sent in answer to something, without a stable link or a quiet line in between
    TimePoint m_readySince{};

    // Ready; the standard's names in brackets.
    std::uint8_t m_nextToSend = 1;       // V(S)
    std::uint8_t m_nextExpected = 1;     // V(R)
    std::uint8_t m_lastAcknowledged = 1; // last N(R) received
    int m_sendCredit = 0;                // S(k)
    int m_triesLeft = 0;                 // C1
    std::uint8_t m_lastNumberTold = 1;   // N(R) and N(k) of the last LA sent
    std::uint8_t m_lastCreditTold = 0;
    bool m_holdReceiving = false;
    std::deque<Octets> m_queue;      // not sent yet
    std::deque<Sent> m_outstanding;  // sent, not acknowledged
    TimePoint m_lineFreeAt{};        // when what was transmitted has left, by the bit rate
    TimePoint m_mayBeAnsweredFrom{}; // no LA that answers the last LT can be here before

    Deadline m_t0;
    Deadline m_t1;
    Deadline m_t2;
    Deadline m_t3;
    Deadline m_t4;
};

} // namespace map27
