#pragma once

#include "map27/terminal/Outbox.h"
#include "map27/terminal/TerminalTable.h"

namespace map27 {

// Whether the radio owes an answer to a request that it could complain about.
enum class OpenRequest {
    None,
    Unanswered, // it has said nothing on it yet
    TakenUp,
};

// A terminal's one message or call: where it stands, and what of the radio's words the owner is told. The
// table of TerminalTable.h decides.
class Transaction {
public:
    explicit Transaction(Outbox& outbox) : m_outbox(outbox) {}

    TerminalState State() const { return m_state; }
    // As on the wire.
    Address Party() const { return m_party; }
    OpenRequest Request() const;

    // A message or call set-up goes out. `held`: a message that still waits to be transmitted.
    void Begin(TerminalState state, Address party, std::optional<Octets> held = {});
    // Of the caller, after IncomingConnected or IncomingRinging.
    void SetParty(Address party) { m_party = party; }
    // The call that rings was answered.
    void SetAnswered() { m_answered = true; }
    void SetTransmitting(bool on) { m_transmitting = on; }
    bool IsTransmitting() const { return m_transmitting; }
    bool IsAnswered() const { return m_answered; }
    // Over, without an event.
    void End();

    void Apply(RadioInput input, const RadioSignal& signal);

    bool IsHeld() const { return m_held.has_value(); }
    // The message that was held, which is on its way now.
    std::optional<Octets> Release() { return std::exchange(m_held, std::nullopt); }

private:
    void Act(TerminalAction action, const RadioSignal& signal);
    void Forget();

    Outbox& m_outbox;
    TerminalState m_state = TerminalState::Idle;
    Address m_party;
    bool m_progressSeen = false; // the radio has taken the open request up
    bool m_answered = false;
    bool m_transmitting = false;
    std::optional<Octets> m_held;
};

} // namespace map27
