#pragma once

#include "map27/terminal/CancelledRequests.h"
#include "map27/terminal/Transaction.h"

#include <functional>

namespace map27 {

// A call that went on at the radio when the link to it was lost: the standard leaves open whether it outlives
// the link (MAP27 v1.5, 5.3.7), so the radio's first word on its condition tells what to do. A call that is
// still wanted becomes the terminal's again, one that should have ended is hung up, and in any case the
// transmitter is released, whose key nobody holds any more.
class HeldCall {
public:
    // False when it could not be handed to the link, which is reported then.
    using Transmit = std::function<bool(const ToRadio& message, TimePoint now)>;

    // `wait`: how long the radio's word is waited for at most; then what is still held is hung up unseen.
    HeldCall(Outbox& outbox, Transaction& transaction, CancelledRequests& cancelled, Milliseconds wait,
             Transmit transmit);

    // What the line adds to the wait.
    void SetDelay(Milliseconds delay) { m_delay = delay; }

    // A call is being hung up or given up; its end may be lost with the link.
    void HangingUp(Address party) { m_hangingUp = party; }
    // The radio has acknowledged everything.
    void HungUp() { m_hangingUp.reset(); }

    // The link is gone; before the transaction ends with it.
    void LinkIsGone();
    // Nobody wants what was lost any more.
    void GiveUpWish();
    // The link is up. True when the radio has to be asked for its condition first.
    bool LinkIsUp(TimePoint now);
    // The radio has told its condition.
    void Settle(const OperatingConditionMessage& condition, TimePoint now);
    void OnTime(TimePoint now);
    Deadline NextDeadline() const { return m_until; }

private:
    struct Lost {
        Address party;
        bool wanted; // nobody here has ended it
    };

    void Control(const RadioControlMessage& control, TimePoint now);

    Outbox& m_outbox;
    Transaction& m_transaction;
    CancelledRequests& m_cancelled;
    const Milliseconds m_wait;
    Milliseconds m_delay{0};
    Transmit m_transmit;
    std::optional<Address> m_hangingUp;
    std::optional<Lost> m_lost;
    std::optional<Address> m_setUp; // the call lost was being set up
    bool m_firstWord = false;       // still to come since the link is up
    Deadline m_until;               // for it
};

} // namespace map27
