#pragma once

#include "core/base/Lane.h"
#include "core/eventlog/EventSpool.h"
#include "core/eventlog/RecordStore.h"

#include <QDateTime>
#include <QObject>
#include <QSet>
#include <QString>
#include <QTimer>
#include <deque>
#include <memory>

struct IDbSession;
struct IStringSource;

// Kinds of log record.
enum class EventType { Status = 1, Text = 2, Call = 3 };

// Takes the records of the table event and sees that they get there, in order and each once. Nobody waits for
// it: a lane of its own stores them, with a database session of its own, and those that are not stored within
// half a second are written into a spool file by another lane. A record is safe once it is in the database or
// in that file. What fails is tried again every second. A description longer than the field is cut to its
// defined size. On the window's thread.
class EventLog : public QObject {
    Q_OBJECT

public:
    // `spoolFolder`: where records wait for the database; without one they wait in memory.
    EventLog(IDbSession& session, const IStringSource& strings, QString spoolFolder = {},
             Lane::Kind lanes = Lane::Kind::Callers);
    // What is not safe by then is written into the spool file, which may take two seconds.
    ~EventLog() override;

    // Neither raises nor waits. Returns the record's id, which Safe names later; with lanes of the caller's
    // it may have named it before.
    QString AppendLogRecord(const QDateTime& time, EventType type, const QString& desc, const QString& from,
                            const QString& to, MessageWay way = MessageWay::Unknown);
    // Take what is stored in turn with the records: a change of duty, and what the radio has confirmed of a
    // regroup command. Both hold in the session's memory at once. Returns the id as AppendLogRecord does.
    void AppendDuty(const QString& callsign, bool onDuty);
    QString AppendRegroup(const QDateTime& time, const RegroupChange& change);
    // Likewise what becomes of somebody who waits for a person. It holds for who asks WaitingActs.
    QString AppendAttention(const QDateTime& time, const AttentionAct& act);
    // False for a record that would be lost if the program were killed now.
    bool IsSafe(const QString& id) const { return !m_unsafe.contains(id); }

    // Takes over what waits in the spool file, and tries what has failed. Does nothing while nobody is logged
    // on.
    void WriteWaiting();
    // How many records wait for longer than they should.
    int Waiting() const { return m_late ? static_cast<int>(m_queue.size()) : 0; }
    // How many the last logoff has left in the spool file, for the next logon.
    int Left() const { return m_left; }
    // What the database does not have yet, oldest first.
    QList<LogRecord> WaitingRecords() const;
    // Likewise of those who wait for a person.
    QList<LogRecord> WaitingActs() const;
    bool IsOpen() const { return m_open; }
    // Who stores records here and from where; empty while it is not open.
    QString OperatorName() const { return m_open ? m_operator : QString(); }
    QString Console() const { return m_console; }
    // Waits at most so long for what is just being stored.
    void Settle(std::chrono::milliseconds limit);
    // Why, in words; empty while nothing fails.
    QString Cause() const;

Q_SIGNALS:
    // These records are on a disk from now on.
    void Safe(const QStringList& ids);
    // Waiting or Cause is another one.
    void WaitingChanged(int records);
    // The database has refused a regroup that the radio has confirmed; the text says what the radio holds.
    void Refused(const QString& id, const QString& text);
    // The database has these acts now.
    void ActsStored(const QList<LogRecord>& acts);
    // Once for each cause: records wait, and why.
    void Delayed(const QString& text);
    // Another server has taken over, and records that were missing there have been stored again.
    void StoredAgain(const QString& text);

private:
    struct Entry {
        LogRecord record;
        bool spooled = false;
    };
    struct Spool;

    void Take(const LogRecord& record);
    QString NumberOf(const QString& party) const;
    bool Open();
    void Close();
    void TakeOver(const QList<LogRecord>& left, const QString& console);
    void Sign(LogRecord& record) const;
    void Follow();
    void StoreNext();
    void TellMissing(const RecordStore::Outcome& outcome);
    void TakeOutcome(const RecordStore::Outcome& outcome);
    void Await(const LogRecord& record);
    void TellRefused(const RecordStore::Outcome& outcome);
    void SpoolWaiting();
    void TakeSpooled(const QStringList& ids, const QString& failure);
    void BeLate();
    void Fail(const QString& cause);
    void MarkSafe(const QStringList& ids);

    IDbSession& m_session;
    const IStringSource& m_strings;
    QString m_spoolFolder;
    Lane::Kind m_lanes;
    bool m_open = false;
    QString m_operator; // who is logged on
    QString m_console;  // known once the spool is open
    bool m_storing = false;
    bool m_spooling = false;
    bool m_late = false;
    int m_left = 0;
    bool m_onServer = false;
    bool m_follow = false; // to be looked for what is missing on the server, with records or without
    std::deque<Entry> m_queue;
    QSet<QString> m_unsafe;
    QString m_cause;      // why the last attempt to store failed
    QString m_spoolCause; // likewise to write the spool file
    QTimer m_retry;
    QTimer m_patience;                    // runs while records are being stored
    std::shared_ptr<RecordStore> m_store; // used on its lane only
    std::shared_ptr<Spool> m_spool;       // likewise
    std::unique_ptr<Lane> m_storeLane;
    std::unique_ptr<Lane> m_spoolLane;
};
