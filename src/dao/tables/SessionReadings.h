#pragma once

#include "dao/records/Database.h"

namespace dao {

// The fleet plan as the numbering reads it.
inline constexpr auto FleetPlanQuery = "select * from fleet order by prefix, base_ident";

// What a console reads of its database when an operator logs on: its memory, his profile, the numbering and
// the lists.
QList<Reading> SessionReadings(const QString& userName);

} // namespace dao
