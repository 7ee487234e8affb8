#pragma once

#include "dao/base/EngineSession.h"
#include "dao/base/OpenOptions.h"
#include "dao/postgresql/ServerAddress.h"

namespace dao::postgresql {

// Logs on as the account's role: dao::OpenWorkspace on a server. Kind::NotADatabase, Kind::Newer,
// Kind::Older.
EngineSession OpenSession(const ServerAddress& address, const QString& user, const QString& password,
                          const OpenOptions& options);

} // namespace dao::postgresql
