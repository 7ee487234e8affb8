#include "map27/terminal/HeldCall.h"

#include "map27/codec/Causes.h"

namespace map27 {

namespace {

constexpr RadioControlMessage OnHook{};

} // namespace

HeldCall::HeldCall(Outbox& outbox, Transaction& transaction, CancelledRequests& cancelled, Milliseconds wait,
                   Transmit transmit)
    : m_outbox(outbox),
      m_transaction(transaction),
      m_cancelled(cancelled),
      m_wait(wait),
      m_transmit(std::move(transmit))
{
}

void HeldCall::LinkIsGone()
{
    m_firstWord = false;
    m_until.reset();
    if (const auto ended = std::exchange(m_hangingUp, std::nullopt))
        m_lost = Lost{*ended, false};
    const TerminalState state = m_transaction.State();
    const Address party = m_transaction.Party();
    if (state == TerminalState::Active || (state == TerminalState::IncallWait && m_transaction.IsAnswered()))
        m_lost = Lost{party, true};
    if (state == TerminalState::OutcallWait) {
        m_setUp = party;
        m_lost = Lost{party, false};
    }
}

void HeldCall::GiveUpWish()
{
    if (m_lost)
        m_lost->wanted = false;
}

bool HeldCall::LinkIsUp(TimePoint now)
{
    m_firstWord = true;
    if (m_lost)
        m_until = now + m_wait + m_delay;
    if (const auto party = std::exchange(m_setUp, std::nullopt)) {
        m_transmit(ClearMessage{true, *party, ClearCause::CancelAttempt}, now);
        m_cancelled.AddCall(*party, now);
    }
    return m_lost.has_value();
}

void HeldCall::Settle(const OperatingConditionMessage& condition, TimePoint now)
{
    if (!std::exchange(m_firstWord, false))
        return;
    m_until.reset();
    const auto lost = std::exchange(m_lost, std::nullopt);
    const TerminalState state = m_transaction.State();
    const bool noCall = state == TerminalState::Idle || state == TerminalState::MessageWait;
    if (!noCall || (!condition.offHook && !condition.transmitting))
        return;
    if (lost && !lost->wanted)
        return Control(OnHook, now);
    if (lost && state == TerminalState::Idle && condition.offHook) {
        m_transaction.Begin(TerminalState::Active, lost->party);
        m_outbox.Tell(CallTakenUp{lost->party});
    }
    if (condition.transmitting)
        Control({.offHook = condition.offHook, .transmit = false}, now);
}

void HeldCall::OnTime(TimePoint now)
{
    if (!m_until || *m_until > now)
        return;
    m_until.reset();
    m_firstWord = false;
    m_lost.reset();
    if (m_transaction.State() == TerminalState::Idle)
        Control(OnHook, now);
}

// Of the terminal's own making, so it is reported; "not possible in the present state" would answer it.
void HeldCall::Control(const RadioControlMessage& control, TimePoint now)
{
    if (!m_transmit(control, now))
        return;
    m_outbox.Report(ReportKind::CallHungUp,
                    control.offHook ? "transmitter released" : "hung up after the link was lost",
                    EncodeToRadio(control));
    m_cancelled.AddControl(now);
}

} // namespace map27
