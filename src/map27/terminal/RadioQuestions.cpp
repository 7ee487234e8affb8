#include "map27/terminal/RadioQuestions.h"

#include "map27/codec/Causes.h"

#include <algorithm>

namespace map27 {

namespace {

const char* InfoText(RadioInfo kind)
{
    switch (kind) {
    case RadioInfo::Personality:
        return "personality";
    case RadioInfo::Numbering:
        return "numbering";
    case RadioInfo::Settings:
        return "settings";
    case RadioInfo::OperatingCondition:
        return "operating condition";
    case RadioInfo::Network:
        return "network information";
    }
    return "unknown";
}

} // namespace

RadioQuestions::RadioQuestions(Outbox& outbox, Milliseconds wait, Transmit transmit)
    : m_outbox(outbox),
      m_wait(wait),
      m_transmit(std::move(transmit))
{
}

void RadioQuestions::Begin(bool conditionFirst)
{
    Forget();
    m_own = {RadioInfo::Personality, RadioInfo::Numbering, RadioInfo::OperatingCondition, RadioInfo::Network};
    if (conditionFirst)
        std::swap(m_own[0], m_own[2]);
    m_personality.fresh = false;
    m_numbering.fresh = false;
    m_settings.fresh = false;
    m_operatingCondition.fresh = false;
    m_network.fresh = false;
}

void RadioQuestions::Forget()
{
    m_own.clear();
    m_open.clear();
    m_answeredOnThisLink = {};
    m_unansweredTold = {};
}

void RadioQuestions::ForgetReports()
{
    m_ownPrefix.reset();
    m_personality = {};
    m_numbering = {};
    m_settings = {};
    m_operatingCondition = {};
    m_network = {};
}

std::optional<Refusal> RadioQuestions::Ask(RadioInfo kind, bool byOperator, OpenRequest request,
                                           TimePoint now)
{
    if (auto refusal = m_transmit(InterrogationMessage{static_cast<std::uint8_t>(kind)}, now))
        return refusal;
    m_open.push_back({kind, byOperator, request != OpenRequest::None, now + m_wait + m_delay});
    return std::nullopt;
}

// One own question at a time, and none between a request and the radio's first word on it: so that a radio
// that knows no such question is not taken to refuse the request.
void RadioQuestions::AskNext(OpenRequest request, TimePoint now)
{
    if (m_own.empty() || OwnIsOpen() || request == OpenRequest::Unanswered)
        return;
    const RadioInfo kind = m_own.front();
    if (!Ask(kind, false, request, now))
        m_own.pop_front();
}

void RadioQuestions::Probe(OpenRequest request, TimePoint now)
{
    if (OwnIsOpen() || !m_own.empty())
        return;
    constexpr RadioInfo kinds[] = {RadioInfo::OperatingCondition, RadioInfo::Numbering, RadioInfo::Network,
                                   RadioInfo::Personality};
    const auto* answered = std::find_if(std::begin(kinds), std::end(kinds),
                                        [this](RadioInfo kind) { return HasAnswered(kind); });
    if (answered != std::end(kinds))
        Ask(*answered, false, request, now);
    else if (request == OpenRequest::None)
        Ask(RadioInfo::OperatingCondition, false, request, now);
}

bool RadioQuestions::OwnIsOpen() const
{
    return std::any_of(
        m_open.begin(), m_open.end(), [](const Question& question) { return !question.byOperator; });
}

bool RadioQuestions::IsOpen(RadioInfo kind) const
{
    return std::any_of(
        m_open.begin(), m_open.end(), [kind](const Question& question) { return question.kind == kind; });
}

bool RadioQuestions::TakeQuestion(RadioInfo kind)
{
    m_answeredOnThisLink[static_cast<std::size_t>(kind)] = true;
    const auto found = std::find_if(m_open.begin(), m_open.end(),
                                    [kind](const Question& question) { return question.kind == kind; });
    if (found == m_open.end())
        return true; // nobody asked
    const bool byOperator = found->byOperator;
    m_open.erase(found);
    return byOperator;
}

// The radio complains of something. Which of the open requests it means it does not say: a question that it
// has answered before on this link, or that was asked after a request on which it has said nothing yet, is
// not it.
bool RadioQuestions::TakeComplaint(const RadioSignal& signal, OpenRequest request)
{
    const auto found = std::find_if(m_open.begin(), m_open.end(), [&](const Question& question) {
        return !HasAnswered(question.kind) && (request != OpenRequest::Unanswered || !question.duringRequest);
    });
    if (found == m_open.end())
        return false;
    TellUnanswered(*found, CauseText(signal.type, signal.cause), signal.octets);
    m_open.erase(found);
    return true;
}

void RadioQuestions::OnTime(TimePoint now)
{
    const auto isOver = [now](const Question& question) { return question.giveUpAt <= now; };
    for (const Question& question : m_open)
        if (isOver(question))
            TellUnanswered(question, "no answer");
    std::erase_if(m_open, isOver);
}

Deadline RadioQuestions::NextDeadline() const
{
    Deadline deadline;
    for (const Question& question : m_open)
        deadline = Earlier(deadline, question.giveUpAt);
    return deadline;
}

void RadioQuestions::TellUnanswered(const Question& question, const std::string& reason, const Octets& octets)
{
    ++m_outbox.counters.unanswered;
    const bool told = std::exchange(m_unansweredTold[static_cast<std::size_t>(question.kind)], true);
    if (question.byOperator || !told)
        m_outbox.Report(ReportKind::Unanswered, std::string(InfoText(question.kind)) + ": " + reason, octets);
}

Address RadioQuestions::AsShown(Address caller) const
{
    const bool gateway = caller.ident == Ident::Pstn || caller.ident == Ident::Pabx;
    // Before the own prefix is known there is nothing to compare with.
    if (gateway && caller.prefix == m_ownPrefix.value_or(caller.prefix))
        caller.prefix = 0;
    return caller;
}

template <typename Event, typename Message>
void RadioQuestions::Publish(Known<Message>& known, const Message& message, bool always)
{
    const bool changed = !known.fresh || known.value != message;
    known.value = message;
    known.fresh = true;
    if (changed || always)
        m_outbox.Tell(Event{message});
}

void RadioQuestions::Take(const PersonalityMessage& message)
{
    m_ownPrefix = message.radio.prefix;
    Publish<PersonalityReceived>(m_personality, message, TakeQuestion(RadioInfo::Personality));
}

void RadioQuestions::Take(const NumberingMessage& message)
{
    m_ownPrefix = message.radio.prefix;
    Publish<NumberingReceived>(m_numbering, message, TakeQuestion(RadioInfo::Numbering));
}

void RadioQuestions::Take(const SettingsMessage& message)
{
    Publish<SettingsReceived>(m_settings, message, TakeQuestion(RadioInfo::Settings));
}

void RadioQuestions::Take(const OperatingConditionMessage& message)
{
    // A radio may add this one to its network information.
    const bool addition = !IsOpen(RadioInfo::OperatingCondition) && IsOpen(RadioInfo::Network);
    const bool always = TakeQuestion(RadioInfo::OperatingCondition) && !addition;
    Publish<OperatingConditionReceived>(m_operatingCondition, message, always);
}

void RadioQuestions::Take(const NetworkInfoMessage& message)
{
    Publish<NetworkInfoReceived>(m_network, message, TakeQuestion(RadioInfo::Network));
}

} // namespace map27
