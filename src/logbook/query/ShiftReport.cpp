#include "logbook/query/ShiftReport.h"

#include "core/eventlog/EventLog.h"
#include "logbook/query/LogSearch.h"

#include <QHash>
#include <QSet>
#include <algorithm>
#include <tuple>

using Act = dao::AttentionActRecord;
using dao::AttentionTable;

namespace {

constexpr int PageSize = 1000;
using ActsByEntry = QHash<QString, std::vector<Act>>;

// What those that were opened before the first of these acts have behind them.
void AddEarlier(dao::Database& database, ActsByEntry& entries, const QSet<QString>& open,
                const QDateTime& since)
{
    QSet<QString> unopened = open;
    for (auto acts = entries.cbegin(); acts != entries.cend(); ++acts)
        if (acts->front().id == acts.key())
            unopened.remove(acts.key());
        else
            unopened.insert(acts.key());
    QDateTime from = since;
    for (const QString& entry : unopened) {
        const auto opening = AttentionTable::OpeningOf(database, entry);
        if (!opening || opening->time >= since)
            continue;
        from = std::min(from, opening->time);
        entries[entry]; // which may have no act since
    }
    if (from == since)
        return;
    ActsByEntry earlier;
    for (const Act& act : AttentionTable::ActsSince(database, from))
        if (act.time < since && entries.contains(act.entry))
            earlier[act.entry].push_back(act);
    for (auto acts = earlier.begin(); acts != earlier.end(); ++acts) {
        std::vector<Act>& all = entries[acts.key()];
        all.insert(all.begin(), acts->begin(), acts->end());
    }
}

} // namespace

ShiftReport ShiftReport::Read(dao::Database& database, const LogFacts& facts, const QDateTime& since,
                              const QDateTime& until, const std::function<bool()>& goOn)
{
    ShiftReport report;
    report.m_since = since;
    report.m_until = until;
    report.CountRecords(database, facts, goOn);
    report.ReadWaits(database);
    return report;
}

void ShiftReport::CountRecords(dao::Database& database, const LogFacts& facts,
                               const std::function<bool()>& goOn)
{
    LogFilter filter;
    filter.since = m_since;
    filter.until = m_until;
    const LogSearch search(filter, facts);
    const qlonglong newest = dao::EventIndex::StateOf(database).newest;
    LogSearch::Page page{.records = {}, .bound = -1};
    while (!page.isLast && page.bound < newest && (!goOn || goOn())) {
        page = search.Next(database, LogSearch::Order::OldestFirst, page.bound, PageSize, goOn);
        for (const dao::EventRecord& record : page.records) {
            const auto kind = static_cast<std::size_t>(record.kind);
            const auto way = static_cast<std::size_t>(facts.DirectionOf(record));
            if (kind < m_records.size())
                ++m_records[kind][way < std::tuple_size_v<Ways> ? way : 0];
            const bool call = record.kind == static_cast<int>(EventType::Call);
            m_emergencyCalls += call && facts.IsEmergency(record) ? 1 : 0;
        }
    }
}

void ShiftReport::ReadWaits(dao::Database& database)
{
    QSet<QString> open;
    for (const dao::AttentionRecord& entry : AttentionTable::ReadAll(database))
        open.insert(entry.id);
    ActsByEntry entries;
    for (const Act& act : AttentionTable::ActsSince(database, m_since))
        if (act.time >= m_since)
            entries[act.entry].push_back(act);
    AddEarlier(database, entries, open, m_since);
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry)
        Add(*entry, open.contains(entry.key()));
    std::sort(m_waits.begin(), m_waits.end(), [](const ShiftWait& a, const ShiftWait& b) {
        return std::tie(a.kind, a.since, a.caller) < std::tie(b.kind, b.since, b.caller);
    });
}

void ShiftReport::Add(const std::vector<Act>& acts, bool isOpen)
{
    using State = ShiftWait::State;
    const std::vector<ShiftWait> waits = WaitsOf(acts, m_until, isOpen);
    if (waits.empty())
        return;
    const ShiftWait& last = waits.back();
    if (waits.front().since < m_since && (last.state != State::Done || last.endedAt >= m_since))
        ++m_openBefore;
    if (last.state != State::Done)
        ++m_openAfter;
    for (const ShiftWait& wait : waits)
        if (!wait.endedAt.isValid() || wait.endedAt >= m_since)
            m_waits.push_back(wait);
}

ShiftReport::Answers ShiftReport::AnswersOf(Kind kind) const
{
    Answers answers;
    std::vector<qint64> times;
    for (const ShiftWait& wait : m_waits) {
        if (wait.kind != kind || wait.since < m_since)
            continue;
        ++answers.waits;
        if (wait.Waited() >= 0)
            times.push_back(wait.Waited());
    }
    std::sort(times.begin(), times.end());
    answers.answered = static_cast<int>(times.size());
    if (!times.empty()) {
        answers.median = times[(times.size() - 1) / 2];
        answers.longest = times.back();
    }
    return answers;
}
