#include "map27/terminal/Terminal.h"

#include "map27/codec/Causes.h"

#include <algorithm>
#include <utility>

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

OperationResult Terminal::RequestRadioInfo(unsigned kind, TimePoint now)
{
    if (kind > static_cast<unsigned>(RadioInfo::Network))
        return Finish(Refusal{.code = RefusalCode::UnknownQuestion}, now);
    return Finish(Ask(static_cast<RadioInfo>(kind), true, now), now);
}

TerminalOutput Terminal::Probe(TimePoint now)
{
    if (!m_link.IsReady() || OwnQuestionIsOpen() || !m_ownQuestions.empty())
        return TakeOutput(now);
    constexpr RadioInfo kinds[] = {RadioInfo::OperatingCondition, RadioInfo::Numbering, RadioInfo::Network,
                                   RadioInfo::Personality};
    const auto* answered = std::find_if(std::begin(kinds), std::end(kinds),
                                        [this](RadioInfo kind) { return HasAnswered(kind); });
    if (answered != std::end(kinds))
        Ask(*answered, false, now);
    else if (!RequestIsOpen())
        Ask(RadioInfo::OperatingCondition, false, now);
    return TakeOutput(now);
}

std::optional<Refusal> Terminal::Ask(RadioInfo kind, bool byOperator, TimePoint now)
{
    if (auto refusal = Transmit(InterrogationMessage{static_cast<std::uint8_t>(kind)}, now))
        return refusal;
    m_openQuestions.push_back({kind, byOperator, RequestIsOpen(), now + m_parameters.questionWait});
    return std::nullopt;
}

// One own question at a time, and none between a request and the radio's first word on it: so that a radio
// that knows no such question is not taken to refuse the request.
void Terminal::AskNext(TimePoint now)
{
    if (!m_link.IsReady() || m_ownQuestions.empty() || OwnQuestionIsOpen())
        return;
    if (RequestIsOpen() && !m_progressSeen)
        return;
    const RadioInfo kind = m_ownQuestions.front();
    if (!Ask(kind, false, now))
        m_ownQuestions.pop_front();
}

bool Terminal::OwnQuestionIsOpen() const
{
    return std::any_of(m_openQuestions.begin(), m_openQuestions.end(),
                       [](const Question& question) { return !question.byOperator; });
}

bool Terminal::IsOpen(RadioInfo kind) const
{
    return std::any_of(m_openQuestions.begin(), m_openQuestions.end(),
                       [kind](const Question& question) { return question.kind == kind; });
}

bool Terminal::TakeQuestion(RadioInfo kind)
{
    m_answeredOnThisLink[static_cast<std::size_t>(kind)] = true;
    const auto found = std::find_if(m_openQuestions.begin(), m_openQuestions.end(),
                                    [kind](const Question& question) { return question.kind == kind; });
    if (found == m_openQuestions.end())
        return true; // nobody asked
    const bool byOperator = found->byOperator;
    m_openQuestions.erase(found);
    return byOperator;
}

// The radio complains of something. Which of the open requests it means it does not say: a question that it
// has answered before on this link, or that was asked after a request on which it has said nothing yet, is
// not it.
bool Terminal::RefusesQuestion(const Signal& signal)
{
    const auto found =
        std::find_if(m_openQuestions.begin(), m_openQuestions.end(), [this](const Question& question) {
            if (HasAnswered(question.kind))
                return false;
            return !RequestIsOpen() || m_progressSeen || !question.duringTransaction;
        });
    if (found == m_openQuestions.end())
        return false;
    TellUnanswered(*found, CauseText(signal.type, signal.cause), signal.octets);
    m_openQuestions.erase(found);
    return true;
}

void Terminal::GiveUpQuestions(TimePoint now)
{
    const auto isOver = [now](const Question& question) { return question.giveUpAt <= now; };
    for (const Question& question : m_openQuestions) {
        if (isOver(question))
            TellUnanswered(question, "no answer");
    }
    std::erase_if(m_openQuestions, isOver);
}

void Terminal::TellUnanswered(const Question& question, const std::string& reason, const Octets& octets)
{
    ++m_counters.unanswered;
    const bool told = std::exchange(m_unansweredTold[static_cast<std::size_t>(question.kind)], true);
    if (question.byOperator || !told)
        TellReport(ReportKind::Unanswered, std::string(InfoText(question.kind)) + ": " + reason, octets);
}

void Terminal::ForgetQuestions()
{
    m_ownQuestions.clear();
    m_openQuestions.clear();
    m_answeredOnThisLink = {};
    m_unansweredTold = {};
}

// ---- answers ------------------------------------------------------------------------------------------

template <typename Event, typename Message>
void Terminal::Publish(Known<Message>& known, const Message& message, bool always)
{
    const bool changed = !known.fresh || known.value != message;
    known.value = message;
    known.fresh = true;
    if (changed || always)
        Tell(Event{message});
}

void Terminal::Handle(const PersonalityMessage& message, const Octets&, TimePoint)
{
    m_ownPrefix = message.radio.prefix;
    Publish<PersonalityReceived>(m_personality, message, TakeQuestion(RadioInfo::Personality));
}

void Terminal::Handle(const NumberingMessage& message, const Octets&, TimePoint)
{
    m_ownPrefix = message.radio.prefix;
    Publish<NumberingReceived>(m_numbering, message, TakeQuestion(RadioInfo::Numbering));
}

void Terminal::Handle(const SettingsMessage& message, const Octets&, TimePoint)
{
    Publish<SettingsReceived>(m_settings, message, TakeQuestion(RadioInfo::Settings));
}

void Terminal::Handle(const OperatingConditionMessage& message, const Octets&, TimePoint)
{
    // A radio may add this one to its network information.
    const bool addition = !IsOpen(RadioInfo::OperatingCondition) && IsOpen(RadioInfo::Network);
    const bool always = TakeQuestion(RadioInfo::OperatingCondition) && !addition;
    Publish<OperatingConditionReceived>(m_operatingCondition, message, always);
}

void Terminal::Handle(const NetworkInfoMessage& message, const Octets&, TimePoint)
{
    Publish<NetworkInfoReceived>(m_network, message, TakeQuestion(RadioInfo::Network));
}

} // namespace map27
