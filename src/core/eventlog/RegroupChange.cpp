#include "core/eventlog/RegroupChange.h"

#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "dao/base/Error.h"
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

void RegroupChange::StoreIn(dao::Database& database, bool endRequest) const
{
    const dao::RegroupRecord record{.groupId = groupId, .memberId = memberId, .pos = pos};
    const auto found = request.isEmpty() ? nullptr : Find(database, request);
    if (found && found->NoMatch())
        return; // stored before, only the answer had not arrived
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
