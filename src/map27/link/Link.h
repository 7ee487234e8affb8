#pragma once

#include "map27/link/IncomingTransfers.h"
#include "map27/link/LinkSetUp.h"
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

    LinkState State() const { return m_isKept ? LinkState::Ready : m_state; }
    bool IsReady() const { return State() == LinkState::Ready; }
    std::size_t LongestMessage() const { return m_agreed.LongestMessage(); }
    // Messages waiting for credit or acknowledgement.
    std::size_t Backlog() const { return m_outgoing.Backlog(); }
    // A message would go out at once, and none waits for credit or acknowledgement.
    bool IsFree() const { return m_state == LinkState::Ready && m_outgoing.IsFree(); }
    // When the oldest message that still waits for its acknowledgement was sent first; empty when none does.
    // While the link settles again: since when messages are kept.
    Deadline UnacknowledgedSince() const
    {
        return m_isKept && Backlog() > 0 ? Deadline{m_keptSince} : m_outgoing.UnacknowledgedSince();
    }
    // How late the line is; 0 as long as nothing is known, and on a cable.
    Milliseconds RoundTripTime() const;
    LinkCounters Counters() const;
    const LinkParameters& OwnParameters() const { return m_own; }

private:
    // Bodies received, by state.
    void HandleBody(const Octets& body, TimePoint now);
    void HandleLinkRequest(const Octets& body, TimePoint now);
    void HandleAcknowledgement(const Octets& body, TimePoint now);
    void HandleTransfer(const Octets& body, TimePoint now);

    // While the link is set up.
    void HandleAcknowledgementInSetUp(std::uint8_t number, int credit, TimePoint now);
    void HandleTransferInSetUp(const Octets& body, TimePoint now);

    // Changes of state.
    void AskForLink(TimePoint now);
    void AnswerRequest(TimePoint now);
    bool MaySettleAgain(TimePoint now) const;
    void SettleAgain(TimePoint now);
    void EnterReady(int credit, TimePoint now);
    void TakeCredit(TimePoint now);
    void LeaveReady(LinkFailure reason, TimePoint now);
    void Fail(LinkFailure reason, TimePoint now);
    void OnT0(TimePoint now);

    void SendLinkRequest(TimePoint now);
    // With the LA that would follow it.
    void SendRequestAndAcknowledgement(TimePoint now);
    // By the LA that ends the set-up as far as this end is concerned.
    void GiveCredit(TimePoint now);
    void StopTimers();
    LinkOutput TakeOutput();

    LinkParameters m_own;
    LinkParameters m_agreed; // n1, k, version as negotiated so far; the rest as m_own
    LinkState m_state = LinkState::Stopped;
    FrameDecoder m_decoder;
    std::vector<LinkEvent> m_events;
    LinkCounters m_counters;
    FrameSender m_sender;
    RoundTrip m_roundTrip;
    OutgoingTransfers m_outgoing;
    IncomingTransfers m_incoming;

    // Setting up.
    bool m_pausing = false; // Reset's pause: nothing is answered
    LinkSetUp m_setUp;
    TimePoint m_readySince{};
    // Ready for the owner, though an old request has come and the link is settling again: no message has
    // arrived in either direction yet, so those that wait are kept.
    bool m_isKept = false;
    TimePoint m_keptSince{};
    int m_creditHeldBack = 0; // until no old answer can come any more

    Deadline m_t4;
};

} // namespace map27
