#pragma once

#include "core/eventlog/LogProof.h"
#include "core/eventlog/MissingRecords.h"

#include <QHash>
#include <QSet>
#include <QStringList>
#include <exception>
#include <functional>
#include <memory>

namespace dao {
class Database;
class Workspace;
} // namespace dao

// Puts log records into the table event, in order and each once, and counts them for each console. Belongs to
// one thread, on which it opens its database at the first record, and again when the files are no longer in
// their place.
class RecordStore {
public:
    // One of the two is given: what opens a session of its own, or names the one that is open.
    using Opener = std::function<std::unique_ptr<dao::Workspace>()>;
    using Present = std::function<dao::Workspace&()>;

    // `databaseId`: records reach no other database, whatever stands in its place. `missing`: what follows a
    // database that is opened here to another server. `proof`: what ties the records together.
    RecordStore(Opener open, Present present, QString databaseId,
                std::unique_ptr<MissingRecords> missing = nullptr, std::unique_ptr<LogProof> proof = nullptr);
    ~RecordStore();

    struct Outcome {
        int stored = 0;             // of the records given, from the first on
        std::exception_ptr failure; // why it ended there
        // Counted as stored, but no database takes them: each with its reason.
        QStringList unstorable;
        // Likewise: regroups that the database has refused.
        QList<std::pair<LogRecord, std::exception_ptr>> refused;
        // What was missing on another server and has been stored there before these.
        std::optional<MissingRecords::Report> missing;
    };
    // As many of them as go together, from the first on; the rest is for the next time. Looks for what is
    // missing without any as well.
    Outcome Store(const QList<LogRecord>& records);

private:
    dao::Workspace& Workspace();
    void Follow(Outcome& outcome);
    void StorePart(dao::Workspace& workspace, const QList<LogRecord>& records, Outcome& outcome);
    void Keep(const QList<LogRecord>& records, const Outcome& outcome);
    bool StoreTogether(dao::Workspace& workspace, const QList<LogRecord>& records);
    void InsertTogether(dao::Database& database, const QList<LogRecord>& events);
    void StoreOne(dao::Workspace& workspace, const LogRecord& record, Outcome& outcome);
    void StoreRecord(dao::Workspace& workspace, const LogRecord& record);
    void Insert(dao::Database& database, const LogRecord& record);
    QVariantList NextValues(dao::Database& database, const LogRecord& record);
    dao::EventTable::Last& LastOf(dao::Database& database, const QString& console);
    void KeepHeads();
    void Forget();
    void RequirePlace() const;

    Opener m_open;
    Present m_present;
    QString m_databaseId;
    std::unique_ptr<MissingRecords> m_missing;
    std::unique_ptr<dao::Workspace> m_workspace;
    std::unique_ptr<LogProof> m_proof;
    // Number and chain of each console's last record, as long as they are known for certain.
    QHash<QString, dao::EventTable::Last> m_last;
    QSet<QString> m_grown; // consoles that have got records since their heads were kept
};
