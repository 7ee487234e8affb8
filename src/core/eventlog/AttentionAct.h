#pragma once

#include "dao/tables/AttentionTable.h"

#include <QString>
#include <optional>
#include <vector>

// A step in the life of what waits for a person, on its way to the database: somebody was heard, or an
// operator has taken an entry, or is done with it.
struct AttentionAct {
    using Kind = dao::AttentionActRecord::Act;

    Kind kind = Kind::Heard;
    // Whom it is about. Heard: with what he wants; otherwise with the entry's id and how often he had been
    // heard by then.
    dao::AttentionRecord entry;
    bool away = false; // the database was away, so that nobody else could know
};

// Who has acted, when, and where; `id` is the act's own.
struct AttentionActor {
    QString id;
    QDateTime time;
    QString operatorName{};
    QString console{};
};

// Whether two consoles have heard one and the same call.
bool IsSameCall(const QString& console, const QDateTime& time, const QString& otherConsole,
                const QDateTime& otherTime);

// What an act makes of the open entry of its caller and kind; nothing: there is none, or none any more.
//
// One call that several consoles hear counts once. Who is heard again after he was taken waits again. Of two
// who take an entry the earlier has it. An operator who has not seen that the caller was heard once more
// neither takes nor ends the entry. `entryId` is the id that the act's entry has now: it may have been opened
// at another console before.
std::optional<dao::AttentionRecord> Apply(const std::optional<dao::AttentionRecord>& open,
                                          const AttentionAct& act, const AttentionActor& actor,
                                          const QString& entryId);

// The same to a list of open entries, in memory.
void ApplyTo(std::vector<dao::AttentionRecord>& entries, const AttentionAct& act,
             const AttentionActor& actor);

// Within a transaction of the caller's. One that was stored before is stored no more. Raises dao::Error.
void StoreAct(dao::Database& database, const AttentionAct& act, const AttentionActor& actor);
