#include "core/eventlog/RegroupChange.h"

#include "core/eventlog/AttentionAct.h"
#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "dao/base/Error.h"
#include "dao/tables/AddressTable.h"
#include "dao/tables/RegroupActTable.h"
#include "dao/tables/RegroupTable.h"

#include <memory>

namespace {

std::unique_ptr<dao::Recordset> Find(dao::Database& database, const QString& request)
{
    auto requests = database.OpenTable(QStringLiteral("regroup_request"));
    requests->SetIndex(QStringLiteral("PrimaryKey"));
    requests->Seek(request);
    return requests;
}

// What earlier consoles have left goes with it.
void EndWith(dao::Database& database, const QString& request)
{
    const auto query = database.QueryDef(QStringLiteral("drop_regroup_request"));
    query->SetParameter(QStringLiteral("id"), request);
    query->Execute();
}

// As the database has it now; empty for no entry.
QString StoredCallsign(dao::Database& database, qint32 id)
{
    if (id == 0)
        return {};
    const auto entries = database.OpenTable(dao::AddressTable::Table);
    entries->SetIndex(QStringLiteral("PrimaryKey"));
    entries->Seek(id);
    return entries->NoMatch() ? QString() : entries->Field(dao::AddressTable::CallsignField).toString();
}

QString CallsignOf(qint32 id, SessionMemory& memory)
{
    const auto entry = memory.Addresses().Find(id);
    return entry ? Directory::Text(entry->callsign) : QString::number(id);
}

QString Reason(const std::exception& failure, const IStringSource& strings)
{
    const auto* error = dynamic_cast<const dao::Error*>(&failure);
    if (error != nullptr && error->kind == dao::Kind::RecordGone)
        return strings.LoadString(CoreText::GroupChangedMeanwhile);
    if (error != nullptr && error->kind == dao::Kind::InUse)
        return strings.LoadString(CoreText::NotInDirectory);
    if (error != nullptr && error->kind == dao::Kind::NotPermitted)
        return strings.LoadString(CoreText::MayNotRegroupNow);
    return DescribeError(failure, strings);
}

} // namespace

void RegroupChange::ApplyTo(SessionMemory& memory) const
{
    switch (kind) {
    case Kind::Withdrawn:
        return;
    case Kind::Entered:
    case Kind::Moved:
        return memory.PutRegrouping({.groupId = groupId, .memberId = memberId, .pos = pos});
    case Kind::Left:
        return memory.DropMember(memberId, pos);
    case Kind::Dissolved:
        return memory.DropGroup(groupId, pos);
    }
}

// Of every radio that the change concerns, as long as the table holds what it replaces.
void RegroupChange::AppendActs(dao::Database& database, const AttentionActor& actor) const
{
    const bool enters = kind == Kind::Entered || kind == Kind::Moved;
    std::vector<dao::RegroupRecord> before;
    const auto rows = dao::RegroupTable::OpenSnapshot(database);
    for (; !rows->Eof(); rows->MoveNext()) {
        const dao::RegroupRecord record = dao::RegroupTable::Read(*rows);
        const bool concerned =
            kind == Kind::Dissolved ? record.groupId == groupId : record.memberId == memberId;
        if (concerned && record.pos == pos)
            before.push_back(record);
    }
    rows->Close();
    if (before.empty() && enters)
        before.push_back({.memberId = memberId, .pos = pos});
    for (const dao::RegroupRecord& record : before) {
        const qint32 entered = enters ? groupId : 0;
        dao::RegroupActTable::Append(database, {.id = actor.id,
                                                .memberId = record.memberId,
                                                .member = StoredCallsign(database, record.memberId),
                                                .oldGroupId = record.groupId,
                                                .oldGroup = StoredCallsign(database, record.groupId),
                                                .groupId = entered,
                                                .group = StoredCallsign(database, entered),
                                                .pos = pos,
                                                .time = actor.time,
                                                .operatorName = actor.operatorName,
                                                .console = actor.console});
    }
}

void RegroupChange::StoreIn(dao::Database& database, bool endRequest, const AttentionActor& actor) const
{
    const dao::RegroupRecord record{.groupId = groupId, .memberId = memberId, .pos = pos};
    const auto found = request.isEmpty() ? nullptr : Find(database, request);
    if (found && found->NoMatch())
        return; // stored before, only the answer had not arrived
    // One that an older program has left does not say when it was done.
    if (kind != Kind::Withdrawn && actor.time.isValid())
        AppendActs(database, actor);
    switch (kind) {
    case Kind::Withdrawn:
        break;
    case Kind::Entered:
        dao::RegroupTable::Store(database, record);
        break;
    case Kind::Moved:
        if (!dao::RegroupTable::Move(database, oldGroupId, record))
            throw dao::Error(dao::Kind::RecordGone);
        break;
    case Kind::Left:
        dao::RegroupTable::RemoveMember(database, memberId, pos);
        break;
    case Kind::Dissolved:
        dao::RegroupTable::RemoveMembersOf(database, groupId, pos);
        break;
    }
    if (!found || !endRequest)
        return;
    // After hours without a database old requests belong to changes that still wait: those must stay.
    if (kind == Kind::Withdrawn)
        EndWith(database, request);
    else
        found->Delete();
}

QString RegroupChange::DescribeRefusal(const std::exception& reason, IDbSession& session,
                                       const IStringSource& strings) const
{
    SessionMemory& memory = session.Memory();
    const QString why = Reason(reason, strings);
    const QString place = QString::number(pos);
    if (kind == Kind::Left)
        return FormatMessage(strings, CoreText::LeftNotRecorded, {CallsignOf(memberId, memory), place, why});
    if (kind == Kind::Dissolved)
        return FormatMessage(strings, CoreText::DissolvedNotRecorded,
                             {CallsignOf(groupId, memory), place, why});
    return FormatMessage(strings, CoreText::EnteredNotRecorded,
                         {CallsignOf(memberId, memory), CallsignOf(groupId, memory), place, why});
}
