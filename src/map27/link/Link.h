#pragma once

#include "map27/link/OutgoingTransfers.h"

namespace map27 {

// One end of the data link of MAP27 v1.5, section 4; both ends are alike. Neither reads nor writes a port,
// and knows no clock: the owner transmits LinkOutput::frames, feeds what it reads and calls OnTime at
// NextDeadline. Every call takes the current time, which must not run backwards.
class Link {
public:
    explicit Link(LinkParameters parameters = {});
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

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

    // For an owner that cannot take messages for a while. While held, the peer gets no further credit. What
    // it has credit for already is still taken, so that it has nothing to repeat and the link lasts however
    // long it is held; an LT without credit is dropped.
    LinkOutput HoldReceiving(bool hold, TimePoint now);

    LinkState State() const { return m_state; }
    bool IsReady() const { return m_state == LinkState::Ready; }
    std::size_t LongestMessage() const { return m_agreed.LongestMessage(); }
    // Messages waiting for credit or acknowledgement.
    std::size_t Backlog() const { return m_transfers.Backlog(); }
    // When the oldest message that still waits for its acknowledgement was sent first; empty when none does.
    Deadline UnacknowledgedSince() const { return m_transfers.UnacknowledgedSince(); }
    LinkCounters Counters() const;
    const LinkParameters& OwnParameters() const { return m_own; }

private:
    // Bodies received, by state.
    void HandleBody(const Octets& body, TimePoint now);
    void HandleLinkRequest(const Octets& body, TimePoint now);
    void HandleAcknowledgement(const Octets& body, TimePoint now);
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

    void SendLinkRequest(TimePoint now);
    void SendAcknowledgement(TimePoint now);
    void StopTimers();
    LinkOutput TakeOutput();

    LinkParameters m_own;
    LinkParameters m_agreed; // n1, k, version as negotiated so far; the rest as m_own
    LinkState m_state = LinkState::Stopped;
    FrameDecoder m_decoder;
    std::vector<LinkEvent> m_events;
    LinkCounters m_counters;
    FrameSender m_sender;
    OutgoingTransfers m_transfers;

    // Setting up.
    bool m_pausing = false;         // Reset's pause: nothing is answered
    bool m_waitingForQuiet = false; // likewise, until the line has been quiet
    TimePoint m_quietLimit{};       // then the request goes out however noisy the line is
    Milliseconds m_t0Interval{};
    int m_answersInARow =
        0; // LRs sent in answer to something, without a stable link or a quiet line in between
    TimePoint m_readySince{};

    // Ready; the standard's names in brackets.
    std::uint8_t m_nextExpected = 1;   // V(R)
    std::uint8_t m_lastNumberTold = 1; // N(R) and N(k) of the last LA sent
    std::uint8_t m_lastCreditTold = 0;
    std::uint8_t m_firstWithoutCredit =
        1; // the peer's first LT beyond all credit it was told; R(k) with V(R)
    bool m_holdReceiving = false;

    Deadline m_t0;
    Deadline m_t2;
    Deadline m_t3;
    Deadline m_t4;
};

} // namespace map27
