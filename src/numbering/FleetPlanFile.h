#pragma once

#include "exchange/CsvTable.h"
#include "numbering/FleetRules.h"

#include <QString>
#include <vector>

struct IStringSource;

// A fleet plan as a file: CSV whose first line names the columns, in any order: type ("units" or "groups"),
// digits, prefix (0..127), base_ident, max_ident, and, if wanted, fleet_name and notes.
CsvTable::Columns FleetPlanColumns();

// The fleet of one line. Why it is none; empty when it is.
QString ParseFleet(const QStringList& fields, FleetRecord& record, const IStringSource& strings);

struct FleetPlanRow {
    FleetRecord record;
    int line; // of the file, from 1
};

// Reads a whole plan. A row has to pass CheckFleetRow() and must not overlap an earlier one. Raises Error
// that names file, line and reason.
std::vector<FleetPlanRow> ReadFleetPlan(const QString& path, const IStringSource& strings);

// The same as text, with all columns.
QString FormatFleetPlan(const std::vector<FleetRecord>& plan);
