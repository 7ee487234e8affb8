#pragma once

#include "dao/records/Database.h"

#include <QDateTime>
#include <QString>
#include <optional>
#include <vector>

namespace dao {

// A radio that has entered, changed or left a dynamic group, as it is kept for good. Ids are those of the
// directory, 0 for no group; callsigns as they were then.
struct RegroupActRecord {
    QString id; // of the command; one that dissolved a group has several records, one for each radio
    qint32 memberId = 0;
    QString member{};
    qint32 oldGroupId = 0;
    QString oldGroup{};
    qint32 groupId = 0;
    QString group{};
    int pos = 0;
    QDateTime time{};
    QString operatorName{}; // empty: not known
    QString console{};
};

// The table of them. Errors are dao::Error.
class RegroupActTable {
public:
    // One that is there already stays as it is.
    static void Append(Database& database, const RegroupActRecord& record);
    // Of a radio or a group, or without an id of all: the newest, and the newest first.
    static std::vector<RegroupActRecord> Newest(Database& database, std::optional<qint32> addressId,
                                                int most);
    // The last one of each radio and position that dynamic_regroup holds.
    static std::vector<RegroupActRecord> LastOfRegrouped(Database& database);
};

} // namespace dao
