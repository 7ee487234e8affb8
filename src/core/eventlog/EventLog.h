#pragma once

#include "core/eventlog/EventSpool.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QTimer>
#include <memory>

namespace dao {
class Database;
}
struct IDbSession;
struct IStringSource;

// Kinds of log record.
enum class EventType { Status = 1, Text = 2, Call = 3 };

// Writes records to the table event. A description longer than the field is cut to its defined size. While
// the database's server is away, records are kept in a file and written, in order and each once, when it
// returns.
class EventLog : public QObject {
    Q_OBJECT

public:
    // `spoolFolder`: where records wait for a server.
    EventLog(IDbSession& session, const IStringSource& strings, QString spoolFolder = {});
    ~EventLog() override;

    // Raises Error with a description when the record could not be stored. Its content is then kept for the
    // server's return, or, where there is no server to wait for, in the program's log file, so that nothing
    // is lost silently.
    void AppendLogRecord(const QDateTime& time, EventType type, const QString& desc, const QString& from,
                         const QString& to);

    // Writes some of the waiting records; the rest follow from the event loop. Does nothing while nobody is
    // logged on.
    void WriteWaiting();
    int Waiting() const;

Q_SIGNALS:
    // How many records wait to be stored.
    void WaitingChanged(int records);

private:
    void OpenSpool(const QString& databaseId);
    void Keep(const LogRecord& record);
    void Store(dao::Database& database, const LogRecord& record);
    void Insert(dao::Database& database, const LogRecord& record);
    void StoreNext(dao::Database& database);
    bool IsKept(const LogRecord& record) const;

    IDbSession& m_session;
    const IStringSource& m_strings;
    QString m_spoolFolder;
    QString m_databaseId; // of the spool
    std::unique_ptr<EventSpool> m_spool;
    int m_stored = 0;       // of the spool's records, those that are in the database by now
    bool m_failing = false; // the last attempt to store what waits failed
    QTimer m_timer;
};
