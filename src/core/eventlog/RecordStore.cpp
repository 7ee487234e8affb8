#include "core/eventlog/RecordStore.h"

#include "dao/Transaction.h"
#include "dao/Workspace.h"
#include "dao/base/TextMatch.h"

#include <algorithm>

namespace {

constexpr auto Table = "event";
constexpr QLatin1String RecordId("record_id");      // where the database keeps it
constexpr QLatin1String RecordIndex("i_record_id"); // unique

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

void Insert(dao::Database& database, const LogRecord& record)
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

// A server's texts hold every character but NUL, which a received text may have: its sign stands for it
// there.
void InsertStorable(dao::Database& database, const LogRecord& record)
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

void StoreDuty(dao::Database& database, const LogRecord& change)
{
    const auto query = database.QueryDef(QStringLiteral("update_duty_status"));
    query->SetParameter(QStringLiteral("cs"), change.from);
    query->SetParameter(QStringLiteral("ds"), change.type == 1);
    query->Execute();
}

void StoreRegroup(dao::Workspace& workspace, const RegroupChange& change, bool endRequest)
{
    dao::Transaction transaction(workspace);
    change.StoreIn(workspace.Database(), endRequest);
    transaction.Commit();
}

// An operator who logs on after another one stores what the first has left, whose request expires by itself.
void StoreRegroup(dao::Workspace& workspace, const RegroupChange& change)
{
    try {
        StoreRegroup(workspace, change, true);
    } catch (const dao::Error& failure) {
        if (failure.kind != dao::Kind::NotPermitted)
            throw;
        StoreRegroup(workspace, change, false);
    }
}

// Of a change that was refused; left behind it expires by itself.
void EndRequest(dao::Workspace& workspace, const QString& request) noexcept
{
    try {
        StoreRegroup(workspace, {.request = request});
    } catch (const std::exception&) {
    }
}

void StoreRecord(dao::Workspace& workspace, const LogRecord& record)
{
    if (record.regroup)
        StoreRegroup(workspace, *record.regroup);
    else if (record.isDuty)
        StoreDuty(workspace.Database(), record);
    else
        InsertStorable(workspace.Database(), record);
}

} // namespace

RecordStore::RecordStore(Opener open, Present present, QString databaseId)
    : m_open(std::move(open)),
      m_present(std::move(present)),
      m_databaseId(std::move(databaseId))
{
}

RecordStore::~RecordStore() = default;

RecordStore::Outcome RecordStore::Store(const QList<LogRecord>& records)
{
    Outcome outcome;
    try {
        dao::Workspace& workspace = Workspace();
        for (const LogRecord& record : records)
            StoreOne(workspace, record, outcome);
    } catch (...) {
        outcome.failure = std::current_exception();
    }
    return outcome;
}

void RecordStore::StoreOne(dao::Workspace& workspace, const LogRecord& record, Outcome& outcome) const
{
    try {
        StoreRecord(workspace, record);
    } catch (const dao::Error& failure) {
        if (record.regroup && RegroupChange::IsRefusedBy(failure.kind)) {
            outcome.refused.append({record, std::current_exception()});
            EndRequest(workspace, record.regroup->request);
        } else if (failure.kind ==
                   dao::Kind::BadValue) { // never to be stored: the others must not wait for it
            outcome.unstorable.append(Lost(failure, record));
        } else if (failure.kind != dao::Kind::DuplicateKey || failure.values.value(0) != RecordIndex) {
            throw;
        }
        // Otherwise it had arrived, only the answer had not.
    }
    RequirePlace(); // what a deleted file took is gone with it
    ++outcome.stored;
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
