#pragma once

#include "core/eventlog/EventSpool.h"

#include <QStringList>
#include <exception>
#include <functional>
#include <memory>

namespace dao {
class Database;
class Workspace;
} // namespace dao

// Puts log records into the table event, in order and each once. Belongs to one thread, on which it opens its
// database at the first record, and again when the files are no longer in their place.
class RecordStore {
public:
    // One of the two is given: what opens a session of its own, or names the database that is open.
    using Opener = std::function<std::unique_ptr<dao::Workspace>()>;
    using Present = std::function<dao::Database&()>;

    // `databaseId`: records reach no other database, whatever stands in its place.
    RecordStore(Opener open, Present present, QString databaseId);
    ~RecordStore();

    struct Outcome {
        int stored = 0;             // of the records given, from the first on
        std::exception_ptr failure; // why it ended there
        QStringList unstorable;     // counted as stored, but no database takes them: each with its reason
    };
    Outcome Store(const QList<LogRecord>& records);

private:
    dao::Database& Database();
    void StoreOne(dao::Database& database, const LogRecord& record, Outcome& outcome) const;
    void RequirePlace() const;

    Opener m_open;
    Present m_present;
    QString m_databaseId;
    std::unique_ptr<dao::Workspace> m_workspace;
};
