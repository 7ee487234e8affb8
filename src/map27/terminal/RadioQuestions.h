#pragma once

#include "map27/terminal/Transaction.h"

#include <array>
#include <deque>
#include <functional>

namespace map27 {

// What the terminal and its operator ask the radio about itself, and what it last reported.
//
// When the link comes up the radio is asked for its personality, numbering, operating condition and network
// information, one after another; the first answer after each link-up raises an event, and so does every
// answer to the operator and every report that the radio makes unasked. Further answers to own questions
// raise one when a value changed.
class RadioQuestions {
public:
    // Why the radio cannot be asked now; empty when it was.
    using Transmit = std::function<std::optional<Refusal>(const ToRadio& question, TimePoint now)>;

    // `wait`: then a question counts as unanswered, and the next one is asked.
    RadioQuestions(Outbox& outbox, Milliseconds wait, Transmit transmit);

    // What the line adds to the wait.
    void SetDelay(Milliseconds delay) { m_delay = delay; }

    // The link came up. `conditionFirst`: the operating condition is asked for before all else.
    void Begin(bool conditionFirst);
    // Nothing is asked any more, and nothing is expected.
    void Forget();
    // Nor is anything known.
    void ForgetReports();

    std::optional<Refusal> Ask(RadioInfo kind, bool byOperator, OpenRequest request, TimePoint now);
    // The next of the own questions, when it is its turn.
    void AskNext(OpenRequest request, TimePoint now);
    // To see whether the radio is alive: what it has answered before on this link, or the operating
    // condition. Nothing while a question of our own is open, or when its refusal could be taken for that of
    // a request.
    void Probe(OpenRequest request, TimePoint now);

    // Whether the radio's complaint is about a question, and is reported as such.
    bool TakeComplaint(const RadioSignal& signal, OpenRequest request);
    void OnTime(TimePoint now);
    Deadline NextDeadline() const;

    void Take(const PersonalityMessage& message);
    void Take(const NumberingMessage& message);
    void Take(const SettingsMessage& message);
    void Take(const OperatingConditionMessage& message);
    void Take(const NetworkInfoMessage& message);

    // A caller as the owner is told: PSTN and PABX of the radio's own prefix with prefix 0.
    Address AsShown(Address caller) const;
    // Empty before the first report.
    const std::optional<NumberingMessage>& Numbering() const { return m_numbering.value; }
    const std::optional<PersonalityMessage>& Personality() const { return m_personality.value; }

private:
    // A report of the radio as last seen; fresh means seen since the link came up.
    template <typename Message> struct Known {
        std::optional<Message> value;
        bool fresh = false;
    };
    struct Question {
        RadioInfo kind;
        bool byOperator;
        bool duringRequest; // asked after the request that is waiting for its answer
        TimePoint giveUpAt;
    };

    bool OwnIsOpen() const;
    bool IsOpen(RadioInfo kind) const;
    bool HasAnswered(RadioInfo kind) const { return m_answeredOnThisLink[static_cast<std::size_t>(kind)]; }
    // Takes the question that an answer of this kind answers. True when the answer is news whatever it says.
    bool TakeQuestion(RadioInfo kind);
    void TellUnanswered(const Question& question, const std::string& reason, const Octets& octets = {});
    template <typename Event, typename Message>
    void Publish(Known<Message>& known, const Message& message, bool always);

    Outbox& m_outbox;
    Milliseconds m_wait;
    Milliseconds m_delay{0};
    Transmit m_transmit;
    std::deque<RadioInfo> m_own; // still to be asked
    std::vector<Question> m_open;
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
