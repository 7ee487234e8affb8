#include "core/eventlog/ChainCheck.h"

#include <algorithm>
#include <utility>

namespace {

ChainCheck::Place PlaceOf(const dao::EventRecord& record)
{
    return {record.consoleNumber, record.id, record.time};
}

void Count(ChainCheck::Finding& finding, const ChainCheck::Place& place, qlonglong count = 1)
{
    if (finding.count == 0)
        finding.first = place;
    finding.count += count;
}

// True when the number was missing.
bool Find(QMap<qlonglong, qlonglong>& missing, qlonglong number)
{
    auto range = missing.upperBound(number);
    if (range == missing.begin() || (--range).value() < number)
        return false;
    const auto [first, last] = std::pair(range.key(), range.value());
    missing.erase(range);
    if (first < number)
        missing.insert(first, number - 1);
    if (number < last)
        missing.insert(number + 1, last);
    return true;
}

} // namespace

bool ChainCheck::Console::IsWhole() const
{
    return changed.count + takenOut.count + unproved.count + putIn.count + moved.count + unchained.count +
               otherKey.count ==
           0;
}

ChainCheck::ChainCheck(std::vector<LogChain> keys, QStringList identities, const QList<Promise>& promises)
    : m_keys(std::move(keys)),
      m_identities(std::move(identities)),
      m_promises(promises)
{
    for (qsizetype i = 0; i < m_promises.size(); ++i)
        m_promised[m_promises[i].head.console].insert(m_promises[i].head.number, i);
}

const LogChain* ChainCheck::KeyOf(const QString& chain) const
{
    for (const LogChain& key : m_keys)
        if (LogChain::CheckOf(chain) == key.Check())
            return &key;
    return nullptr;
}

void ChainCheck::Take(const dao::EventRecord& record)
{
    if (record.console.isEmpty()) {
        if (m_begun)
            Count(m_nobodys, PlaceOf(record));
        else
            ++m_old;
        return;
    }
    m_begun = m_begun || !record.chain.isEmpty();
    State& state = m_states[record.console];
    if (state.console.records++ == 0) {
        state.console.name = record.console;
        for (const QString& identity : std::as_const(m_identities))
            state.console.isOurs = state.console.isOurs || record.console.section(u'-', -2, -2) == identity;
    }
    Compare(record);
    if (record.consoleNumber <= state.console.last.number)
        TakeEarlier(state, record);
    else
        Follow(state, record);
}

void ChainCheck::Compare(const dao::EventRecord& record)
{
    const auto promised = m_promised.constFind(record.console);
    if (promised == m_promised.constEnd())
        return;
    for (const qsizetype i : promised->values(record.consoleNumber))
        if (Promise& promise = m_promises[i]; promise.state != Promise::State::Kept)
            promise.state = promise.head.proof == dao::ProofOf(record.chain) ? Promise::State::Kept
                                                                             : Promise::State::Other;
}

void ChainCheck::TakeEarlier(State& state, const dao::EventRecord& record)
{
    Console& console = state.console;
    if (Find(state.missing, record.consoleNumber)) {
        --console.takenOut.count;
        Count(console.moved, PlaceOf(record));
        return;
    }
    // It may be the true one, and that before it the one that was put in.
    const LogChain* key = KeyOf(record.chain);
    if (key && state.failed.count == 1 && record.consoleNumber == console.last.number &&
        key->Next(state.proved, record) == record.chain) {
        --console.changed.count;
        Count(console.putIn, state.failed.first);
        state.failed = {};
        state.chain = state.proved = record.chain;
        console.last = PlaceOf(record);
        return;
    }
    Count(console.putIn, PlaceOf(record));
}

void ChainCheck::Follow(State& state, const dao::EventRecord& record)
{
    Console& console = state.console;
    const qlonglong expected = console.last.number + 1;
    const bool afterGap = record.consoleNumber > expected;
    if (afterGap) {
        Place place = PlaceOf(record);
        place.number = expected;
        Count(console.takenOut, place, record.consoleNumber - expected);
        state.missing.insert(expected, record.consoleNumber - 1);
    }
    console.last = PlaceOf(record);
    if (!record.chain.isEmpty())
        Prove(state, record, afterGap);
    else if (console.begin)
        Count(console.unchained, console.last);
    else
        ++console.older;
}

void ChainCheck::Prove(State& state, const dao::EventRecord& record, bool afterGap)
{
    Console& console = state.console;
    const Place place = PlaceOf(record);
    const LogChain* key = KeyOf(record.chain);
    const QString before = std::exchange(state.chain, record.chain);
    if (!console.begin) {
        console.begin = place;
        console.check = LogChain::CheckOf(record.chain);
    }
    if (!key) {
        if (console.isOurs || LogChain::CheckOf(record.chain) != console.check)
            Count(console.otherKey, place);
        TakeRestore(record, false);
        return;
    }
    if (!console.isOurs) {
        console.isOurs = true;
        if (console.check != key->Check()) // those before had not been known to be strange
            Count(console.otherKey, *console.begin);
        console.check = key->Check();
    }
    const bool isProved = key->Next(before, record) == record.chain;
    if (isProved) {
        state.failed = {};
        state.proved = record.chain;
    } else if (afterGap) {
        Count(console.unproved, place);
    } else {
        Count(console.changed, place);
        Count(state.failed, place);
    }
    TakeRestore(record, isProved);
}

// Only veltorkynctl has the number 0: a text of the radio is nobody's restore.
void ChainCheck::TakeRestore(const dao::EventRecord& record, bool isProven)
{
    if (!record.desc.startsWith(RestoreText) || !record.console.endsWith(QLatin1String("-0")))
        return;
    Restore restore{PlaceOf(record), record.desc, isProven, {}};
    for (const State& state : std::as_const(m_states))
        restore.numbers.insert(state.console.name, state.console.last.number);
    --restore.numbers[record.console]; // the record itself was not in the backup
    m_restores.append(restore);
}

void ChainCheck::End()
{
    for (Promise& promise : m_promises)
        for (qsizetype i = 0; i < m_restores.size() && promise.state != Promise::State::Kept; ++i)
            if (const Restore& restore = m_restores[i];
                restore.isProven && promise.head.time <= restore.place.time &&
                promise.head.number > restore.numbers.value(promise.head.console)) {
                promise.state = Promise::State::Restored;
                promise.restore = i;
            }
}

QList<ChainCheck::Console> ChainCheck::Consoles() const
{
    QMap<QString, Console> sorted;
    for (const State& state : m_states)
        sorted.insert(state.console.name, state.console);
    return sorted.values();
}

bool ChainCheck::IsWhole() const
{
    return m_nobodys.count == 0 &&
           std::all_of(
               m_states.begin(), m_states.end(),
               [](const State& state) { return state.console.IsWhole(); }) &&
           std::all_of(
               m_promises.begin(), m_promises.end(),
               [](const Promise& promise) {
                   return promise.state == Promise::State::Kept || promise.state == Promise::State::Restored;
               });
}
