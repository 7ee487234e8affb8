#pragma once

#include "dao/base/LogReceipt.h"

#include <QHash>
#include <QList>
#include <QString>

// How far each console of this account has come in a database, in a small file for each beside its key: what
// tells of an end that was cut off. Written after the records are stored, without a flush. When the numbers
// go down (a restored database, a server that has lost the end) the old head is kept as well. Raises nothing.
// For one thread.
class LogHeads {
public:
    LogHeads(QString folder, QString databaseId);
    LogHeads(const LogHeads&) = delete;
    LogHeads& operator=(const LogHeads&) = delete;
    ~LogHeads();

    void Keep(const dao::LogHead& head);

    struct Kept {
        dao::LogHead head;
        bool isOld = false; // the numbers went down after it
    };
    static QList<Kept> Read(const QString& folder, const QString& databaseId);

private:
    struct File {
        int handle = -1;
        qlonglong number = 0;
    };
    File& Open(const QString& console, const dao::LogHead& next);

    QString m_folder;
    QString m_databaseId;
    QHash<QString, File> m_files; // by console
    bool m_failed = false;
};
