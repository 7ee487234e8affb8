#pragma once

#include "core/base/FileLock.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <memory>
#include <vector>

// One record of the table event on its way there.
struct LogRecord {
    QString id; // made once, so that the database stores it once however often it is sent
    QDateTime time;
    int type = 0;
    QString desc;
    QString from;
    QString to;
};

// Log records that wait for their database, in order, in a file that only the operator's own account of the
// system can read: one JSON object a line. What was appended survives the end of the program and of the
// machine.
class EventSpool {
public:
    // The records of one database in a folder. Several consoles of one account of the system keep a file
    // each. What earlier runs have left is there, whichever console they were of.
    EventSpool(const QString& folder, const QString& databaseId);
    ~EventSpool();

    const QList<LogRecord>& Records() const { return m_records; }
    // On disk when it returns. Raises Error.
    void Append(const LogRecord& record);
    // All of them are stored. Raises Error when a file stays; the records are kept then.
    void Clear();

private:
    struct LockedFile {
        QString name;
        std::unique_ptr<FileLock> lock;
    };

    void Load(const QString& file);

    QString m_folder;
    std::vector<LockedFile> m_files; // the first is written to
    QList<LogRecord> m_records;
};
