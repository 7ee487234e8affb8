#pragma once

#include "dao/base/Location.h"
#include "dao/base/MaintenanceReport.h"
#include "dao/base/MigrationProgress.h"
#include <QList>

namespace dao {

// Examines both files without changing them and without a password: readable, sound, of a known schema
// version, belonging together, complete in tables, indexes and stored queries, at least one administrator,
// profiles and accounts in step. Empty when all is well. Never throws for what it finds.
QList<Finding> CheckDatabase(const Location& location);

// Brings both files to the schema of this program; opening a workspace does the same. Kind::MigrationFailed
// leaves the files as they were; a process that is killed meanwhile leaves old or new, never half of it.
MigrationReport MigrateDatabase(const Location& location, const MigrationProgress& told = {});

} // namespace dao
