#pragma once

#include "dao/base/Location.h"
#include "numbering/FleetRules.h"

#include <QString>
#include <optional>
#include <vector>

// What somebody has decided in the assistant. What was skipped keeps its first value.
struct SetUpChoice {
    enum class Database { Later, New, Existing };
    enum class Numbering { Later, Mpt1343, Actionet };

    std::optional<QString> language; // LangID in hexadecimal; empty: the system's
    Database database = Database::Later;
    dao::Location location;
    std::optional<QString> port;
    std::optional<int> baud;
    Numbering numbering = Numbering::Later;
    std::vector<FleetRecord> fleets;
    QString administrator;
    QString password;

    // A new database without an administrator could be opened by nobody, and is not made.
    bool HasDatabase() const
    {
        return database == Database::Existing || (database == Database::New && !administrator.isEmpty());
    }
};
