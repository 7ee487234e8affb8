#include "core/eventlog/AttentionAct.h"

#include <algorithm>

using dao::AttentionActRecord;
using dao::AttentionRecord;
using dao::AttentionTable;

namespace {

// The consoles' clocks and radios differ by so much at most for one call.
constexpr qint64 SameCall = 5000; // ms

AttentionRecord Opened(const AttentionAct& act, const AttentionActor& actor)
{
    AttentionRecord entry = act.entry;
    entry.id = actor.id;
    entry.since = entry.last = actor.time;
    entry.lastConsole = actor.console;
    entry.times = 1;
    entry.takenBy.clear();
    entry.takenOn.clear();
    entry.takenAt = {};
    entry.takenAway = false;
    return entry;
}

AttentionRecord HeardAgain(AttentionRecord open, const AttentionAct& act, const AttentionActor& actor)
{
    if (IsSameCall(open.lastConsole, open.last, actor.console, actor.time))
        return open;
    const AttentionRecord now = Opened(act, actor);
    ++open.times;
    open.since = std::min(open.since, now.since);
    if (now.last < open.last) // it had to wait
        return open;
    open.last = now.last;
    open.lastConsole = now.lastConsole;
    open.what = now.what;
    open.callBack = now.callBack;
    open.again = now.again;
    open.message = now.message;
    if (!open.IsTaken() || open.takenAt > actor.time)
        return open;
    open.takenBy.clear();
    open.takenOn.clear();
    open.takenAt = {};
    open.takenAway = false;
    return open;
}

AttentionRecord Taken(AttentionRecord open, const AttentionAct& act, const AttentionActor& actor)
{
    if (open.IsTaken() && open.takenAt <= actor.time)
        return open;
    open.takenBy = actor.operatorName;
    open.takenOn = actor.console;
    open.takenAt = actor.time;
    open.takenAway = act.away;
    return open;
}

} // namespace

bool IsSameCall(const QString& console, const QDateTime& time, const QString& otherConsole,
                const QDateTime& otherTime)
{
    return console != otherConsole && std::abs(time.msecsTo(otherTime)) < SameCall;
}

std::optional<AttentionRecord> Apply(const std::optional<AttentionRecord>& open, const AttentionAct& act,
                                     const AttentionActor& actor, const QString& entryId)
{
    if (act.kind == AttentionAct::Kind::Heard)
        return open ? HeardAgain(*open, act, actor) : Opened(act, actor);
    if (!open || open->id != entryId || open->times > act.entry.times)
        return open;
    if (act.kind == AttentionAct::Kind::Done)
        return {};
    return Taken(*open, act, actor);
}

void ApplyTo(std::vector<AttentionRecord>& entries, const AttentionAct& act, const AttentionActor& actor)
{
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const AttentionRecord& entry) {
        return entry.caller == act.entry.caller && entry.kind == act.entry.kind;
    });
    const auto open = found == entries.end() ? std::nullopt : std::optional(*found);
    const auto now = Apply(open, act, actor, act.entry.id);
    if (now && found != entries.end())
        *found = *now;
    else if (now)
        entries.push_back(*now);
    else if (found != entries.end())
        entries.erase(found);
}

void StoreAct(dao::Database& database, const AttentionAct& act, const AttentionActor& actor)
{
    const AttentionRecord& entry = act.entry;
    if (AttentionTable::EntryOf(database, actor.id))
        return; // only the answer had not arrived
    const auto open = AttentionTable::Find(database, entry.caller, entry.kind);
    const QString entryId = act.kind == AttentionAct::Kind::Heard
                                ? (open ? open->id : actor.id)
                                : AttentionTable::EntryOf(database, entry.id).value_or(entry.id);
    const auto now = Apply(open, act, actor, entryId);
    if (now && now != open)
        AttentionTable::Put(database, *now);
    else if (!now && open)
        AttentionTable::Remove(database, entry.caller, entry.kind);
    AttentionTable::Append(database, {.id = actor.id,
                                      .entry = entryId,
                                      .act = act.kind,
                                      .caller = entry.caller,
                                      .kind = entry.kind,
                                      .what = entry.what,
                                      .time = actor.time,
                                      .operatorName = actor.operatorName,
                                      .console = actor.console,
                                      .away = act.away});
}
