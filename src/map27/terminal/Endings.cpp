#include "map27/terminal/Endings.h"

#include "map27/codec/Causes.h"

namespace map27 {

void Endings::HangUp(TimePoint now)
{
    const Address party = m_transaction.Party();
    switch (m_transaction.State()) {
    case TerminalState::Idle:
    case TerminalState::MessageWait:
        return;
    case TerminalState::IncallWait:
        m_transmit(EncodeToRadio(RadioControlMessage{}), now);
        m_cancelled.AddControl(now);
        break;
    case TerminalState::OutcallWait:
        m_transmit(EncodeToRadio(ClearMessage{true, party, ClearCause::CancelAttempt}), now);
        m_cancelled.AddCall(party, now);
        break;
    case TerminalState::Active:
        m_transmit(EncodeToRadio(ClearMessage{false, party, ClearCause::EndCall}), now);
        m_cancelled.AddCall(party, now);
        break;
    }
    m_held.HangingUp(party);
    m_transaction.End();
}

void Endings::CancelMessage(TimePoint now)
{
    if (m_transaction.State() != TerminalState::MessageWait)
        return;
    // A message that was never sent leaves no trace; the end that it waited for is still to come.
    if (!m_transaction.IsHeld()) {
        const ClearMessage cancel{true, m_transaction.Party(), ClearCause::CancelAttempt};
        m_transmit(EncodeToRadio(cancel), now);
        m_cancelled.AddMessage(now);
    }
    m_transaction.End();
}

void Endings::ReleaseHeldMessage(TimePoint now)
{
    m_cancelled.EndMessage();
    const auto octets = m_transaction.Release();
    if (!octets || m_transmit(*octets, now))
        return;
    m_outbox.Tell(MessageProgress{Type::MessageNegative, 0, Type::MessageNegative, m_transaction.Party()});
    m_transaction.End();
}

} // namespace map27
