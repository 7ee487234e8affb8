#pragma once

#include "numbering/FleetRules.h"

#include <memory>
#include <vector>

namespace dao {
class Database;
class Recordset;
} // namespace dao

// The fleet plan in the database, open as long as the object lives. Errors are dao::Error.
class FleetPlanTable {
public:
    explicit FleetPlanTable(dao::Database& database);
    ~FleetPlanTable();

    // All rows by prefix and base ident, read afresh.
    std::vector<FleetRecord> Read();
    std::optional<FleetRecord> Find(const QString& name);

    void Add(const FleetRecord& record);
    // `name` is the row's present name. A row that has gone in the meantime raises Kind::RecordGone.
    void Change(const QString& name, const FleetRecord& record);
    void Delete(const QString& name);

    // What to check an entry against that replaces the row `replaced`, or is new.
    FleetPlanContext ContextFor(const std::optional<QString>& replaced);

private:
    bool Seek(const QString& name);
    static FleetRecord Current(dao::Recordset& records);
    void Write(const FleetRecord& record);

    dao::Database& m_database;
    std::unique_ptr<dao::Recordset> m_records;
    int m_longestName;
    int m_longestNotes;
};
