#pragma once

#include "map27/terminal/Endings.h"
#include "map27/terminal/RadioQuestions.h"
#include "map27/terminal/Requests.h"

namespace map27 {

struct TerminalParameters {
    LinkParameters link;
    Milliseconds cancelWait{2000};   // how long a message waits for the end of a cancelled one at most
    Milliseconds questionWait{3000}; // then a question counts as unanswered, and the next one is asked

    // Times that suit the line.
    static TerminalParameters ForBitRate(unsigned bitsPerSecond);
};

// The terminal's end of MAP27: the procedures of MAP27 v1.5, 5.3 and 5.4 above a link of its own. Used like
// Link: feed what is read, transmit what comes back, call OnTime at NextDeadline, times must not run
// backwards.
//
// One transaction (message or call) is open at a time. An operation that cannot begin returns a refusal and
// changes nothing. There is no time limit on a transaction. CancelTransaction, ClearCall, ResetLink and Stop
// do nothing when there is nothing to do, and have no refusal.
//
// What it asks the radio by itself, and what comes of the answers, says RadioQuestions. What becomes of a
// call whose link was lost, says HeldCall.
class Terminal {
public:
    explicit Terminal(TerminalParameters parameters = {});
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    TerminalOutput Start(TimePoint now);
    // Everything open is forgotten, without events: the owner closes the port.
    void Stop();
    TerminalOutput Feed(OctetSpan octets, TimePoint now);
    TerminalOutput OnTime(TimePoint now);
    Deadline NextDeadline() const;

    // Ends what is in progress at the radio as well as one can (hang up, cancel), then sets the link up anew,
    // first request after the pause.
    TerminalOutput ResetLink(Milliseconds pause, TimePoint now);

    OperationResult SendStatus(Address to, unsigned status, TimePoint now);
    OperationResult SendText(Address to, std::string_view utf8, TextCoding coding, TimePoint now);
    // An SST with coding 8, at most 22 octets.
    OperationResult SendBinary(Address to, OctetSpan octets, TimePoint now);

    // dialog false: a one-way call, the called units may not answer. priority does not apply to an emergency
    // call.
    OperationResult MakeCall(Address to, bool emergency, bool priority, bool dialog, TimePoint now);
    OperationResult MakeGatewayCall(int gateway, std::string_view digits, bool emergency, bool priority,
                                    bool dialog, TimePoint now);

    OperationResult AnswerCall(TimePoint now);
    OperationResult RefuseCall(TimePoint now);
    // Releasing the key outside a call is no fault; pressing it is.
    OperationResult SetTransmit(bool on, TimePoint now);
    // Hangs up; gives up a call that is being set up or rings. Leaves a message alone.
    TerminalOutput ClearCall(TimePoint now);
    // Puts the radio on hook and releases its transmitter, whatever it is doing, even when no call is ours.
    OperationResult PutOnHook(TimePoint now);
    // Gives up a message, a call that is being set up, or refuses one that rings. Leaves a connected call
    // alone.
    TerminalOutput CancelTransaction(TimePoint now);

    // The operator's question.
    OperationResult RequestRadioInfo(unsigned kind, TimePoint now);
    // A question of the control's own, to learn whether the radio is alive: the operating condition, or what
    // the radio has answered before on this link. Nothing when the link is down, a question is open already,
    // or its refusal could be taken for that of a request.
    TerminalOutput Probe(TimePoint now);
    // While held, the radio keeps what it has to say to itself, see Link.
    TerminalOutput HoldReceiving(bool hold, TimePoint now);
    // When the oldest message that the radio has not acknowledged was sent; empty when it owes none.
    Deadline UnacknowledgedSince() const { return m_link.UnacknowledgedSince(); }

    // How late the line is; 0 on a cable.
    Milliseconds RoundTripTime() const { return m_link.RoundTripTime(); }

    bool IsLinkReady() const { return m_link.IsReady(); }
    TerminalState State() const { return m_transaction.State(); }
    bool IsTransmitting() const { return m_transaction.IsTransmitting(); }
    // Last reports since Start; empty before the first.
    const std::optional<NumberingMessage>& Numbering() const { return m_questions.Numbering(); }
    const std::optional<PersonalityMessage>& Personality() const { return m_questions.Personality(); }
    const TerminalCounters& Counters() const { return m_outbox.counters; }
    map27::LinkCounters LinkCounters() const { return m_link.Counters(); }

private:
    // Link side.
    void Take(LinkOutput output, TimePoint now);
    void OnMessage(const Octets& octets, TimePoint now);
    std::optional<Refusal> Transmit(const Octets& message, TimePoint now);
    // False when it could not be handed to the link, which is reported.
    bool TransmitOrReport(const Octets& message, TimePoint now);

    // Messages from the radio.
    void Handle(const StatusMessage& message, const Octets& octets, TimePoint now);
    void Handle(const ShortDataMessage& message, const Octets& octets, TimePoint now);
    void Handle(const CallMessage& message, const Octets& octets, TimePoint now);
    void Handle(const ClearMessage& message, const Octets& octets, TimePoint now);
    void Handle(const AcknowledgementMessage& message, const Octets& octets, TimePoint now);
    void Handle(const ProtocolInfoMessage& message, const Octets& octets, TimePoint now);
    void Handle(const OperatingConditionMessage& message, const Octets& octets, TimePoint now);
    // Answers to questions, and what the terminal has no use for.
    template <typename Message> void Handle(const Message& message, const Octets& octets, TimePoint now);
    bool AnswersCancelledMessage(const RadioSignal& signal, TimePoint now);

    // Operations.
    // Why it cannot begin now.
    std::optional<Refusal> WhyNot(const Request& request) const;
    OperationResult Finish(std::optional<Refusal> refusal, TimePoint now);
    OperationResult BeginMessage(Address to, const Request& request, TimePoint now);
    OperationResult BeginCall(const Request& request, TimePoint now);
    TerminalOutput TakeOutput(TimePoint now);

    Link m_link;
    Outbox m_outbox;
    Transaction m_transaction;
    CancelledRequests m_cancelled;
    HeldCall m_held;
    Endings m_endings;
    RadioQuestions m_questions;
};

} // namespace map27
