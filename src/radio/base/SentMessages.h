#pragma once

#include "core/eventlog/EventLog.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <deque>

// A status or text that left this console since the logon, and what is known of it.
struct SentMessage {
    enum class State {
        Sending,     // the radio has it
        Waiting,     // the network has taken it and tries; nobody has got it
        Delivered,   // the called radio has confirmed it
        GivenToMany, // the network has sent it to a group, of which nobody confirms
        Failed,      // certainly not delivered
        Unconfirmed, // it may have arrived
        GivenUp,     // taken back here; it may have arrived
    };

    QDateTime time;
    EventType kind = EventType::Status;
    QString to{};      // as the operator gave it
    QString message{}; // status code, or the text as it was sent
    QString shown{};   // in words
    bool eightBit = false;
    bool mayRepeat = true; // false: what it commands is repeated where it is seen, not from a list
    State state = State::Sending;
    QString reason{}; // of a state that needs one
    QString advice{}; // what can be done; empty: nothing

    bool IsOpen() const { return state == State::Sending || state == State::Waiting; }
};

// The messages of this shift, oldest first; the last one alone can be open. Who sends begins one, who hears
// the radio says how it goes on; what is said while none is open is about something else and is ignored.
class SentMessages : public QObject {
    Q_OBJECT

public:
    static constexpr std::size_t Most = 2000; // then the oldest is dropped

    std::size_t Size() const { return m_messages.size(); }
    const SentMessage& At(std::size_t index) const { return m_messages[index]; }

    void Begin(const SentMessage& message);
    // It goes to more than one radio: nobody will confirm it.
    void GoesToMany() { m_toMany = IsOpen(); }
    // Why it waits or ends, before it does. `certain`: it has not arrived.
    void Explain(const QString& reason, const QString& advice, bool certain);
    // The network has it and tries.
    void Wait();
    void Confirm();
    // The radio says no, or nothing more; as it was explained.
    void Fail();
    // It never left the console.
    void Refuse(const QString& reason);
    void GiveUp(const QString& advice);
    void Clear();

Q_SIGNALS:
    void Added();
    void Dropped(); // the oldest
    void Changed(std::size_t index);
    void Cleared();

private:
    bool IsOpen() const { return !m_messages.empty() && m_messages.back().IsOpen(); }
    void Move(SentMessage::State state, const QString& reason, const QString& advice);

    std::deque<SentMessage> m_messages;
    bool m_toMany = false;
    bool m_certain = false;
    QString m_reason; // of what comes next
    QString m_advice;
};
