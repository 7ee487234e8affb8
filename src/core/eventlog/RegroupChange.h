#pragma once

#include <QString>

class SessionMemory;
struct AttentionActor;
struct IDbSession;
struct IStringSource;
namespace dao {
class Database;
} // namespace dao

// What the radio has confirmed of a regroup command: it is stored, and with it the request under which it may
// be stored goes.
struct RegroupChange {
    enum class Kind {
        Withdrawn, // nothing was confirmed: only the request goes
        Entered,   // the member holds the group at the position now, whatever it held there
        Moved,     // the same, for a member that was in another group before
        Left,      // the member holds no group at the position
        Dissolved, // no member holds the group at the position
    };
    Kind kind = Kind::Withdrawn;
    qint32 groupId = 0;
    qint32 oldGroupId = 0; // of Moved
    qint32 memberId = 0;
    quint8 pos = 0;
    QString request{};

    void ApplyTo(SessionMemory& memory) const;
    // Within a transaction of the caller's. One that was stored before is stored no more. The request of
    // another account cannot be ended. Raises dao::Error: Kind::RecordGone when somebody else has changed the
    // group of a member that moved. Who has done it, and when, is kept with it.
    void StoreIn(dao::Database& database, bool endRequest, const AttentionActor& actor) const;
    // For the operator: what the radio holds, that it is not recorded, and why.
    QString DescribeRefusal(const std::exception& reason, IDbSession& session,
                            const IStringSource& strings) const;

private:
    void AppendActs(dao::Database& database, const AttentionActor& actor) const;
};
