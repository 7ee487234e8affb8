#include "dao/EngineVersions.h"

#include <libpq-fe.h>
#include <sqlite3.h>

QStringList dao::EngineVersions()
{
    constexpr int major = 10000;
    return {QStringLiteral("SQLite ") + QLatin1String(sqlite3_libversion()),
            QStringLiteral("libpq %1.%2").arg(PQlibVersion() / major).arg(PQlibVersion() % major)};
}
