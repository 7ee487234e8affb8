#include "map27/terminal/Transaction.h"

namespace map27 {

OpenRequest Transaction::Request() const
{
    const bool open = m_state == TerminalState::IncallWait    ? m_answered
                      : m_state == TerminalState::MessageWait ? !m_held
                                                              : m_state == TerminalState::OutcallWait;
    if (!open)
        return OpenRequest::None;
    return m_progressSeen ? OpenRequest::TakenUp : OpenRequest::Unanswered;
}

void Transaction::Begin(TerminalState state, Address party, std::optional<Octets> held)
{
    m_state = state;
    m_party = party;
    m_held = std::move(held);
}

void Transaction::End()
{
    m_state = TerminalState::Idle;
    Forget();
}

void Transaction::Apply(RadioInput input, const RadioSignal& signal)
{
    const Transition transition = Decide(m_state, input);
    // The events name the transaction that was open, so they come before it is forgotten.
    Act(transition.action, signal);
    if (input == RadioInput::MessageQueued || input == RadioInput::CallQueued)
        m_progressSeen = true;
    const bool callTakesOver = input == RadioInput::IncomingConnected || input == RadioInput::IncomingRinging;
    if (transition.next == TerminalState::Idle || callTakesOver)
        Forget();
    m_state = transition.next;
}

void Transaction::Act(TerminalAction action, const RadioSignal& signal)
{
    const std::uint8_t cause = signal.cause;
    switch (action) {
    case TerminalAction::ReportLate:
        m_outbox.ReportLate(signal);
        break;
    case TerminalAction::TellMessage:
        m_outbox.Tell(MessageProgress{signal.type, cause, signal.type, m_party, signal.octets});
        break;
    case TerminalAction::TellCall:
        m_outbox.Tell(OutgoingCallProgress{signal.type, cause, signal.type, signal.octets});
        break;
    case TerminalAction::TellAnswer:
        m_outbox.Tell(AnswerProgress{signal.type, cause, signal.type, signal.octets});
        break;
    case TerminalAction::FailMessage:
        m_outbox.Tell(MessageProgress{Type::MessageNegative, cause, signal.type, m_party, signal.octets});
        break;
    case TerminalAction::FailCall:
        m_outbox.Tell(OutgoingCallProgress{Type::SetupNegative, cause, signal.type, signal.octets});
        break;
    case TerminalAction::FailAnswer:
        m_outbox.Tell(AnswerProgress{Type::ReceiveNegative, cause, signal.type, signal.octets});
        break;
    case TerminalAction::TellCleared:
        m_outbox.Tell(TransactionCleared{ClearedBy::Radio, signal.type, cause, signal.octets});
        break;
    case TerminalAction::TellClearedFirst:
        m_outbox.Tell(TransactionCleared{signal.type == 0 ? ClearedBy::LinkLoss : ClearedBy::IncomingCall,
                                         signal.type, 0, signal.octets});
        break;
    case TerminalAction::ReportRefusal: // reported by the caller already
    case TerminalAction::Quietly:
    case TerminalAction::Nothing:
        break;
    }
}

void Transaction::Forget()
{
    m_party = {};
    m_progressSeen = false;
    m_answered = false;
    m_transmitting = false;
    m_held.reset();
}

} // namespace map27
