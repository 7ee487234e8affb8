#include "core/attention/AttentionBook.h"

#include "core/base/Clock.h"
#include "core/base/ProgramLog.h"
#include "core/eventlog/EventLog.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "dao/base/TextMatch.h"

#include <QLocale>
#include <algorithm>
#include <tuple>
#include <utility>

using Entry = dao::AttentionRecord;

namespace {

const QString& Table = dao::AttentionTable::Table;
constexpr qsizetype LongestCaller = 255; // as the table has it

auto Rank(const Entry& entry)
{
    return std::make_tuple(entry.IsTaken(), entry.kind, entry.since, entry.caller);
}

const Entry* FindIn(const std::vector<Entry>& entries, const QString& id)
{
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.id == id; });
    return found == entries.end() ? nullptr : &*found;
}

const Entry* FindIn(const std::vector<Entry>& entries, const Entry& like)
{
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) {
        return entry.caller == like.caller && entry.kind == like.kind;
    });
    return found == entries.end() ? nullptr : &*found;
}

} // namespace

AttentionBook::AttentionBook(IDbSession& session, EventLog& eventLog, const Clock& clock,
                             const IStringSource& strings)
    : m_session(session),
      m_eventLog(eventLog),
      m_clock(clock),
      m_strings(strings)
{
    DatabaseChanges& changes = session.Changes();
    connect(&changes, &DatabaseChanges::Opened, this, [this] {
        m_read.clear();
        m_unread.clear();
        Read({});
        if (!m_entries.empty())
            Q_EMIT FoundOpen();
    });
    connect(&changes, &DatabaseChanges::Changed, this, &AttentionBook::Read);
    // What an earlier run of the program has left to be stored.
    connect(&eventLog, &EventLog::WaitingChanged, this, [this] {
        if (m_eventLog.IsOpen()) // what has been closed keeps what it knew
            Rebuild();
    });
    connect(&eventLog, &EventLog::ActsStored, this, [this](const QList<LogRecord>& acts) {
        m_unread += acts;
        m_session.Changes().Tell(Table);
    });
}

const Entry* AttentionBook::Find(const QString& id) const
{
    return FindIn(m_entries, id);
}

void AttentionBook::Hear(const Entry& entry)
{
    Act(AttentionAct::Kind::Heard, entry);
}

void AttentionBook::Take(const Entry& entry)
{
    Act(AttentionAct::Kind::Taken, entry);
}

void AttentionBook::Finish(const Entry& entry)
{
    Act(AttentionAct::Kind::Done, entry);
}

void AttentionBook::Act(AttentionAct::Kind kind, const Entry& entry)
{
    AttentionAct act{kind, entry};
    for (QString* text : {&act.entry.caller, &act.entry.what, &act.entry.callBack, &act.entry.message})
        *text = dao::WithSignsForNull(*text); // which no server stores
    act.entry.caller.truncate(LongestCaller);
    const bool dated = kind == AttentionAct::Kind::Heard && entry.since.isValid();
    m_eventLog.AppendAttention(dated ? entry.since : m_clock.Now(), act);
    Rebuild();
}

void AttentionBook::Read(const QString& table)
{
    if (!table.isEmpty() && table != Table)
        return;
    try {
        m_read = dao::AttentionTable::ReadAll(m_session.Database());
        m_unread.clear();
    } catch (const std::exception& failure) {
        ProgramLog::Write(
            QStringLiteral("What waits is not read: %1").arg(QString::fromUtf8(failure.what())));
        m_session.Changes().KeepUnread(Table);
    }
    Rebuild();
}

void AttentionBook::Rebuild()
{
    std::vector<Entry> entries = m_read;
    for (const LogRecord& record : m_unread)
        ApplyTo(entries, *record.attention, record.Actor());
    for (const LogRecord& record : m_eventLog.WaitingActs())
        ApplyTo(entries, *record.attention, record.Actor());
    std::sort(entries.begin(), entries.end(),
              [](const Entry& one, const Entry& other) { return Rank(one) < Rank(other); });
    if (entries == m_entries)
        return;
    const std::vector<Entry> before = std::exchange(m_entries, std::move(entries));
    TellOverruled(before);
    for (const Entry& entry : std::vector<Entry>(m_entries)) {
        const Entry* known = FindIn(before, entry);
        if (!entry.IsTaken() && (known == nullptr || known->IsTaken()))
            Q_EMIT Appeared(entry);
    }
    Q_EMIT Changed();
}

void AttentionBook::TellOverruled(const std::vector<Entry>& before)
{
    for (const Entry& had : before) {
        if (!had.IsTaken() || had.takenOn != m_eventLog.Console() || had.takenBy != m_eventLog.OperatorName())
            continue;
        const Entry* now = FindIn(m_entries, had);
        if (now == nullptr || !now->IsTaken() || (now->takenOn == had.takenOn && now->takenBy == had.takenBy))
            continue;
        Q_EMIT Overruled(
            FormatMessage(m_strings, CoreText::TakenByAnother,
                          {now->caller, now->takenBy, now->takenOn,
                           QLocale().toString(now->takenAt.toLocalTime().time(), QLocale::LongFormat)}));
    }
}
