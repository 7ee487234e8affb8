#include "core/eventlog/EventLog.h"

#include "core/base/ProgramLog.h"
#include "core/eventlog/ConsoleName.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "dao/Workspace.h"
#include "dao/base/Error.h"
#include "dao/tables/AddressTable.h"
#include "dao/tables/RegroupTable.h"

#include <QUuid>
#include <algorithm>
#include <utility>

namespace {

constexpr std::chrono::milliseconds AttemptPause{1000};
constexpr std::chrono::milliseconds Patience{500}; // then what is being stored is spooled, too
constexpr std::chrono::milliseconds LastWait{2000};
constexpr qsizetype MostAtOnce = 256;

// Nobody has to try again what waits here.
QString DescribeCause(const std::exception& failure, const IStringSource& strings)
{
    const auto* error = dynamic_cast<const dao::Error*>(&failure);
    if (error != nullptr && error->kind == dao::Kind::Locked)
        return FormatMessage(strings, CoreText::RecordsLocked, error->values);
    return DescribeError(failure, strings);
}

// Others did not know of it when it was done.
void MarkAway(LogRecord& record)
{
    if (record.attention)
        record.attention->away = true;
}

} // namespace

// The file is opened by its lane.
struct EventLog::Spool {
    std::unique_ptr<EventSpool> file;
    QString reason; // why there is none
};

EventLog::EventLog(IDbSession& session, const IStringSource& strings, QString spoolFolder, Lane::Kind lanes)
    : m_session(session),
      m_strings(strings),
      m_spoolFolder(std::move(spoolFolder)),
      m_lanes(lanes)
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(AttemptPause);
    connect(&m_retry, &QTimer::timeout, this, [this] {
        WriteWaiting();
        SpoolWaiting();
    });
    m_patience.setSingleShot(true);
    m_patience.setInterval(Patience);
    connect(&m_patience, &QTimer::timeout, this, &EventLog::BeLate);
    connect(&session.Changes(), &DatabaseChanges::Closing, this, &EventLog::Close);
    connect(&session.Changes(), &DatabaseChanges::AwayChanged, this, [this](bool away) {
        if (!away)
            Follow();
    });
}

EventLog::~EventLog()
{
    Close();
}

QString EventLog::AppendLogRecord(const QDateTime& time, EventType type, const QString& desc,
                                  const QString& from, const QString& to, MessageWay way)
{
    const LogRecord record{.id = QUuid::createUuid().toString(QUuid::WithoutBraces),
                           .time = time,
                           .type = static_cast<int>(type),
                           .desc = desc,
                           .from = from,
                           .to = to,
                           .fromNumber = NumberOf(from),
                           .toNumber = NumberOf(to),
                           .way = way};
    Take(record);
    return record.id;
}

// What the directory says now: it may say something else when the record is read. Empty for a party without
// an entry, which is its number already.
QString EventLog::NumberOf(const QString& party) const
{
    if (!m_session.IsOpen())
        return {};
    return m_session.Memory().Addresses().IdentOf(party).value_or(QString());
}

void EventLog::AppendDuty(const QString& callsign, bool onDuty)
{
    Take({.id = QUuid::createUuid().toString(QUuid::WithoutBraces),
          .time = {},
          .type = onDuty ? 1 : 0,
          .desc = {},
          .from = callsign,
          .to = {},
          .isDuty = true});
}

QString EventLog::AppendRegroup(const QDateTime& time, const RegroupChange& change)
{
    const LogRecord record{.id = QUuid::createUuid().toString(QUuid::WithoutBraces),
                           .time = time,
                           .desc = {},
                           .from = {},
                           .to = {},
                           .regroup = change};
    Take(record);
    return record.id;
}

QString EventLog::AppendAttention(const QDateTime& time, const AttentionAct& act)
{
    const LogRecord record{.id = QUuid::createUuid().toString(QUuid::WithoutBraces),
                           .time = time,
                           .desc = {},
                           .from = {},
                           .to = {},
                           .attention = act};
    Take(record);
    return record.id;
}

// What waits to be stored holds in memory already.
void EventLog::Await(const LogRecord& record)
{
    SessionMemory& memory = m_session.Memory();
    if (record.isDuty)
        memory.Await(record.id, dao::AddressTable::Table,
                     [record](SessionMemory& known) { known.PutOnDuty(record.from, record.type == 1); });
    else if (record.regroup)
        memory.Await(record.id, dao::RegroupTable::Table,
                     [record](SessionMemory& known) { record.regroup->ApplyTo(known); });
}

void EventLog::Take(const LogRecord& record)
{
    Await(record);
    const bool open = Open();
    m_queue.push_back({record});
    Sign(m_queue.back().record);
    if (m_late)
        MarkAway(m_queue.back().record);
    m_unsafe.insert(record.id);
    if (open && !m_retry.isActive())
        StoreNext();
    if (m_late)
        SpoolWaiting();
    if (m_late)
        Q_EMIT WaitingChanged(Waiting());
}

void EventLog::WriteWaiting()
{
    if (!Open())
        return;
    m_retry.stop();
    StoreNext();
}

QList<LogRecord> EventLog::WaitingRecords() const
{
    QList<LogRecord> records;
    for (const Entry& entry : m_queue)
        if (entry.record.IsEvent())
            records.append(entry.record);
    return records;
}

QList<LogRecord> EventLog::WaitingActs() const
{
    QList<LogRecord> acts;
    for (const Entry& entry : m_queue)
        if (entry.record.attention)
            acts.append(entry.record);
    return acts;
}

void EventLog::Settle(std::chrono::milliseconds limit)
{
    if (m_storing && m_cause.isEmpty())
        m_storeLane->Finish(limit);
}

QString EventLog::Cause() const
{
    if (!m_spoolCause.isEmpty())
        return FormatMessage(m_strings, CoreText::RecordsInMemory, {m_spoolCause});
    return m_cause;
}

// Begins to work for the operator's database; false while nobody is logged on.
bool EventLog::Open()
{
    if (m_open)
        return true;
    if (!m_session.IsOpen())
        return false;
    QString id;
    try {
        id = m_session.Database().Id();
        m_operator = m_session.Workspace().UserName();
        m_onServer = m_session.Workspace().IsOnServer();
        auto proof = m_spoolFolder.isEmpty() ? nullptr : std::make_unique<LogProof>(m_spoolFolder, id);
        if (m_lanes == Lane::Kind::OwnThread)
            m_store = std::make_shared<RecordStore>(
                m_session.Workspace().Again(), RecordStore::Present(), id,
                m_spoolFolder.isEmpty() ? nullptr : std::make_unique<MissingRecords>(m_spoolFolder, id),
                std::move(proof));
        else
            m_store = std::make_shared<RecordStore>(
                RecordStore::Opener(), [this]() -> dao::Workspace& { return m_session.Workspace(); }, id,
                nullptr, std::move(proof));
    } catch (const std::exception& failure) {
        Fail(DescribeCause(failure, m_strings));
        return false;
    }
    m_open = true;
    m_left = 0;
    m_follow = m_onServer;
    m_storeLane = std::make_unique<Lane>(m_lanes);
    m_spoolLane = std::make_unique<Lane>(m_lanes);
    m_spool = std::make_shared<Spool>();
    if (m_spoolFolder.isEmpty()) {
        TakeOver({}, ConsoleName({}, 1));
        return true;
    }
    m_spooling = true;
    m_storing = true; // what was left by an earlier run comes first
    m_spoolLane->Do([this, spool = m_spool, folder = m_spoolFolder, id]() -> Lane::Answer {
        try {
            spool->file = std::make_unique<EventSpool>(folder, id);
        } catch (const std::exception& failure) {
            spool->reason = QString::fromUtf8(failure.what());
            return [this] { TakeOver({}, ConsoleName({}, 1)); };
        }
        return [this, left = spool->file->Records(), console = spool->file->Console()] {
            TakeOver(left, console);
        };
    });
    return true;
}

// What is not stored by now waits for the next logon.
void EventLog::Close()
{
    if (!m_open)
        return;
    m_retry.stop();
    m_spoolLane->Finish(LastWait); // which may just be reading what was left
    m_storeLane->Finish(m_late ? std::chrono::milliseconds{0} : Patience);
    m_storeLane->Do([store = std::exchange(m_store, nullptr)]() mutable -> Lane::Answer {
        store.reset(); // on the thread that opened it
        return {};
    });
    m_spoolLane->Finish(LastWait);
    m_spooling = false;
    SpoolWaiting();
    m_spoolLane->Finish(LastWait);
    m_left = static_cast<int>(
        std::count_if(m_queue.begin(), m_queue.end(), [](const Entry& entry) { return entry.spooled; }));
    for (const Entry& entry : m_queue)
        if (!entry.spooled)
            ProgramLog::Write(
                QStringLiteral("Log record lost: time %1, type %2, desc \"%3\", from \"%4\", to \"%5\"")
                    .arg(entry.record.time.toString(Qt::ISODateWithMs), QString::number(entry.record.type),
                         entry.record.desc, entry.record.from, entry.record.to));
    m_spoolLane->Do([spool = std::exchange(m_spool, nullptr)]() mutable -> Lane::Answer {
        spool.reset();
        return {};
    });
    m_patience.stop();
    m_queue.clear();
    m_storeLane.reset();
    m_spoolLane.reset();
    m_open = m_storing = m_spooling = m_late = false;
    m_cause.clear();
    m_spoolCause.clear();
    m_console.clear();
    Q_EMIT WaitingChanged(0);
}

// Says who took the record.
void EventLog::Sign(LogRecord& record) const
{
    if (record.operatorName.isEmpty())
        record.operatorName = m_operator;
    if (record.console.isEmpty())
        record.console = m_console;
}

void EventLog::TakeOver(const QList<LogRecord>& left, const QString& console)
{
    m_spooling = m_storing = false;
    m_console = console;
    for (Entry& entry : m_queue)
        Sign(entry.record);
    for (const Entry& entry : m_queue)
        m_session.Memory().Stored(entry.record.id); // to be awaited behind what is older
    for (const LogRecord& record : left)
        Await(record);
    for (const Entry& entry : m_queue)
        Await(entry.record);
    for (auto record = left.crbegin(); record != left.crend(); ++record)
        m_queue.push_front({*record, true});
    if (!left.isEmpty()) {
        m_late = true;
        Q_EMIT WaitingChanged(Waiting());
    }
    StoreNext();
}

// The server is there again, or for the first time; it may be another one.
void EventLog::Follow()
{
    m_follow = m_open && m_onServer;
    if (m_follow && !m_retry.isActive())
        StoreNext();
}

void EventLog::StoreNext()
{
    if (!m_store || m_storing || (m_queue.empty() && !m_follow))
        return;
    QList<LogRecord> records;
    for (const Entry& entry : m_queue) {
        if (records.size() == MostAtOnce)
            break;
        records.append(entry.record);
    }
    m_storing = true;
    m_follow = false;
    m_patience.start();
    m_storeLane->Do([this, store = m_store, records]() -> Lane::Answer {
        const RecordStore::Outcome outcome = store->Store(records);
        return [this, outcome] { TakeOutcome(outcome); };
    });
}

void EventLog::TakeOutcome(const RecordStore::Outcome& outcome)
{
    m_storing = false;
    m_patience.stop();
    for (const QString& lost : outcome.unstorable)
        ProgramLog::Write(lost);
    QStringList ids;
    QList<LogRecord> acts;
    TellRefused(outcome);
    for (int i = 0; i < outcome.stored; ++i) {
        if (m_queue.front().record.attention)
            acts.append(m_queue.front().record);
        ids.append(m_queue.front().record.id);
        m_session.Memory().Stored(ids.last());
        m_queue.pop_front();
    }
    MarkSafe(ids);
    if (!acts.isEmpty())
        Q_EMIT ActsStored(acts);
    TellMissing(outcome);
    if (outcome.failure && m_queue.empty()) { // nothing waits: nobody need be told
        m_follow = true;
        m_retry.start();
        return;
    }
    if (outcome.failure) {
        try {
            std::rethrow_exception(outcome.failure);
        } catch (const std::exception& failure) {
            Fail(DescribeCause(failure, m_strings));
        }
        return;
    }
    m_cause.clear();
    if (m_queue.empty() && m_late) {
        m_late = false;
        m_spoolCause.clear();
        m_spoolLane->Do([spool = m_spool]() -> Lane::Answer {
            try {
                if (spool->file)
                    spool->file->Clear();
            } catch (const std::exception& failure) {
                // It stays, and is stored once more at the next logon, which changes nothing.
                ProgramLog::Write(QString::fromUtf8(failure.what()));
            }
            return {};
        });
    }
    Q_EMIT WaitingChanged(Waiting());
    StoreNext();
}

void EventLog::TellMissing(const RecordStore::Outcome& outcome)
{
    if (!outcome.missing)
        return;
    const QString text = TextOf(*outcome.missing, m_strings);
    ProgramLog::Write(text);
    Q_EMIT StoredAgain(text);
}

void EventLog::TellRefused(const RecordStore::Outcome& outcome)
{
    for (const auto& [record, reason] : outcome.refused) {
        m_session.Memory().Refused(record.id);
        try {
            std::rethrow_exception(reason);
        } catch (const std::exception& failure) {
            const QString text = record.regroup->DescribeRefusal(failure, m_session, m_strings);
            ProgramLog::Write(text);
            if (record.regroup->kind != RegroupChange::Kind::Withdrawn)
                Q_EMIT Refused(record.id, text);
        }
    }
}

void EventLog::Fail(const QString& cause)
{
    const bool isNew = cause != m_cause;
    m_cause = cause;
    m_retry.start();
    BeLate();
    if (!isNew)
        return;
    ProgramLog::Write(QStringLiteral("Waiting log records: %1").arg(cause));
    Q_EMIT Delayed(cause + u' ' + m_strings.LoadString(CoreText::RecordsKept));
}

void EventLog::BeLate()
{
    m_late = true;
    for (Entry& entry : m_queue)
        MarkAway(entry.record);
    SpoolWaiting();
    Q_EMIT WaitingChanged(Waiting());
}

void EventLog::SpoolWaiting()
{
    if (!m_open || m_spooling || m_spoolFolder.isEmpty())
        return;
    QList<LogRecord> records;
    QStringList ids;
    for (const Entry& entry : m_queue)
        if (!entry.spooled) {
            records.append(entry.record);
            ids.append(entry.record.id);
        }
    if (records.isEmpty())
        return;
    m_spooling = true;
    m_spoolLane->Do([this, spool = m_spool, records, ids]() -> Lane::Answer {
        QString reason;
        try {
            if (!spool->file)
                throw Error(ErrorCode::General, spool->reason);
            spool->file->Append(records);
        } catch (const Error& failure) {
            reason = failure.Description();
        }
        return [this, ids, reason] { TakeSpooled(ids, reason); };
    });
}

void EventLog::TakeSpooled(const QStringList& ids, const QString& failure)
{
    m_spooling = false;
    if (failure != m_spoolCause) {
        m_spoolCause = failure;
        if (!failure.isEmpty())
            ProgramLog::Write(failure);
        Q_EMIT WaitingChanged(Waiting());
    }
    if (!failure.isEmpty()) {
        m_retry.start();
        return;
    }
    const QSet<QString> spooled(ids.begin(), ids.end());
    for (Entry& entry : m_queue)
        if (spooled.contains(entry.record.id))
            entry.spooled = true;
    MarkSafe(ids);
    if (m_late)
        SpoolWaiting(); // what has come meanwhile
}

void EventLog::MarkSafe(const QStringList& ids)
{
    QStringList now;
    for (const QString& id : ids)
        if (m_unsafe.remove(id))
            now.append(id);
    if (!now.isEmpty())
        Q_EMIT Safe(now);
}
