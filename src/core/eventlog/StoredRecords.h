#pragma once

#include "core/base/FileLock.h"
#include "core/eventlog/RecordLine.h"
#include "dao/tables/EventTable.h"

#include <QList>
#include <QString>
#include <memory>

// The log records that this console has stored last, with their content, in a file that only the operator's
// own system account can read: for a server that takes over without the last of them. What is added is in the
// system's hands when Add returns, so that the end of the program loses none. It is not flushed to the disk,
// since it is missed only when this computer fails together with the server. Raises nothing: what cannot be
// kept is told in the program's log, since the database has it. For one thread.
class StoredRecords {
public:
    using Mark = dao::EventTable::Mark;
    static constexpr int LeastKept = 10000;

    // Those of one database in a folder. Several consoles under one system account have a file each, and
    // whoever has a number takes over what its last holder kept. Of the records `kept` to twice as many are
    // there.
    StoredRecords(const QString& folder, const QString& databaseId, int kept = LeastKept);
    StoredRecords(const StoredRecords&) = delete;
    StoredRecords& operator=(const StoredRecords&) = delete;
    ~StoredRecords();

    void Add(const QList<LogRecord>& records);
    // On which server all of them are; empty while none is kept.
    const QString& Server() const { return m_server; }
    void SetServer(const QString& server);
    // A record that is older than all of them; only before the first is added.
    void AddOlder(const Mark& mark);

    struct Content {
        QList<LogRecord> records; // oldest first
        QList<Mark> older;        // some of those that are not kept any more, oldest first
    };
    Content Read() const;

private:
    QString OlderFile() const { return m_file + QStringLiteral(".old"); }
    void Load();
    void OpenFile();
    bool Write(const QByteArray& lines);
    void Fail();
    void BeginFile();
    QByteArray Header() const;

    QString m_file; // empty: nothing is kept
    int m_kept;
    std::unique_ptr<FileLock> m_lock;
    int m_handle = -1;
    int m_count = 0; // of records in the file
    QString m_server;
    QList<Mark> m_older;
    Mark m_last;      // in the file
    Mark m_lastOlder; // in the one before it
    bool m_failed = false;
};
