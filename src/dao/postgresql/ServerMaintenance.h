#pragma once

#include "dao/base/MaintenanceReport.h"
#include "dao/base/MigrationProgress.h"
#include "dao/base/SchemaScripts.h"
#include "dao/postgresql/ServerAddress.h"

namespace dao::postgresql {

// The functions of dao/Maintenance.h on a server. They connect as the user of the address, or as libpq
// chooses.
QList<Finding> CheckServerDatabase(const ServerAddress& address);
MigrationReport MigrateServerDatabase(const ServerAddress& address, const QList<Migration>& migrations,
                                      const MigrationProgress& told = {});

} // namespace dao::postgresql
