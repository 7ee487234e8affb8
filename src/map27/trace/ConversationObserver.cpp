#include "map27/trace/ConversationObserver.h"

#include "map27/codec/Causes.h"

#include <iterator>
#include <utility>

namespace map27 {

namespace {

constexpr std::uint16_t HighestRadio = 8100; // above are gateways, and what the network itself is

// No radio, which has no prefix of its own.
bool IsGateway(const Party& called)
{
    return called.address.ident > HighestRadio || called.description.kind == DescriptionKind::PabxExtension;
}

// An answer names a gateway alone, without what is behind it.
bool IsCalled(Address named, const Party& called)
{
    if (named == called.address)
        return true;
    if (called.description.kind == DescriptionKind::PabxExtension)
        return named.ident == Ident::Pabx;
    const std::uint16_t ident = called.address.ident;
    const bool isStored = ident >= Ident::FirstStoredPstn && ident <= Ident::LastStoredPstn;
    return IsGateway(called) && (named.ident == ident || (isStored && named.ident == Ident::Pstn));
}

// To a question by its reason.
std::uint8_t AnswerTo(std::uint8_t reason)
{
    constexpr std::uint8_t Answers[] = {Type::Personality, Type::Numbering, Type::Settings,
                                        Type::OperatingCondition, Type::NetworkInfo};
    return reason < std::size(Answers) ? Answers[reason] : 0;
}

} // namespace

Findings ConversationObserver::Take(OctetSpan message, Direction direction)
{
    if (direction == Direction::ToRadio) {
        const auto decoded = DecodeToRadio(message);
        if (const auto* known = std::get_if<ToRadio>(&decoded))
            TakeToRadio(*known);
    } else {
        if (!message.empty())
            m_awaited.erase(message[0]);
        const auto decoded = DecodeFromRadio(message);
        if (const auto* known = std::get_if<FromRadio>(&decoded))
            TakeFromRadio(*known);
    }
    return std::exchange(m_findings, {});
}

void ConversationObserver::TakeSaid(OctetSpan message)
{
    const auto decoded = DecodeFromRadio(message);
    if (const auto* known = std::get_if<FromRadio>(&decoded))
        TakeOwnNumber(*known);
}

void ConversationObserver::Forget()
{
    m_request.reset();
    m_incoming = Incoming::None;
    m_inCall = false;
    m_wasCancelled = false;
    m_awaited.clear();
}

void ConversationObserver::TakeToRadio(const ToRadio& message)
{
    if (const auto* status = std::get_if<StatusMessage>(&message)) {
        Begin(AckSubject::Message, status->party);
    } else if (const auto* data = std::get_if<ShortDataMessage>(&message)) {
        Begin(AckSubject::Message, data->party);
    } else if (const auto* call = std::get_if<CallMessage>(&message)) {
        Begin(AckSubject::Setup, call->party);
    } else if (std::holds_alternative<ClearMessage>(message)) {
        if (m_request)
            m_request->isCancelled = true;
        GiveUpCall();
    } else if (const auto* control = std::get_if<RadioControlMessage>(&message)) {
        if (!control->offHook)
            GiveUpCall();
    } else if (const auto* question = std::get_if<InterrogationMessage>(&message)) {
        m_awaited.insert(AnswerTo(question->reason));
    } else if (std::holds_alternative<SettingsMessage>(message)) {
        m_awaited.insert(Type::Settings);
    } else if (std::holds_alternative<VolumeMessage>(message) ||
               std::holds_alternative<DialledStringMessage>(message)) {
        m_awaited.insert(std::uint8_t{0});
    }
}

void ConversationObserver::GiveUpCall()
{
    if (m_inCall || m_incoming != Incoming::None)
        m_incoming = Incoming::GivenUp;
    m_inCall = false;
}

void ConversationObserver::Begin(AckSubject subject, const Party& called)
{
    const bool isOpen = m_request && !m_request->isCancelled && !m_request->mayBeRefused;
    if (isOpen || (m_inCall && subject == AckSubject::Message))
        m_findings.push_back({Finding::Weight::Breach, "second-request", Direction::ToRadio,
                              "A request while another one, or a call, is in progress."});
    m_request = Request{subject, called};
    m_wasCancelled = false;
}

void ConversationObserver::TakeFromRadio(const FromRadio& message)
{
    if (const auto* answer = std::get_if<AcknowledgementMessage>(&message)) {
        if (answer->subject == AckSubject::Receive)
            TakeReceiveProgress(*answer);
        else if (answer->subject != AckSubject::Diversion)
            TakeAnswer(*answer);
    } else if (std::holds_alternative<ClearMessage>(message)) {
        const bool wasCancelled = m_request && m_request->isCancelled;
        const bool wasGivenUp = m_incoming == Incoming::GivenUp;
        Forget();
        m_wasCancelled = wasCancelled;
        m_incoming = wasGivenUp ? Incoming::GivenUp : Incoming::None;
    } else if (const auto* call = std::get_if<CallMessage>(&message)) {
        m_request.reset();
        const Address caller = call->party.address;
        if (call->details.Group() && m_ownPrefix && !caller.IsDummy() && caller.prefix != *m_ownPrefix &&
            !IsGateway(call->party))
            m_findings.push_back(
                {Finding::Weight::Breach, "named-group", Direction::FromRadio,
                 "A call to a group names a radio of another prefix; such a call names nobody."});
        m_incoming = call->details.OffHookNeeded() ? Incoming::Ringing : Incoming::Connected;
        m_inCall = m_incoming == Incoming::Connected;
    } else if (const auto* info = std::get_if<ProtocolInfoMessage>(&message)) {
        TakeProtocolInfo(info->reason);
    } else {
        TakeOwnNumber(message);
    }
}

void ConversationObserver::TakeOwnNumber(const FromRadio& message)
{
    if (const auto* personality = std::get_if<PersonalityMessage>(&message))
        m_ownPrefix = personality->radio.prefix;
    else if (const auto* numbering = std::get_if<NumberingMessage>(&message))
        m_ownPrefix = numbering->radio.prefix;
}

// It does not say what it answers.
void ConversationObserver::TakeProtocolInfo(std::uint8_t reason)
{
    const bool isAnswer = reason >= ProtocolReason::Unrecognised && reason <= ProtocolReason::BusyLocally;
    if (!isAnswer)
        return;
    if (m_awaited.empty())
        return m_request.reset();
    m_awaited.clear();
    if (m_request)
        m_request->mayBeRefused = true;
}

void ConversationObserver::TakeAnswer(const AcknowledgementMessage& answer)
{
    if (!m_request || m_request->subject != answer.subject) {
        // A radio used locally may say that it has a call.
        const bool isLocalCall = answer.subject == AckSubject::Setup && !m_request;
        const bool isOfCancelled =
            m_wasCancelled && answer.outcome == AckOutcome::Negative && answer.cause == Cause::Aborted;
        m_findings.push_back(
            {isLocalCall || isOfCancelled ? Finding::Weight::Remark : Finding::Weight::Breach,
             "unasked-answer", Direction::FromRadio, "An answer to something that was not asked for."});
    } else if (!m_request->isCancelled) {
        JudgeParty(answer.party);
    }
    if (answer.outcome == AckOutcome::Queued)
        return;
    m_inCall = m_inCall || (answer.subject == AckSubject::Setup && answer.outcome == AckOutcome::Positive);
    m_request.reset();
}

void ConversationObserver::TakeReceiveProgress(const AcknowledgementMessage& progress)
{
    const auto add = [this](Finding::Weight weight, std::string_view kind, std::string text) {
        m_findings.push_back({weight, kind, Direction::FromRadio, std::move(text)});
    };
    const bool isNoted =
        progress.outcome == AckOutcome::Negative && progress.cause == Cause::NotedForCallBack;
    if (m_incoming == Incoming::None && !m_inCall && !isNoted)
        add(Finding::Weight::Breach, "unasked-answer", "Progress of a call that did not come in.");
    if (progress.outcome == AckOutcome::Positive && m_incoming == Incoming::Connected)
        add(Finding::Weight::Remark, "connected-twice", "The call came in connected already.");
    if (m_incoming == Incoming::GivenUp) {
        m_incoming = Incoming::None;
    } else if (progress.outcome == AckOutcome::Positive) {
        m_incoming = Incoming::Connected;
        m_inCall = true;
    } else if (progress.outcome == AckOutcome::Negative) {
        m_incoming = Incoming::None;
        m_inCall = false;
    }
}

// Across prefixes it is nobody, behind a gateway it has our own prefix.
void ConversationObserver::JudgeParty(const Party& party)
{
    const Party& called = m_request->called;
    if (called.address.ident == 0)
        return; // dialled by the user: the radio knows who it is
    const bool isOwn = m_ownPrefix && called.address.prefix == *m_ownPrefix;
    if (party.address.IsDummy()) {
        if (isOwn && !IsGateway(called))
            m_findings.push_back({Finding::Weight::Breach, "unnamed-answer", Direction::FromRadio,
                                  "The answer does not name the called radio, which has our own prefix."});
        return;
    }
    if (!IsCalled(party.address, called))
        m_findings.push_back({Finding::Weight::Breach, "other-answer", Direction::FromRadio,
                              "The answer names " + ToText(party.address) + ", not " +
                                  ToText(called.address) + ", which was called."});
    else if (m_ownPrefix && !isOwn && !IsGateway(called))
        m_findings.push_back({Finding::Weight::Breach, "named-answer", Direction::FromRadio,
                              "The answer names a radio of another prefix; such an answer names nobody."});
}

} // namespace map27
