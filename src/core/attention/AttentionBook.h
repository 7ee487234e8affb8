#pragma once

#include "core/eventlog/RecordLine.h"
#include "dao/tables/AttentionTable.h"

#include <QList>
#include <QObject>
#include <QString>
#include <vector>

class EventLog;
struct Clock;
struct IDbSession;
struct IStringSource;

// What waits for a person at all consoles of the database, as it is known here: what the database held when
// it was read last, and what this console has not stored yet. Acts are stored by the event log, in turn with
// its records; nothing here waits or raises. After a logoff it keeps what it knew. On the window's thread.
class AttentionBook : public QObject {
    Q_OBJECT

public:
    using Entry = dao::AttentionRecord;

    // All must outlive it.
    AttentionBook(IDbSession& session, EventLog& eventLog, const Clock& clock, const IStringSource& strings);

    // What nobody has taken comes first; then emergencies before missed calls, calls for a call-back and
    // messages that failed; then who has waited longest.
    const std::vector<Entry>& Entries() const { return m_entries; }
    // Null when it is not open any more.
    const Entry* Find(const QString& id) const;

    // Somebody was heard. Of the entry caller, kind, what, callBack, again and message count, and when it
    // was, `since`; invalid: now.
    void Hear(const Entry& entry);
    // The operator takes the entry as it is shown, or is done with it.
    void Take(const Entry& entry);
    void Finish(const Entry& entry);

Q_SIGNALS:
    void Changed();
    // Something waits that this console did not know, or that was taken and waits again.
    void Appeared(const dao::AttentionRecord& entry);
    // Somebody else has what the operator here had taken; in words.
    void Overruled(const QString& text);
    // After a logon, when entries are open.
    void FoundOpen();

private:
    void Act(AttentionAct::Kind kind, const Entry& entry);
    void Read(const QString& table);
    void Rebuild();
    void TellOverruled(const std::vector<Entry>& before);

    IDbSession& m_session;
    EventLog& m_eventLog;
    const Clock& m_clock;
    const IStringSource& m_strings;
    std::vector<Entry> m_read; // as the database had them
    QList<LogRecord> m_unread; // stored since
    std::vector<Entry> m_entries;
};
