#pragma once

#include "dao/records/Database.h"

namespace dao {

// A radio that has been put into a group; both are known by their ids in the directory. A radio holds at most
// one group at each position.
struct RegroupRecord {
    qint32 groupId = 0;
    qint32 memberId = 0;
    int pos = 0;
};

// The table of the regrouped radios. Errors are dao::Error.
class RegroupTable {
public:
    static inline const QString Table = QStringLiteral("dynamic_regroup");

    // For reading many records of it by position.
    static inline const QString GroupField = QStringLiteral("group_id");
    static inline const QString MemberField = QStringLiteral("member_id");
    static inline const QString PosField = QStringLiteral("pos");

    static std::unique_ptr<Recordset> OpenSnapshot(Database& database);
    static RegroupRecord Read(Recordset& rows); // the current one

    // Whether a directory entry takes part, as a group or as a member.
    static bool Holds(Database& database, qint32 addressId);

    // Takes the place of what the member holds at the position.
    static void Store(Database& database, const RegroupRecord& record);
    // False when the member is not in the old group at that position.
    static bool Move(Database& database, qint32 oldGroupId, const RegroupRecord& record);
    // Nothing to remove is no failure.
    static void RemoveMember(Database& database, qint32 memberId, int pos);
    static void RemoveMembersOf(Database& database, qint32 groupId, int pos);
};

} // namespace dao
