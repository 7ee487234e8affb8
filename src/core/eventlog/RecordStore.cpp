#include "core/eventlog/RecordStore.h"

#include "dao/Transaction.h"
#include "dao/Workspace.h"
#include "dao/base/TextMatch.h"
#include <algorithm>
#include <bit>
#include <optional>
#include <utility>

namespace {

constexpr auto Table = "event";
constexpr QLatin1String RecordIndex("i_record_id"); // unique
constexpr qsizetype MostAgain = 256;                // in one statement
constexpr qsizetype MostNumber = 64;                // characters, as the directory's

QString Lost(const std::exception& reason, const LogRecord& record)
{
    return QStringLiteral("Log record not stored (%1): time %2, type %3, desc \"%4\", from \"%5\", to \"%6\"")
        .arg(QString::fromUtf8(reason.what()), record.time.toString(Qt::ISODateWithMs),
             QString::number(record.type), record.desc, record.from, record.to);
}

// The first `size` characters; a character beyond 16 bits is one and is not cut in two.
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

QVariant OrNull(const QString& text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

const QStringList Fields{"time_stamp", "event_type", "desc",    "from_address",   "to_address",
                         "record_id",  "operator",   "console", "console_number", "from_number",
                         "to_number",  "direction",  "chain"};

dao::EventRecord AsStored(const LogRecord& record, int descSize)
{
    return {.time = record.time,
            .kind = record.type,
            .desc = CutTo(record.desc, descSize),
            .from = record.from,
            .to = record.to,
            .fromNumber = record.fromNumber.left(MostNumber),
            .toNumber = record.toNumber.left(MostNumber),
            .direction = static_cast<int>(record.way),
            .operatorName = record.operatorName,
            .console = record.console,
            .recordId = record.id};
}

QVariantList ValuesOf(const dao::EventRecord& record)
{
    return {record.time,
            record.kind,
            record.desc,
            record.from,
            record.to,
            record.recordId,
            OrNull(record.operatorName),
            OrNull(record.console),
            record.console.isEmpty() ? QVariant() : QVariant(record.consoleNumber),
            OrNull(record.fromNumber),
            OrNull(record.toNumber),
            record.direction == 0 ? QVariant() : QVariant(record.direction),
            OrNull(record.chain)};
}

// The database's last word, so that waiting changes nothing.
bool IsRefusal(dao::Kind kind)
{
    return kind == dao::Kind::NotPermitted || kind == dao::Kind::RecordGone ||
           kind == dao::Kind::RecordChanged || kind == dao::Kind::InUse || kind == dao::Kind::BadValue ||
           kind == dao::Kind::DuplicateKey;
}

void StoreDuty(dao::Database& database, const LogRecord& change)
{
    const auto query = database.QueryDef(QStringLiteral("update_duty_status"));
    query->SetParameter(QStringLiteral("cs"), change.from);
    query->SetParameter(QStringLiteral("ds"), change.type == 1);
    query->ExecuteLater();
}

void StoreRegroup(dao::Workspace& workspace, const RegroupChange& change, const AttentionActor& actor,
                  bool endRequest)
{
    dao::Transaction transaction(workspace);
    change.StoreIn(workspace.Database(), endRequest, actor);
    transaction.Commit();
}

void StoreAttention(dao::Workspace& workspace, const LogRecord& record)
{
    dao::Transaction transaction(workspace);
    StoreAct(workspace.Database(), *record.attention, record.Actor());
    transaction.Commit();
}

// An operator who logs on after another one stores what the first has left, whose request expires by itself.
void StoreRegroup(dao::Workspace& workspace, const RegroupChange& change, const AttentionActor& actor)
{
    try {
        StoreRegroup(workspace, change, actor, true);
    } catch (const dao::Error& failure) {
        if (failure.kind != dao::Kind::NotPermitted)
            throw;
        StoreRegroup(workspace, change, actor, false);
    }
}

// Of a change that was refused; left behind it expires by itself.
void EndRequest(dao::Workspace& workspace, const QString& request) noexcept
{
    try {
        StoreRegroup(workspace, {.request = request}, {});
    } catch (const std::exception&) {
    }
}

} // namespace

RecordStore::RecordStore(Opener open, Present present, QString databaseId,
                         std::unique_ptr<MissingRecords> missing, std::unique_ptr<LogProof> proof)
    : m_open(std::move(open)),
      m_present(std::move(present)),
      m_databaseId(std::move(databaseId)),
      m_missing(std::move(missing)),
      m_proof(std::move(proof))
{
}

RecordStore::~RecordStore() = default;

RecordStore::Outcome RecordStore::Store(const QList<LogRecord>& records)
{
    Outcome outcome;
    try {
        dao::Workspace& workspace = Workspace();
        Follow(outcome);
        StorePart(workspace, records, outcome);
    } catch (...) {
        Forget(); // something may have been stored
        outcome.failure = std::current_exception();
    }
    KeepHeads();
    Keep(records, outcome);
    return outcome;
}

void RecordStore::StorePart(dao::Workspace& workspace, const QList<LogRecord>& records, Outcome& outcome)
{
    // One statement is a transaction by itself; powers of two, so that there are few different ones.
    const bool onlyEvents =
        std::all_of(records.begin(), records.end(), [](const LogRecord& record) { return record.IsEvent(); });
    const auto number = static_cast<std::size_t>(records.size());
    const QList<LogRecord> batch =
        onlyEvents ? records.first(static_cast<qsizetype>(std::bit_floor(number))) : records;
    if (batch.size() > 1 && StoreTogether(workspace, batch)) {
        outcome.stored = static_cast<int>(batch.size());
        return;
    }
    for (const LogRecord& record : batch)
        StoreOne(workspace, record, outcome);
}

// Asks nothing as long as the connection is the same.
void RecordStore::Follow(Outcome& outcome)
{
    if (!m_missing || !m_workspace || !m_workspace->IsOnServer())
        return;
    m_missing->Follow(*m_workspace, [&](QList<LogRecord> missing) {
        Forget(); // this server's last numbers are others
        while (!missing.isEmpty()) {
            Outcome again;
            StorePart(*m_workspace, missing.first(std::min(MostAgain, missing.size())), again);
            outcome.unstorable += again.unstorable;
            missing.remove(0, again.stored);
        }
    });
    if (const auto report = m_missing->TakeReport())
        outcome.missing = report;
}

void RecordStore::Keep(const QList<LogRecord>& records, const Outcome& outcome)
{
    if (!m_missing)
        return;
    QList<LogRecord> kept;
    for (const LogRecord& record : records.first(outcome.stored))
        if (record.IsEvent())
            kept.append(record);
    m_missing->Keep(kept);
}

// False when the database refuses one of them: then none is stored.
bool RecordStore::StoreTogether(dao::Workspace& workspace, const QList<LogRecord>& records)
{
    QList<LogRecord> events;
    QList<LogRecord> changes;
    for (const LogRecord& record : records)
        (record.IsEvent() ? events : changes).append(record);
    try {
        std::optional<dao::Transaction> transaction;
        if (!changes.isEmpty())
            transaction.emplace(workspace, dao::Transaction::Changes::Together);
        InsertTogether(workspace.Database(), events);
        for (const LogRecord& change : changes)
            if (change.regroup)
                change.regroup->StoreIn(workspace.Database(), true, change.Actor());
            else if (change.attention)
                StoreAct(workspace.Database(), *change.attention, change.Actor());
            else
                StoreDuty(workspace.Database(), change);
        if (transaction)
            transaction->Commit();
    } catch (const dao::Error& failure) {
        Forget();
        if (IsRefusal(failure.kind))
            return false;
        throw;
    }
    RequirePlace(); // what a deleted file took is gone with it
    return true;
}

void RecordStore::InsertTogether(dao::Database& database, const QList<LogRecord>& events)
{
    for (qsizetype first = 0; first < events.size();) {
        const auto left = static_cast<std::size_t>(events.size() - first);
        const auto size = static_cast<qsizetype>(std::bit_floor(left));
        std::vector<QVariantList> rows;
        for (const LogRecord& record : events.mid(first, size))
            rows.push_back(NextValues(database, record));
        database.Append(Table, Fields, rows);
        first += size;
    }
}

void RecordStore::StoreOne(dao::Workspace& workspace, const LogRecord& record, Outcome& outcome)
{
    try {
        StoreRecord(workspace, record);
    } catch (const dao::Error& failure) {
        if (record.regroup && IsRefusal(failure.kind)) {
            outcome.refused.append({record, std::current_exception()});
            EndRequest(workspace, record.regroup->request);
        } else if (failure.kind == dao::Kind::BadValue ||
                   (record.attention &&
                    failure.kind ==
                        dao::Kind::NotPermitted)) { // never to be stored: the others must not wait for it
            outcome.unstorable.append(Lost(failure, record));
        } else if (failure.kind != dao::Kind::DuplicateKey || failure.values.value(0) != RecordIndex) {
            throw;
        } // otherwise it had arrived, only the answer had not
    }
    RequirePlace();
    ++outcome.stored;
}

void RecordStore::StoreRecord(dao::Workspace& workspace, const LogRecord& record)
{
    if (record.regroup)
        return StoreRegroup(workspace, *record.regroup, record.Actor());
    if (record.attention)
        return StoreAttention(workspace, record);
    if (record.isDuty)
        return StoreDuty(workspace.Database(), record);
    try {
        Insert(workspace.Database(), record);
    } catch (const dao::Error& failure) {
        if (failure.kind != dao::Kind::BadValue || !record.desc.contains(QChar::Null))
            throw;
        // A server's texts hold every character but NUL, which a received text may have: its sign stands for
        // it there.
        LogRecord storable = record;
        storable.desc = dao::WithSignsForNull(record.desc);
        Insert(workspace.Database(), storable);
    }
}

void RecordStore::Insert(dao::Database& database, const LogRecord& record)
{
    try {
        const QVariantList values = NextValues(database, record);
        const auto rows = database.OpenTable(Table, true);
        rows->AddNew();
        for (qsizetype i = 0; i < Fields.size(); ++i)
            rows->SetField(Fields[i], values[i]);
        rows->Update();
    } catch (const dao::Error&) {
        m_last.remove(record.console);
        throw;
    }
}

// Of the console's next record, which is then its last.
QVariantList RecordStore::NextValues(dao::Database& database, const LogRecord& record)
{
    dao::EventRecord next = AsStored(record, database.FieldSize(Table, "desc"));
    if (record.console.isEmpty())
        return ValuesOf(next);
    auto& last = LastOf(database, record.console);
    next.consoleNumber = ++last.number;
    if (m_proof)
        next.chain = m_proof->ChainOf(next, last.chain);
    if (!next.chain.isEmpty())
        last.chain = next.chain;
    m_grown.insert(record.console);
    return ValuesOf(next);
}

// The database itself keeps the count: the console's last record has it.
dao::EventTable::Last& RecordStore::LastOf(dao::Database& database, const QString& console)
{
    const auto known = m_last.find(console);
    return known != m_last.end() ? *known
                                 : *m_last.insert(console, dao::EventTable::LastOf(database, console));
}

// Of what is stored for certain. A head that falls behind does no harm.
void RecordStore::KeepHeads()
{
    for (const QString& console : std::exchange(m_grown, {}))
        if (const auto last = m_last.constFind(console); m_proof && last != m_last.constEnd())
            m_proof->Keep(console, last->number, last->chain);
}

void RecordStore::Forget()
{
    m_last.clear();
    m_grown.clear();
}

dao::Workspace& RecordStore::Workspace()
{
    if (m_present)
        return m_present();
    if (m_workspace && !m_workspace->Database().IsInPlace())
        m_workspace.reset();
    if (!m_workspace)
        m_workspace = m_open();
    RequirePlace();
    return *m_workspace;
}

void RecordStore::RequirePlace() const
{
    if (!m_workspace)
        return;
    const dao::Database& database = m_workspace->Database();
    if (!database.IsInPlace() || database.Id() != m_databaseId)
        throw dao::Error(dao::Kind::Replaced, {});
}
