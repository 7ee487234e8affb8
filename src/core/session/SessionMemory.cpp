#include "core/session/SessionMemory.h"

#include "core/base/ProgramLog.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "dao/tables/AddressTable.h"
#include "dao/tables/RegistryTable.h"
#include "dao/tables/RegroupTable.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>
#include <utility>

namespace {

const QString& Address = dao::AddressTable::Table;
const QString& Regroup = dao::RegroupTable::Table;
const QString& Registry = dao::RegistryTable::Table;

const QEvent::Type ReadEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

} // namespace

SessionMemory::SessionMemory(IDbSession& session, DatabaseChanges& changes)
    : m_session(session),
      m_changes(changes)
{
    connect(&changes, &DatabaseChanges::Opened, this, [this] {
        Forget();
        ReadTables({});
    });
    connect(&changes, &DatabaseChanges::Closed, this, &SessionMemory::Forget);
    connect(&changes, &DatabaseChanges::Changed, this, &SessionMemory::ReadTables);
    connect(&changes, &DatabaseChanges::ChangedHere, this, &SessionMemory::ReadLater);
    connect(&changes, &DatabaseChanges::Free, this, &SessionMemory::ReadDue);
}

const Directory& SessionMemory::Addresses()
{
    ReadDue();
    return m_directory;
}

const std::vector<Regrouping>& SessionMemory::Regroupings()
{
    ReadDue();
    return m_regroupings;
}

QString SessionMemory::Setting(const QString& key, const QString& fallback)
{
    ReadDue();
    const auto found = m_settings.constFind(key);
    return found != m_settings.constEnd() ? *found : fallback;
}

void SessionMemory::Await(const QString& id, const QString& table, const Change& apply)
{
    m_awaited.push_back({id, table, apply, false});
    apply(*this);
}

// A table that was read meanwhile may have been read before or after the change, and what others have changed
// since is hidden behind it: it is told as unread, which is no failure if it is read once too often.
void SessionMemory::EndWait(const QString& id, bool refused)
{
    const auto ended = std::find_if(m_awaited.begin(), m_awaited.end(),
                                    [&](const Awaited& change) { return change.id == id; });
    if (ended == m_awaited.end())
        return;
    if (refused || ended->readMeanwhile)
        m_changes.KeepUnread(ended->table);
    m_awaited.erase(ended);
}

void SessionMemory::ReadAgain()
{
    for (const QString& table : {Address, Regroup})
        ReadOne(table);
}

bool SessionMemory::PutOnDuty(const QString& callsign, bool onDuty)
{
    return m_directory.SetOnDuty(callsign, onDuty);
}

void SessionMemory::PutRegrouping(const Regrouping& regrouping)
{
    DropMember(regrouping.memberId, regrouping.pos);
    m_regroupings.push_back(regrouping);
}

void SessionMemory::DropMember(qint32 memberId, quint8 pos)
{
    std::erase_if(
        m_regroupings, [=](const Regrouping& row) { return row.memberId == memberId && row.pos == pos; });
}

void SessionMemory::DropGroup(qint32 groupId, quint8 pos)
{
    std::erase_if(
        m_regroupings, [=](const Regrouping& row) { return row.groupId == groupId && row.pos == pos; });
}

// An empty name: all of them. What cannot be read is told again.
void SessionMemory::ReadTables(const QString& table)
{
    if (table.isEmpty())
        ReadAhead();
    for (const QString& name : {Address, Regroup, Registry}) {
        if (!table.isEmpty() && table != name)
            continue;
        try {
            ReadOne(name);
        } catch (const std::exception& failure) {
            ProgramLog::Write(
                QStringLiteral("Memory: %1 not read: %2").arg(name, QString::fromUtf8(failure.what())));
            m_changes.KeepUnread(name);
        }
    }
}

void SessionMemory::ReadAhead()
{
    try {
        m_session.Database().ReadAhead({{.source = Address}, {.source = Regroup}, {.source = Registry}});
    } catch (const std::exception&) {
        // Reading finds it out, too.
    }
}

void SessionMemory::ReadOne(const QString& table)
{
    dao::Database& database = m_session.Database();
    if (table == Address) {
        m_directory.Read(database);
    } else if (table == Regroup) {
        const auto rows = database.OpenSnapshot(table);
        const int group = rows->Position(dao::RegroupTable::GroupField);
        const int member = rows->Position(dao::RegroupTable::MemberField);
        const int pos = rows->Position(dao::RegroupTable::PosField);
        std::vector<Regrouping> read;
        for (; !rows->Eof(); rows->MoveNext())
            read.push_back({static_cast<qint32>(rows->NumberAt(group)),
                            static_cast<qint32>(rows->NumberAt(member)),
                            static_cast<quint8>(rows->NumberAt(pos))});
        m_regroupings = std::move(read);
    } else {
        const auto rows = database.OpenSnapshot(table);
        const int key = rows->Position(dao::RegistryTable::KeyField);
        const int value = rows->Position(dao::RegistryTable::ValueField);
        QHash<QString, QString> read;
        for (; !rows->Eof(); rows->MoveNext())
            read.insert(rows->TextAt(key), rows->TextAt(value));
        m_settings = std::move(read);
    }
    for (Awaited& change : m_awaited)
        if (change.table == table) {
            change.readMeanwhile = true;
            change.apply(*this);
        }
}

// Once for many changes, at the first look or before the event loop delivers anything else: the next radio
// event finds it done.
void SessionMemory::ReadLater(const QString& table)
{
    if (m_due.isEmpty())
        QCoreApplication::postEvent(this, new QEvent(ReadEvent), Qt::HighEventPriority);
    if (!m_due.contains(table))
        m_due.append(table);
}

void SessionMemory::customEvent(QEvent* event)
{
    if (event->type() == ReadEvent)
        ReadDue();
}

// Asked within a wait for the database, what was read last has to do.
void SessionMemory::ReadDue()
{
    if (m_changes.IsBusy())
        return;
    for (const QString& table : std::exchange(m_due, {}))
        ReadTables(table);
}

void SessionMemory::Forget()
{
    m_directory.Clear();
    m_regroupings.clear();
    m_settings.clear();
    m_due.clear();
    m_awaited.clear();
}
