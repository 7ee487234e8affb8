#pragma once

#include "dao/tables/StatusTable.h"
#include "exchange/CsvTable.h"
#include "exchange/TableImport.h"

#include <map>

struct IStringSource;

// Status messages from a file: each takes the place of the one with its code, others stay. Without the column
// of emergencies a message keeps its mark.
class StatusImport : public TableImport {
public:
    static CsvTable::Columns Columns();
    // The status messages as such a file holds them; counts them.
    static QString Text(dao::Database& database, int& count);

    StatusImport(dao::Database& database, CsvTable table, const IStringSource& strings);

    std::vector<ImportLine> Check() override;
    void Store() override;

private:
    ImportLine CheckRow(const CsvTable::Row& row);
    QString Parse(const QStringList& fields, dao::StatusRecord& message) const;

    dao::Database& m_database;
    CsvTable m_table;
    const IStringSource& m_strings;
    int m_longest;
    std::map<int, dao::StatusRecord> m_known; // as the database has them, by code
    std::map<int, dao::StatusRecord> m_read;  // as the file has them
};
