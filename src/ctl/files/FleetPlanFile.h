#pragma once

#include "numbering/FleetRules.h"

#include <QString>
#include <vector>

struct IStringSource;

struct FleetPlanRow {
    FleetRecord record;
    int line; // of the file, from 1
};

// Reads a fleet plan: CSV whose first line names the columns, in any order: type ("units" or "groups"),
// digits, prefix (0..127), base_ident, max_ident, and, if wanted, fleet_name and notes. A row has to pass
// CheckFleetRow() and must not overlap an earlier one. Raises Error that names file, line and reason.
std::vector<FleetPlanRow> ReadFleetPlan(const QString& path, const IStringSource& strings);

// The same as text, with all columns.
QString FormatFleetPlan(const std::vector<FleetRecord>& plan);
