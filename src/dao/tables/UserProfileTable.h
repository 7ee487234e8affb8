#pragma once

#include "dao/records/Database.h"

namespace dao {

// What the database knows of an account besides its password and groups.
struct UserProfileRecord {
    qlonglong id = 0;
    QString userName;
    QString callsign; // empty: none
    bool loggedOn = false;
    bool allowRegrouping = false;
};

// The table of the accounts' profiles. Errors are dao::Error.
class UserProfileTable {
public:
    // The table with the account's profile as its current record; nothing when there is none.
    static Reading ReadingOf(const QString& userName); // what Find reads
    static std::unique_ptr<Recordset> Find(Database& database, const QString& userName);

    // The current record of the table or of a query of accounts.
    static UserProfileRecord Read(Recordset& rows);

    // The database gives the id; the new account is not logged on.
    static void Add(Database& database, const UserProfileRecord& record);
    static void SetLoggedOn(Recordset& rows, bool on);
};

} // namespace dao
