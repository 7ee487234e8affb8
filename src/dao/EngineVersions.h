#pragma once

#include <QStringList>

namespace dao {

// The libraries of the engines, each with its version. Asks no server.
QStringList EngineVersions();

} // namespace dao
