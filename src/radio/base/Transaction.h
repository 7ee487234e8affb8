#pragma once

#include "core/eventlog/EventLog.h"

#include <QString>
#include <QtGlobal>

// What the radio is doing for us. Values 2 and 7 are never used.
enum class TransactionKind : qint16 {
    None = 0,
    CallSetUp = 1,
    CallConnected = 3,
    CallRinging = 4,
    Status = 5,
    Text = 6,
    Regroup = 8,
    GroupName = 9,
};

// The outgoing message or call whose log record will be written when the radio confirms it.
struct OutgoingMessage {
    bool MessagePending = false;
    EventType LastSentKind = EventType::Status;
    QString LastDestination;      // as the caller gave it, before lookup
    QString LastMessageText;      // status code, text, or description of the call
    bool LastInEightBits = false; // of a text
    bool LastMayRepeat = true;    // false: what it commands is repeated where it is seen
};

// How a call is shown.
struct CallLook {
    QString caption;
    bool emergency = false;
    bool data = false; // nobody talks
};

// The one radio transaction in progress. The facade begins it, the agent moves it on and ends it.
class Transaction {
public:
    TransactionKind Kind() const { return m_kind; }
    bool IsOpen() const { return m_kind != TransactionKind::None; }
    // Counts those that were begun; this is the last one's.
    unsigned Number() const { return m_number; }

    void Begin(TransactionKind kind, const QString& with)
    {
        m_kind = kind;
        party = with;
        ++m_number;
    }
    // On to its next state; or to a transaction that the radio began, which has no number of its own.
    void MoveTo(TransactionKind kind) { m_kind = kind; }
    // Afterwards nothing is in progress or pending.
    void Drop()
    {
        m_kind = TransactionKind::None;
        outgoing.MessagePending = false;
    }

    OutgoingMessage outgoing;
    QString party; // whom it is with, as shown
    CallLook look; // of a call

private:
    TransactionKind m_kind = TransactionKind::None;
    unsigned m_number = 0;
};
