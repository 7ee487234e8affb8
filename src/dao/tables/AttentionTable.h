#pragma once

#include "dao/records/Database.h"

#include <QDateTime>
#include <QString>
#include <optional>
#include <vector>

namespace dao {

// What waits for a person, until it is dealt with; one for each caller and kind.
struct AttentionRecord {
    enum class Kind { Emergency = 1, MissedCall = 2, CallBack = 3, Failed = 4 };
    enum class Again { Nothing = 0, Status = 1, Text = 2, TextInEightBits = 3 }; // what can be sent again

    QString caller; // as shown; of a message that failed, the party that it was for
    Kind kind = Kind::Emergency;
    QString id{};       // of the act that has opened it
    QString what{};     // what the caller wants, in words
    QString callBack{}; // what reaches the caller; empty: nothing does
    Again again = Again::Nothing;
    QString message{}; // to be sent again
    QDateTime since{};
    QDateTime last{};
    QString lastConsole{}; // which heard it last
    int times = 1;
    QString takenBy{}; // empty: nobody has
    QString takenOn{};
    QDateTime takenAt{};
    bool takenAway = false; // while the server was away

    bool IsTaken() const { return takenAt.isValid(); }
    bool operator==(const AttentionRecord&) const = default;
};

// One step in the life of an entry, as it is kept for good.
struct AttentionActRecord {
    enum class Act { Heard = 1, Taken = 2, Done = 3 };

    QString id;
    QString entry;
    Act act = Act::Heard;
    QString caller;
    AttentionRecord::Kind kind = AttentionRecord::Kind::Emergency;
    QString what;
    QDateTime time;
    QString operatorName; // empty: not known
    QString console;
    bool away = false;
};

// The tables of what waits and of what was done about it. Errors are dao::Error.
class AttentionTable {
public:
    static inline const QString Table = QStringLiteral("attention");

    static std::vector<AttentionRecord> ReadAll(Database& database);

    static std::optional<AttentionRecord> Find(Database& database, const QString& caller,
                                               AttentionRecord::Kind kind);
    // Takes the place of the one of this caller and kind.
    static void Put(Database& database, const AttentionRecord& record);
    // Nothing to remove is no failure.
    static void Remove(Database& database, const QString& caller, AttentionRecord::Kind kind);

    // The entry that an act went into; nothing when there is no such act.
    static std::optional<QString> EntryOf(Database& database, const QString& act);
    static void Append(Database& database, const AttentionActRecord& act);
    // The acts since then, in the order of their times; there may be some in front that are older.
    static std::vector<AttentionActRecord> ActsSince(Database& database, const QDateTime& since);
    // The act that has opened an entry; nothing where it is not there.
    static std::optional<AttentionActRecord> OpeningOf(Database& database, const QString& entry);
};

} // namespace dao
