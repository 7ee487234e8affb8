#include "map27/terminal/Terminal.h"

#include "map27/codec/Causes.h"

namespace map27 {

namespace {

std::string Describe(std::uint8_t type, std::uint8_t cause)
{
    return TypeName(type, Direction::FromRadio) + " (" + CauseText(type, cause) + ")";
}

std::optional<RadioInput> InputOf(const AcknowledgementMessage& message)
{
    switch (message.TypeOctet()) {
    case Type::MessagePositive:
        return RadioInput::MessageDone;
    case Type::MessageQueued:
        return RadioInput::MessageQueued;
    case Type::MessageNegative:
        return RadioInput::MessageFailed;
    case Type::SetupPositive:
        return RadioInput::CallConnected;
    case Type::SetupQueued:
        return RadioInput::CallQueued;
    case Type::SetupNegative:
        return RadioInput::CallFailed;
    case Type::ReceivePositive:
        return RadioInput::AnswerConnected;
    case Type::ReceiveWarning:
        return RadioInput::AnswerWarning;
    case Type::ReceiveNegative:
        return message.cause == Cause::NotedForCallBack ? RadioInput::CallBackNoted
                                                        : RadioInput::AnswerFailed;
    default:
        return std::nullopt;
    }
}

bool IsPast(const Deadline& deadline, TimePoint now)
{
    return !deadline || *deadline < now;
}

} // namespace

void Terminal::OnMessage(const Octets& octets, TimePoint now)
{
    ++m_counters.messagesReceived;
    const auto decoded = DecodeFromRadio(octets);
    if (const auto* error = std::get_if<DecodeError>(&decoded)) {
        ++m_counters.undecodable;
        TellReport(ReportKind::Undecodable, DecodeErrorText(*error), octets);
        return;
    }
    std::visit([&](const auto& message) { Handle(message, octets, now); }, std::get<FromRadio>(decoded));
}

// Escape, test result, modem data.
template <typename Unused> void Terminal::Handle(const Unused&, const Octets& octets, TimePoint)
{
    ++m_counters.notUsed;
    TellReport(ReportKind::NotUsed, TypeName(octets.front(), Direction::FromRadio), octets);
}

void Terminal::Handle(const StatusMessage& message, const Octets& octets, TimePoint)
{
    if (message.status > HighestStatus) {
        ++m_counters.statusOutOfRange;
        TellReport(ReportKind::StatusOutOfRange,
                   "status " + std::to_string(message.status) + " from " + ToText(message.party.address),
                   octets);
        return;
    }
    Tell(StatusReceived{message.party.address, message.status});
}

void Terminal::Handle(const ShortDataMessage& message, const Octets& octets, TimePoint)
{
    if (!IsKnown(message.data.coding)) {
        ++m_counters.unknownCodings;
        TellReport(ReportKind::UnknownCoding,
                   "coding " + std::to_string(static_cast<int>(message.data.coding)), octets);
    }
    Tell(TextReceived{message.party.address, DecodeText(message.data), message.data.coding});
}

void Terminal::Handle(const CallMessage& message, const Octets& octets, TimePoint)
{
    const std::uint8_t type = message.emergency ? Type::EmergencyCall : Type::Call;
    const auto input =
        message.details.OffHookNeeded() ? RadioInput::IncomingRinging : RadioInput::IncomingConnected;
    Apply(input, {type, 0, octets});
    m_party = message.party.address;
    Tell(IncomingCall{type, message.details.octet, AsShown(message.party.address)});
}

void Terminal::Handle(const ClearMessage& message, const Octets& octets, TimePoint now)
{
    const Signal signal{message.abnormal ? Type::Cancel : Type::Disconnect, message.cause, octets};
    if (AnswersCancelledMessage(signal, now))
        return;
    if (!message.abnormal && m_state == TerminalState::OutcallWait && !IsPast(m_cancelled.call, now)) {
        // A call that is not connected yet does not end normally: this is the one hung up just before.
        m_cancelled.call.reset();
        TellReport(ReportKind::CancelConfirmed, Describe(signal.type, signal.cause), octets);
        return;
    }
    RadioInput input = RadioInput::ClearedNormal;
    if (message.abnormal)
        input = message.cause == ClearCause::EndedAbnormally ? RadioInput::CallEndedAbnormal
                                                             : RadioInput::ClearedAbnormal;
    Apply(input, signal);
}

void Terminal::Handle(const AcknowledgementMessage& message, const Octets& octets, TimePoint now)
{
    const Signal signal{message.TypeOctet(), message.cause, octets};
    const auto input = InputOf(message);
    if (!input) {
        ++m_counters.notUsed;
        TellReport(ReportKind::NotUsed, Describe(signal.type, signal.cause), octets);
        return;
    }
    if (AnswersCancelledMessage(signal, now))
        return;
    if (AnswersCancelledCall(message, now)) {
        ++m_counters.late;
        TellReport(ReportKind::Late, Describe(signal.type, signal.cause), octets);
        return;
    }
    Apply(*input, signal);
}

void Terminal::Handle(const ProtocolInfoMessage& message, const Octets& octets, TimePoint now)
{
    const Signal signal{Type::ProtocolInfo, message.reason, octets};
    const bool refuses =
        message.reason >= ProtocolReason::Unrecognised && message.reason <= ProtocolReason::BusyLocally;
    if (refuses && (AnswersCancelledMessage(signal, now) || RefusesQuestion(signal)))
        return;
    if (message.reason == ProtocolReason::StateMismatch && !IsPast(m_cancelled.mismatch, now)) {
        m_cancelled.mismatch.reset();
        TellReport(ReportKind::CancelConfirmed, Describe(signal.type, signal.cause), octets);
        return;
    }
    TellReport(ReportKind::ProtocolInfo, Describe(signal.type, signal.cause), octets);
    if (refuses && RequestIsOpen())
        Apply(RadioInput::Refused, signal);
}

// ---- the machine --------------------------------------------------------------------------------------

void Terminal::Apply(RadioInput input, const Signal& signal)
{
    const Transition transition = Decide(m_state, input);
    // The events name the transaction that was open, so they come before it is forgotten.
    Act(transition.action, signal);
    if (input == RadioInput::MessageQueued || input == RadioInput::CallQueued)
        m_progressSeen = true;
    const bool callTakesOver = input == RadioInput::IncomingConnected || input == RadioInput::IncomingRinging;
    if (transition.next == TerminalState::Idle || callTakesOver)
        EndTransaction();
    m_state = transition.next;
}

void Terminal::Act(TerminalAction action, const Signal& signal)
{
    const std::uint8_t cause = signal.cause;
    switch (action) {
    case TerminalAction::ReportLate:
        ++m_counters.late;
        TellReport(ReportKind::Late, Describe(signal.type, cause), signal.octets);
        break;
    case TerminalAction::TellMessage:
        Tell(MessageProgress{signal.type, cause, signal.type, m_party});
        break;
    case TerminalAction::TellCall:
        Tell(OutgoingCallProgress{signal.type, cause, signal.type});
        break;
    case TerminalAction::TellAnswer:
        Tell(AnswerProgress{signal.type, cause, signal.type});
        break;
    case TerminalAction::FailMessage:
        Tell(MessageProgress{Type::MessageNegative, cause, signal.type, m_party});
        break;
    case TerminalAction::FailCall:
        Tell(OutgoingCallProgress{Type::SetupNegative, cause, signal.type});
        break;
    case TerminalAction::FailAnswer:
        Tell(AnswerProgress{Type::ReceiveNegative, cause, signal.type});
        break;
    case TerminalAction::TellCleared:
        Tell(TransactionCleared{ClearedBy::Radio, signal.type, cause});
        break;
    case TerminalAction::TellClearedFirst:
        Tell(TransactionCleared{signal.type == 0 ? ClearedBy::LinkLoss : ClearedBy::IncomingCall, signal.type,
                                0});
        break;
    case TerminalAction::ReportRefusal: // reported by the caller already
    case TerminalAction::Quietly:
    case TerminalAction::Nothing:
        break;
    }
}

// Whether the radio still owes an answer to a request of ours that it could complain about.
bool Terminal::RequestIsOpen() const
{
    if (m_state == TerminalState::IncallWait)
        return m_answered;
    if (m_state == TerminalState::MessageWait)
        return !m_heldMessage;
    return m_state == TerminalState::OutcallWait;
}

// After a cancel the next message waits for the cancelled one's end, and whatever comes until then is about
// that one.
bool Terminal::AnswersCancelledMessage(const Signal& signal, TimePoint now)
{
    if (!m_cancelled.messageEnd)
        return false;
    const bool nothingElseOpen = m_state == TerminalState::Idle || m_heldMessage.has_value();
    switch (signal.type) {
    case Type::MessageQueued:
        ++m_counters.late;
        TellReport(ReportKind::Late, Describe(signal.type, signal.cause), signal.octets);
        return true;
    case Type::MessagePositive:
        break;
    case Type::MessageNegative:
        if (signal.cause == Cause::Aborted)
            m_cancelled.mismatch.reset();
        break;
    case Type::Cancel:
        if (!nothingElseOpen && signal.cause != ClearCause::Unspecified)
            return false;
        m_cancelled.mismatch.reset();
        break;
    case Type::ProtocolInfo:
        if (!nothingElseOpen || signal.cause != ProtocolReason::StateMismatch)
            return false;
        m_cancelled.mismatch.reset();
        break;
    default:
        return false;
    }
    TellReport(ReportKind::CancelConfirmed, Describe(signal.type, signal.cause), signal.octets);
    ReleaseHeldMessage(now);
    return true;
}

// Progress of the call that was given up just before, not of the one that is being set up now.
bool Terminal::AnswersCancelledCall(const AcknowledgementMessage& message, TimePoint now) const
{
    const Address about = message.party.address;
    return message.subject == AckSubject::Setup && m_state == TerminalState::OutcallWait &&
           !IsPast(m_cancelled.call, now) && !about.IsDummy() && about == m_cancelled.calledParty &&
           about != m_party;
}

Address Terminal::AsShown(Address caller) const
{
    const bool gateway = caller.ident == Ident::Pstn || caller.ident == Ident::Pabx;
    // Such calls carry the radio's own prefix; before it is known there is nothing to compare with.
    if (gateway && caller.prefix == m_ownPrefix.value_or(caller.prefix))
        caller.prefix = 0;
    return caller;
}

} // namespace map27
