#pragma once

#include "dao/base/Location.h"
#include "dao/base/MaintenanceReport.h"
#include "dao/base/MigrationProgress.h"
#include <QList>

namespace dao::sqlite {

// The functions of dao/Maintenance.h on files.
QList<Finding> CheckFiles(const Location& location);
MigrationReport MigrateFiles(const Location& location, const MigrationProgress& told);

} // namespace dao::sqlite
