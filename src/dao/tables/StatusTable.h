#pragma once

#include "dao/records/Database.h"

namespace dao {

// One status message of the network.
struct StatusRecord {
    int code = 0;
    QString in;             // shown when it is received
    QString out;            // shown when it is sent
    bool emergency = false; // who sends it needs help

    bool operator==(const StatusRecord&) const = default;
};

// The table of the status messages. Errors are dao::Error.
class StatusTable {
public:
    static inline const QString Table = QStringLiteral("status");

    // Both by code; the key of the first is the code.
    static std::unique_ptr<Recordset> Open(Database& database);
    static QString ByCode(); // the select of that
    static std::unique_ptr<Recordset> OpenSnapshot(Database& database);

    static StatusRecord Read(Recordset& rows); // the current one
    // Changes the record that Seek has found, or adds one when it has found none.
    static void Store(Recordset& rows, const StatusRecord& record);

    // Characters that each of the two texts may have.
    static int LongestText(Database& database);
};

} // namespace dao
