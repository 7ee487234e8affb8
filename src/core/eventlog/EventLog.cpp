#include "core/eventlog/EventLog.h"

#include "core/base/ProgramLog.h"
#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "dao/base/Error.h"
#include "dao/base/TextMatch.h"
#include "dao/records/Database.h"

#include <QDeadlineTimer>
#include <QUuid>
#include <algorithm>

namespace {

constexpr auto Table = "event";
constexpr QLatin1String RecordId("record_id");          // where the database keeps it
constexpr QLatin1String RecordIndex("i_record_id");     // unique
constexpr std::chrono::milliseconds AttemptPause{1000}; // between attempts
constexpr std::chrono::milliseconds LongestTurn{20};    // the window is kept from other work no longer

void NoteLostRecord(const QString& reason, const QDateTime& time, EventType type, const QStringList& texts)
{
    ProgramLog::Write(
        QStringLiteral("Log record not stored (%1): time %2, type %3, desc \"%4\", from \"%5\", to \"%6\"")
            .arg(reason, time.toString(Qt::ISODateWithMs), QString::number(static_cast<int>(type)), texts[0],
                 texts[1], texts[2]));
}

// The first `size` characters; a character beyond 16 bits counts as one and is never split.
QString CutTo(const QString& text, int size)
{
    if (text.size() <= size)
        return text;
    const QList<uint> characters = text.toUcs4();
    qsizetype units = 0;
    for (qsizetype i = 0; i < std::min<qsizetype>(size, characters.size()); ++i)
        units += QChar::requiresSurrogates(characters[i]) ? 2 : 1;
    return text.left(units);
}

} // namespace

EventLog::EventLog(IDbSession& session, const IStringSource& strings, QString spoolFolder)
    : m_session(session),
      m_strings(strings),
      m_spoolFolder(std::move(spoolFolder))
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &EventLog::WriteWaiting);
}

EventLog::~EventLog() = default;

void EventLog::AppendLogRecord(const QDateTime& time, EventType type, const QString& desc,
                               const QString& from, const QString& to)
{
    const LogRecord record{
        QUuid::createUuid().toString(QUuid::WithoutBraces), time, static_cast<int>(type), desc, from, to};
    try {
        dao::Database& database = m_session.Database();
        OpenSpool(database.Id());
        if (Waiting() > 0) { // earlier ones come first
            Keep(record);
            if (!m_failing)
                WriteWaiting();
            if (m_failing)
                throw Error(ErrorCode::General, m_strings.LoadString(CoreText::RecordsKept));
            return;
        }
        try {
            Store(database, record);
        } catch (const dao::Error& failure) {
            if (failure.kind != dao::Kind::ServerAway || !m_spool)
                throw;
            m_failing = true;
            Keep(record);
            throw Error(ErrorCode::General, DescribeError(failure, m_strings) + u' ' +
                                                m_strings.LoadString(CoreText::RecordsKept));
        }
    } catch (const std::exception& failure) {
        const QString description = DescribeError(failure, m_strings);
        if (!IsKept(record))
            NoteLostRecord(description, time, type, {desc, from, to});
        throw Error(CodeOf(failure), description);
    }
}

// A server's texts hold every character but NUL, which a received text may contain: there its symbol takes
// its place.
void EventLog::Store(dao::Database& database, const LogRecord& record)
{
    try {
        Insert(database, record);
    } catch (const dao::Error& failure) {
        if (failure.kind != dao::Kind::BadValue || !record.desc.contains(QChar::Null))
            throw;
        LogRecord storable = record;
        storable.desc = dao::WithSignsForNull(record.desc);
        Insert(database, storable);
    }
}

void EventLog::Insert(dao::Database& database, const LogRecord& record)
{
    const auto records = database.OpenTable(Table, true);
    records->AddNew();
    records->SetField("time_stamp", record.time);
    records->SetField("event_type", record.type);
    records->SetField("desc", CutTo(record.desc, database.FieldSize(Table, "desc")));
    records->SetField("from_address", record.from);
    records->SetField("to_address", record.to);
    if (records->FieldNames().contains(RecordId))
        records->SetField(RecordId, record.id);
    records->Update();
}

// Records of one database never reach another.
void EventLog::OpenSpool(const QString& databaseId)
{
    if (m_spoolFolder.isEmpty() || databaseId == m_databaseId)
        return;
    m_spool.reset(); // releases its lock
    m_spool = std::make_unique<EventSpool>(m_spoolFolder, databaseId);
    m_databaseId = databaseId;
    m_stored = 0;
    Q_EMIT WaitingChanged(Waiting());
}

void EventLog::Keep(const LogRecord& record)
{
    if (!m_spool)
        return;
    m_spool->Append(record);
    if (!m_timer.isActive())
        m_timer.start(AttemptPause);
    Q_EMIT WaitingChanged(Waiting());
}

bool EventLog::IsKept(const LogRecord& record) const
{
    return m_spool && !m_spool->Records().isEmpty() && m_spool->Records().last().id == record.id;
}

int EventLog::Waiting() const
{
    return m_spool ? static_cast<int>(m_spool->Records().size()) - m_stored : 0;
}

void EventLog::WriteWaiting()
{
    if (!m_session.IsOpen())
        return;
    try {
        dao::Database& database = m_session.Database();
        OpenSpool(database.Id());
        const QDeadlineTimer deadline(LongestTurn);
        while (Waiting() > 0 && !deadline.hasExpired())
            StoreNext(database);
        m_failing = false;
        if (m_spool && m_stored > 0 && Waiting() == 0) {
            m_spool->Clear();
            m_stored = 0;
        }
        if (Waiting() > 0)
            m_timer.start(0);
    } catch (const std::exception& failure) {
        if (!m_failing)
            ProgramLog::Write(
                QStringLiteral("Waiting log records: %1").arg(QString::fromUtf8(failure.what())));
        m_failing = true;
        m_timer.start(AttemptPause);
    }
    Q_EMIT WaitingChanged(Waiting());
}

void EventLog::StoreNext(dao::Database& database)
{
    const LogRecord& record = m_spool->Records()[m_stored];
    try {
        Store(database, record);
    } catch (const dao::Error& failure) {
        if (failure.kind == dao::Kind::BadValue) // never storable: the others must not wait for it
            NoteLostRecord(DescribeError(failure, m_strings), record.time,
                           static_cast<EventType>(record.type), {record.desc, record.from, record.to});
        else if (failure.kind != dao::Kind::DuplicateKey || failure.values.value(0) != RecordIndex)
            throw;
        // Otherwise it had arrived and only the answer was lost.
    }
    ++m_stored;
}
