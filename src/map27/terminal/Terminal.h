#pragma once

#include "map27/terminal/TerminalEvents.h"
#include "map27/terminal/TerminalTable.h"

#include <array>

namespace map27 {

struct TerminalParameters {
    LinkParameters link;
    Milliseconds cancelWait{2000};   // how long a message waits for the end of a cancelled one at most
    Milliseconds questionWait{3000}; // then a question counts as unanswered, and the next one is asked

    // Times that suit the line.
    static TerminalParameters ForBitRate(unsigned bitsPerSecond);
};

enum class Gateway { Pstn = 1, Pabx = 2 };

struct TerminalCounters {
    std::uint64_t messagesReceived = 0;
    std::uint64_t messagesSent = 0;
    std::uint64_t undecodable = 0;
    std::uint64_t statusOutOfRange = 0;
    std::uint64_t unknownCodings = 0;
    std::uint64_t late = 0;
    std::uint64_t unanswered = 0;
    std::uint64_t notUsed = 0;
};

// The terminal's end of MAP27: the procedures of MAP27 v1.5, 5.3 and 5.4 above a link of its own. Used like
// Link: feed what is read, transmit what comes back, call OnTime at NextDeadline, times must not run
// backwards.
//
// One transaction (message or call) is open at a time. An operation that cannot begin returns a refusal and
// changes nothing. There is no time limit on a transaction. CancelTransaction, ClearCall, ResetLink and Stop
// do nothing when there is nothing to do, and have no refusal.
//
// When the link comes up the terminal asks the radio for its personality, numbering, operating condition and
// network information, one after another; the first answer after each link-up raises an event, and so does
// every answer to RequestRadioInfo and every report that the radio makes unasked. Further answers to own
// questions raise one when a value changed.
class Terminal {
public:
    explicit Terminal(TerminalParameters parameters = {});

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
    // Gives up a message, a call that is being set up, or refuses one that rings. Leaves a connected call
    // alone.
    TerminalOutput CancelTransaction(TimePoint now);

    // The operator's question.
    OperationResult RequestRadioInfo(unsigned kind, TimePoint now);
    // A question of the control's own, to see whether the radio is alive: the operating condition, or what
    // the radio has answered before on this link. Nothing when the link is down, a question is open already,
    // or its refusal could be taken for that of a request.
    TerminalOutput Probe(TimePoint now);
    // When the oldest message that the radio has not acknowledged was sent; empty when it owes none.
    Deadline UnacknowledgedSince() const { return m_link.UnacknowledgedSince(); }

    bool IsLinkReady() const { return m_link.IsReady(); }
    TerminalState State() const { return m_state; }
    bool IsTransmitting() const { return m_transmitting; }
    // Last reports since Start; empty before the first.
    const std::optional<NumberingMessage>& Numbering() const { return m_numbering.value; }
    const std::optional<PersonalityMessage>& Personality() const { return m_personality.value; }
    const TerminalCounters& Counters() const { return m_counters; }
    LinkCounters GetLinkCounters() const { return m_link.Counters(); }
    LinkState GetLinkState() const { return m_link.State(); }

private:
    // A report of the radio as last seen; fresh means seen since the link came up.
    template <typename Message> struct Known {
        std::optional<Message> value;
        bool fresh = false;
    };
    struct Question {
        RadioInfo kind;
        bool byOperator;
        bool duringTransaction; // asked after the request that is waiting for its answer
        TimePoint giveUpAt;
    };
    // What the radio said, for the machine.
    struct Signal {
        std::uint8_t type;
        std::uint8_t cause;
        const Octets& octets;
    };
    // Traces of what was cancelled a moment ago, whose answers may still be under way.
    struct Cancelled {
        Deadline messageEnd; // C0, E0 or A6 of a message is still to come; the next message waits
        Deadline mismatch;   // "state mismatch" would answer our cancelling
        Deadline call;       // progress of this call set-up, or the confirmation of its end, may come
        Address calledParty;
    };

    // Link side.
    void Take(LinkOutput output, TimePoint now);
    void OnMessage(const Octets& octets, TimePoint now);
    void OnLinkReady(const LinkReady& ready);
    void OnLinkFailed(const LinkFailed& failed);
    std::optional<Refusal> Transmit(const ToRadio& message, TimePoint now);
    std::optional<Refusal> Transmit(const Octets& message, TimePoint now);
    void TransmitOrReport(const ToRadio& message, TimePoint now);

    // Messages from the radio.
    void Handle(const StatusMessage& message, const Octets& octets, TimePoint now);
    void Handle(const ShortDataMessage& message, const Octets& octets, TimePoint now);
    void Handle(const CallMessage& message, const Octets& octets, TimePoint now);
    void Handle(const ClearMessage& message, const Octets& octets, TimePoint now);
    void Handle(const AcknowledgementMessage& message, const Octets& octets, TimePoint now);
    void Handle(const ProtocolInfoMessage& message, const Octets& octets, TimePoint now);
    void Handle(const PersonalityMessage& message, const Octets& octets, TimePoint now);
    void Handle(const NumberingMessage& message, const Octets& octets, TimePoint now);
    void Handle(const SettingsMessage& message, const Octets& octets, TimePoint now);
    void Handle(const OperatingConditionMessage& message, const Octets& octets, TimePoint now);
    void Handle(const NetworkInfoMessage& message, const Octets& octets, TimePoint now);
    template <typename Unused> void Handle(const Unused& message, const Octets& octets, TimePoint now);

    // The machine: see TerminalTable.h.
    void Apply(RadioInput input, const Signal& signal);
    void Act(TerminalAction action, const Signal& signal);
    void EndTransaction();
    bool AnswersCancelledMessage(const Signal& signal, TimePoint now);
    bool AnswersCancelledCall(const AcknowledgementMessage& message, TimePoint now) const;
    void ReleaseHeldMessage(TimePoint now);
    bool RequestIsOpen() const;

    // Operations.
    std::optional<Refusal> CheckFree() const;
    OperationResult Finish(std::optional<Refusal> refusal, TimePoint now);
    OperationResult BeginMessage(Address to, const ToRadio& message, TimePoint now);
    OperationResult BeginCall(const Party& to, bool emergency, bool priority, bool dialog, TimePoint now);
    void HangUp(TimePoint now);
    void CancelMessage(TimePoint now);
    void CancelOutcall(TimePoint now);

    // Questions.
    std::optional<Refusal> Ask(RadioInfo kind, bool byOperator, TimePoint now);
    void AskNext(TimePoint now);
    bool OwnQuestionIsOpen() const;
    bool IsOpen(RadioInfo kind) const;
    // Takes the question that an answer of this kind answers. True when the answer is news whatever it says.
    bool TakeQuestion(RadioInfo kind);
    bool RefusesQuestion(const Signal& signal);
    void GiveUpQuestions(TimePoint now);
    void TellUnanswered(const Question& question, const std::string& reason, const Octets& octets = {});
    bool HasAnswered(RadioInfo kind) const { return m_answeredOnThisLink[static_cast<std::size_t>(kind)]; }
    void ForgetQuestions();
    template <typename Event, typename Message>
    void Publish(Known<Message>& known, const Message& message, bool always);

    Address AsShown(Address caller) const;
    void Tell(TerminalEvent event) { m_output.events.push_back(std::move(event)); }
    void TellReport(ReportKind kind, std::string text, const Octets& octets = {});
    TerminalOutput TakeOutput(TimePoint now);

    TerminalParameters m_parameters;
    Link m_link;
    TerminalOutput m_output;
    TerminalCounters m_counters;

    TerminalState m_state = TerminalState::Idle;
    Address m_party;             // of the open transaction, as on the wire
    bool m_progressSeen = false; // the radio has taken the open request up
    bool m_answered = false;     // the ringing call
    bool m_transmitting = false;
    Cancelled m_cancelled;
    std::optional<Octets> m_heldMessage; // begun, but waits for the end of a cancelled one

    std::deque<RadioInfo> m_ownQuestions; // still to be asked
    std::vector<Question> m_openQuestions;
    std::array<bool, 5> m_answeredOnThisLink{};
    std::array<bool, 5> m_unansweredTold{}; // own questions come again and again: one report a link is enough

    std::optional<std::uint8_t> m_ownPrefix;
    Known<PersonalityMessage> m_personality;
    Known<NumberingMessage> m_numbering;
    Known<SettingsMessage> m_settings;
    Known<OperatingConditionMessage> m_operatingCondition;
    Known<NetworkInfoMessage> m_network;
};

} // namespace map27
