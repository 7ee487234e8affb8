#include "simulator/network/CallService.h"

#include "map27/codec/Causes.h"

namespace sim {

namespace {

// Bits of the call details from the radio.
constexpr std::uint8_t GroupBit = 0x20;
constexpr std::uint8_t DataBit = 0x10;
constexpr std::uint8_t OffHookNeededBit = 0x08;

constexpr Milliseconds EmergencyReaction{100};
constexpr Milliseconds AnswerTime{300}; // from off hook to connected

} // namespace

CallService::CallService(Air& air, std::function<void()> hookChanged,
                         std::function<void(map27::Address, Milliseconds)> calledBack)
    : m_air(air),
      m_hookChanged(std::move(hookChanged)),
      m_calledBack(std::move(calledBack)),
      m_attempt(air.schedule),
      m_ringing(air.schedule),
      m_talk(air.schedule),
      m_warning(air.schedule),
      m_limit(air.schedule)
{
}

void CallService::SetUp(const map27::CallMessage& message)
{
    // Custom services this radio does not have.
    if (message.details.Custom() != 0 || (message.details.Data() && !m_air.scenario.radio.dataCalls))
        return Refuse(map27::ProtocolReason::NotSupported);

    m_called = message.party;
    m_party = m_air.AcknowledgedParty(message.party);
    m_state = State::SettingUp;
    const Reaction reaction = m_air.scenario.fleet.ReactionOf(message.party, Service::Call);
    std::vector<Step> steps = m_air.scenario.fleet.StepsTo(message.party, Service::Call);
    if (message.emergency)
        steps.insert(steps.begin(),
                     {EmergencyReaction, StepOutcome::Pending, map27::Cause::EmergencyProceeding});
    m_attempt.Start(std::move(steps), [this, reaction](StepOutcome outcome, std::uint8_t cause) {
        TakeSetUpStep(outcome, cause, reaction);
    });
}

void CallService::TakeSetUpStep(StepOutcome outcome, std::uint8_t cause, const Reaction& reaction)
{
    if (outcome == StepOutcome::Failure)
        m_state = State::Idle;
    TellSetUp(AckOutcomeOf(outcome), cause);
    if (outcome == StepOutcome::Success)
        Connect(reaction.talk);
    if (cause == map27::Cause::NotedForCallBack && reaction.answerAfter > Milliseconds(0))
        m_calledBack(m_called.address, reaction.answerAfter);
}

void CallService::Connect(Milliseconds talk)
{
    const bool wasOffHook = OffHook();
    m_state = State::Connected;
    if (!wasOffHook)
        m_hookChanged();
    if (talk > Milliseconds(0))
        m_talk.Start(talk, [this] { HangUpByOther(); });
    StartLimit();
}

void CallService::StartLimit()
{
    map27::OperatingConditionMessage condition;
    condition.maxCallTimeCode = m_air.scenario.network.maxCallTimeCode;
    const auto seconds = condition.MaxCallSeconds();
    if (!seconds)
        return;
    const Milliseconds limit = std::chrono::seconds(*seconds);
    const Milliseconds warning = m_air.scenario.network.callWarning;
    if (warning > Milliseconds(0) && warning < limit)
        m_warning.Start(limit - warning,
                        [this] { TellReceive(map27::AckOutcome::Queued, map27::Cause::CallTimeNearlyOver); });
    m_limit.Start(limit, [this] {
        TellCleared(true, map27::ClearCause::ByRadio);
        End();
    });
}

void CallService::Control(const map27::RadioControlMessage& control)
{
    switch (m_state) {
    case State::Idle:
        // Hanging up twice does no harm.
        if (control.offHook || control.transmit)
            Refuse(map27::ProtocolReason::StateMismatch);
        else
            m_hookChanged();
        break;
    case State::SettingUp:
        if (control.offHook) {
            // To the console this is the end of its attempt, so it has to end.
            Drop();
            Refuse(map27::ProtocolReason::StateMismatch);
        } else {
            Clear();
        }
        break;
    case State::Ringing:
    case State::Answering:
        if (control.transmit)
            Refuse(map27::ProtocolReason::StateMismatch);
        else if (control.offHook)
            Answer();
        else
            End();
        break;
    case State::Connected:
        if (control.offHook) {
            m_transmitting = control.transmit;
            m_hookChanged();
        } else {
            End();
        }
        break;
    }
}

void CallService::Answer()
{
    if (m_state == State::Answering)
        return m_hookChanged();
    m_state = State::Answering;
    m_hookChanged();
    m_ringing.Start(AnswerTime, [this] {
        TellReceive(map27::AckOutcome::Positive, map27::Cause::Success);
        Connect(m_hangUpAfter);
    });
}

void CallService::Clear()
{
    if (m_state == State::Idle)
        return;
    const bool wasSettingUp = m_state == State::SettingUp;
    if (wasSettingUp) {
        Drop();
        TellSetUp(map27::AckOutcome::Negative, map27::Cause::Aborted);
    } else {
        End();
    }
}

std::string CallService::ComeIn(const CallAction& call)
{
    const bool free = m_state == State::Idle || m_state == State::SettingUp;
    if (!free && !call.emergency)
        return m_state == State::Connected ? "the radio is in a call" : "another call rings";

    if (!free)
        EndFirst();
    Drop();
    const map27::CallMessage message = IncomingMessage(call);
    if (std::string problem = m_air.console.Tell(message); !problem.empty())
        return problem;
    m_party = message.party;
    m_hangUpAfter = call.hangUpAfter;
    if (!call.rings) {
        Connect(call.hangUpAfter);
        return {};
    }
    m_state = State::Ringing;
    m_ringing.Start(m_air.scenario.network.ringing, [this] { HangUpByOther(); });
    return {};
}

// The network takes the present call away for an emergency.
void CallService::EndFirst()
{
    if (m_state == State::Connected)
        TellCleared(true, map27::ClearCause::EndedAbnormally);
    else
        TellReceive(map27::AckOutcome::Negative, map27::Cause::CallerGaveUp);
    End();
}

std::string CallService::HangUpByOther()
{
    switch (m_state) {
    case State::Idle:
        return "there is no call";
    case State::SettingUp:
        return "the call is not connected yet";
    case State::Ringing:
    case State::Answering:
        TellReceive(map27::AckOutcome::Negative, map27::Cause::CallerGaveUp);
        break;
    case State::Connected:
        TellCleared(false, map27::ClearCause::EndedNormally);
        break;
    }
    End();
    return {};
}

void CallService::LoseService()
{
    if (m_state == State::Idle)
        return;
    m_air.console.Tell(map27::ClearMessage{true, {}, map27::ClearCause::NoContact});
    Drop();
}

void CallService::Drop()
{
    m_attempt.Stop();
    m_ringing.Stop();
    m_talk.Stop();
    m_warning.Stop();
    m_limit.Stop();
    m_state = State::Idle;
    m_transmitting = false;
}

void CallService::End()
{
    Drop();
    m_hookChanged();
}

map27::CallMessage CallService::IncomingMessage(const CallAction& call) const
{
    map27::CallMessage message;
    message.emergency = call.emergency;
    message.party.address = call.from;
    if (call.scope == CallScope::SystemWide)
        message.party.address = {m_air.scenario.radio.address.prefix, map27::Ident::SystemWide};
    else if (call.scope == CallScope::Group && call.from.prefix != m_air.scenario.radio.address.prefix)
        message.party
            .address = {}; // a group call from another prefix does not name its caller (MAP27 v1.5, A6.5)
    if (call.scope != CallScope::Individual)
        message.details.octet |= GroupBit;
    if (call.rings)
        message.details.octet |= OffHookNeededBit;
    if (call.data)
        message.details.octet |= DataBit;
    return message;
}

void CallService::TellSetUp(map27::AckOutcome outcome, std::uint8_t cause)
{
    const map27::Party party = m_air.AcknowledgedParty(m_called, Service::Call, cause);
    m_air.console.Tell(map27::AcknowledgementMessage{outcome, map27::AckSubject::Setup, party, cause});
}

void CallService::TellReceive(map27::AckOutcome outcome, std::uint8_t cause)
{
    m_air.console.Tell(map27::AcknowledgementMessage{outcome, map27::AckSubject::Receive, m_party, cause});
}

void CallService::TellCleared(bool abnormal, std::uint8_t cause)
{
    m_air.console.Tell(map27::ClearMessage{abnormal, m_party.address, cause});
}

void CallService::Refuse(std::uint8_t reason)
{
    m_air.console.Tell(map27::ProtocolInfoMessage{reason});
}

} // namespace sim
