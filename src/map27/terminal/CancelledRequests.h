#pragma once

#include "map27/terminal/Outbox.h"

namespace map27 {

// What was cancelled a moment ago, and whose answers may still be under way: they must not be taken for those
// of the next request.
class CancelledRequests {
public:
    // `wait`: how long such answers are expected at most.
    CancelledRequests(Outbox& outbox, Milliseconds wait) : m_outbox(outbox), m_wait(wait) {}

    // What the line adds to that.
    void SetDelay(Milliseconds delay) { m_delay = delay; }

    void AddMessage(TimePoint now);
    // A call that was being set up, or was hung up.
    void AddCall(Address party, TimePoint now);
    // The radio was put on hook, or its transmitter released, whatever it was doing.
    void AddControl(TimePoint now) { m_mismatch = now + m_wait + m_delay; }
    void Forget();

    // Until then the next message waits for the end of the cancelled one; empty: none does.
    Deadline MessageEnd() const { return m_messageEnd; }
    void EndMessage() { m_messageEnd.reset(); }

    // Whether what the radio said is about the cancelled message, and is reported as such; its end is
    // EndOfMessage, after which the next one may go. `nothingElseOpen`: no other request has been transmitted
    // since.
    enum class Answer { No, Progress, EndOfMessage };
    Answer TakeForMessage(const RadioSignal& signal, bool nothingElseOpen);
    // Likewise for progress of the cancelled call, while another one to `party` is being set up.
    bool TakeForCall(const AcknowledgementMessage& message, const RadioSignal& signal, Address party,
                     TimePoint now);
    // Likewise for a normal end while a call is being set up: one that is not connected yet does not end
    // normally, so this is the one that was hung up.
    bool TakeCallEnd(const RadioSignal& signal, TimePoint now);
    // Likewise for "not possible in the present state": the radio had ended it already.
    bool TakeMismatch(const RadioSignal& signal, TimePoint now);

private:
    Outbox& m_outbox;
    Milliseconds m_wait;
    Milliseconds m_delay{0};
    Deadline m_messageEnd; // C0, E0 or A6 of a message is still to come
    Deadline m_mismatch;   // "state mismatch" would answer our cancelling
    Deadline m_call;       // progress of this call set-up, or the confirmation of its end, may come
    Address m_calledParty;
};

} // namespace map27
