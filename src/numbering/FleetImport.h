#pragma once

#include "exchange/CsvTable.h"
#include "exchange/TableImport.h"
#include "numbering/FleetPlanTable.h"

struct IStringSource;

// A fleet plan from a file: each fleet takes the place of the one with its name, and has to pass the checks
// of the plan's editor against the whole new plan.
class FleetImport : public TableImport {
public:
    enum class Others { Stay, Remove }; // fleets that are not in the file

    FleetImport(dao::Database& database, CsvTable table, Others others, const IStringSource& strings);

    // The removed ones last.
    std::vector<ImportLine> Check() override;
    void Store() override;

private:
    void Parse(std::vector<ImportLine>& lines);
    void Compare(std::vector<ImportLine>& lines);
    bool IsInFile(const QString& name) const;

    CsvTable m_table;
    Others m_others;
    const IStringSource& m_strings;
    FleetPlanTable m_plan;
    std::vector<FleetRecord> m_before;
    std::vector<FleetRecord> m_read;   // one for each line that can be read
    std::vector<std::size_t> m_lineOf; // of each of these, its place among the lines
    std::vector<FleetRecord> m_added;
    std::vector<FleetRecord> m_changed;
    QStringList m_removed;
};
