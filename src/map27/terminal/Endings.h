#pragma once

#include "map27/terminal/CancelledRequests.h"
#include "map27/terminal/HeldCall.h"
#include "map27/terminal/Transaction.h"

#include <functional>

namespace map27 {

// How the terminal ends what is open: what it says to the radio, and what it goes on expecting of it.
class Endings {
public:
    // False when the message could not be handed to the link, which has been reported.
    using Transmit = std::function<bool(const Octets& message, TimePoint now)>;

    // The others must outlive it.
    Endings(Outbox& outbox, Transaction& transaction, CancelledRequests& cancelled, HeldCall& held,
            Transmit transmit)
        : m_outbox(outbox),
          m_transaction(transaction),
          m_cancelled(cancelled),
          m_held(held),
          m_transmit(std::move(transmit))
    {
    }

    // A call in whatever state; leaves a message alone.
    void HangUp(TimePoint now);
    // A message; leaves a call alone.
    void CancelMessage(TimePoint now);
    // A cancelled message has ended, or has taken too long: what waited for that goes out.
    void ReleaseHeldMessage(TimePoint now);

private:
    Outbox& m_outbox;
    Transaction& m_transaction;
    CancelledRequests& m_cancelled;
    HeldCall& m_held;
    Transmit m_transmit;
};

} // namespace map27
