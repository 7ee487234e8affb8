#include "logbook/query/ShiftWaits.h"

#include "core/eventlog/AttentionAct.h"

#include <algorithm>

using Act = dao::AttentionActRecord;
using State = ShiftWait::State;

namespace {

void Hear(std::vector<ShiftWait>& waits, const Act& act, const Act* heard)
{
    const bool isSame = heard && IsSameCall(heard->console, heard->time, act.console, act.time);
    if (isSame)
        return;
    if (waits.empty() || waits.back().state == State::Taken) {
        if (!waits.empty()) {
            waits.back().state = State::HeardAgain;
            waits.back().endedAt = act.time;
        }
        waits.push_back({.kind = act.kind, .caller = act.caller, .what = act.what, .since = act.time});
        return;
    }
    ++waits.back().times;
    waits.back().what = act.what;
}

void Take(ShiftWait& wait, const Act& act)
{
    if (wait.state != State::Open)
        return; // who came first has it
    wait.state = State::Taken;
    wait.takenBy = act.operatorName;
    wait.takenOn = act.console;
    wait.takenAt = act.time;
}

// Somebody may have been done with it without having seen that the caller was heard once more; the entry
// stayed open then.
const Act* Ending(const std::vector<Act>& acts, bool isOpen)
{
    const auto last =
        std::find_if(acts.rbegin(), acts.rend(), [](const Act& act) { return act.act == Act::Act::Done; });
    return isOpen || last == acts.rend() ? nullptr : &*last;
}

} // namespace

QDateTime ShiftWait::AnsweredAt() const
{
    if (takenAt.isValid())
        return takenAt;
    return state == State::Done ? endedAt : QDateTime();
}

qint64 ShiftWait::Waited() const
{
    const QDateTime answered = AnsweredAt();
    return answered.isValid() ? std::max<qint64>(since.secsTo(answered), 0) : -1;
}

std::vector<ShiftWait> WaitsOf(const std::vector<Act>& acts, const QDateTime& until, bool isOpen)
{
    std::vector<ShiftWait> waits;
    const Act* heard = nullptr;
    for (const Act& act : acts) {
        if (act.time >= until)
            break;
        if (act.act == Act::Act::Heard) {
            Hear(waits, act, heard);
            heard = &act;
        } else if (act.act == Act::Act::Taken && !waits.empty()) {
            Take(waits.back(), act);
        }
    }
    const Act* end = Ending(acts, isOpen);
    if (end && end->time < until && !waits.empty()) {
        ShiftWait& wait = waits.back();
        wait.state = State::Done;
        wait.doneBy = end->operatorName;
        wait.doneOn = end->console;
        wait.endedAt = end->time;
    }
    return waits;
}
