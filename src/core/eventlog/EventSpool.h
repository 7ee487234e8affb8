#pragma once

#include "core/base/FileLock.h"
#include "core/eventlog/RecordLine.h"

#include <QList>
#include <QString>
#include <memory>
#include <vector>

// Log records that wait for their database, in order, in a file that only the operator's own system account
// can read: one JSON object a line. What has been appended survives the failure of the program and of the
// machine.
class EventSpool {
public:
    // The records of one database in a folder. Several consoles under one system account keep a file each.
    // What earlier runs left is included, whichever console left it.
    EventSpool(const QString& folder, const QString& databaseId);
    ~EventSpool();

    // The name of the console that writes into this spool; no other one has it at the same time.
    QString Console() const { return m_console; }
    const QList<LogRecord>& Records() const { return m_records; }
    // On disk when it returns, all or none of them. Raises Error.
    void Append(const QList<LogRecord>& records);
    // Call when all of them are stored. Raises Error when a file cannot be removed; the records are then
    // kept.
    void Clear();

private:
    struct LockedFile {
        QString name;
        std::unique_ptr<FileLock> lock;
    };

    void Load(const QString& file);

    QString m_folder;
    QString m_console;
    std::vector<LockedFile> m_files; // the first is written to
    QList<LogRecord> m_records;
};
