#pragma once

#include "core/eventlog/StoredRecords.h"

#include <QDateTime>
#include <functional>
#include <memory>
#include <optional>

struct IStringSource;
namespace dao {
class Workspace;
} // namespace dao

// Follows the database to another server: a standby that takes over may lack the records that were stored
// last, and these are stored there again, each once. Belongs to the thread that stores the records.
class MissingRecords {
public:
    // What was missing on a server that has taken over.
    struct Report {
        int records = 0; // stored again
        // Older ones, of which nobody knows, may be missing, too: those from `from`, if that is known, to
        // `to`.
        bool olderMissing = false;
        QDateTime from;
        QDateTime to;
    };

    // `folder`: where the records are kept that have been stored.
    MissingRecords(QString folder, QString databaseId);

    // Stores all of them, in order. May be given none.
    using Store = std::function<void(const QList<LogRecord>&)>;

    // Call before records are stored: finds out whether the server is another one than last time, and if so
    // has `store` store what is missing there. What it raises is passed on, and the next call begins again.
    void Follow(dao::Workspace& workspace, const Store& store);
    // These have been stored.
    void Keep(const QList<LogRecord>& records);
    // Once after each change of server that has lost something.
    std::optional<Report> TakeReport();

private:
    void Begin(dao::Workspace& workspace, const QString& server);
    void SendAgain(dao::Workspace& workspace, const QString& server, const Store& store);

    QString m_folder;
    QString m_databaseId;
    std::unique_ptr<StoredRecords> m_stored; // from the first call on
    QString m_server;                        // where all of them are
    QString m_found;                         // where `m_report` was found
    Report m_report;
    std::optional<Report> m_done;
};

// What an operator is told of it.
QString TextOf(const MissingRecords::Report& report, const IStringSource& strings);
