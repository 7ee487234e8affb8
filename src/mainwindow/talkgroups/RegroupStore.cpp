#include "mainwindow/talkgroups/RegroupStore.h"

#include "core/base/ProgramLog.h"
#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "dao/Workspace.h"
#include "dao/base/Error.h"
#include "dao/tables/RegroupTable.h"
#include "dao/tables/UserProfileTable.h"
#include "mainwindow/base/SessionState.h"
#include "mainwindow/talkgroups/RegroupRequests.h"

#include <QUuid>

void RegroupStore::RequireRight()
{
    const SessionState now{.LoggedOn = true,
                           .Administrator = m_session.IsMemberOf(QLatin1String(dao::AdminsGroupName))};
    if (now.MayRegroup(false))
        return; // whatever the profile says
    const auto profile = dao::UserProfileTable::Find(m_session.Database(), m_session.Workspace().UserName());
    const bool allowed = profile && dao::UserProfileTable::Read(*profile).allowRegrouping;
    if (!now.MayRegroup(allowed))
        throw dao::Error(dao::Kind::NotPermitted);
}

QString RegroupStore::Open(const RequestedChange& change)
{
    const QString request = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const auto query = m_session.Database().QueryDef(QStringLiteral("add_regroup_request"));
    query->SetParameter(QStringLiteral("id"), request);
    query->SetParameter(QStringLiteral("gi"), change.groupId);
    query->SetParameter(QStringLiteral("mi"), change.memberId);
    query->SetParameter(QStringLiteral("p"), change.pos);
    query->Execute();
    return request;
}

void RegroupStore::Close(const QString& request) noexcept
{
    if (request.isEmpty())
        return;
    try {
        const auto query = m_session.Database().QueryDef(QStringLiteral("drop_regroup_request"));
        query->SetParameter(QStringLiteral("id"), request);
        query->Execute();
    } catch (const std::exception& failure) {
        ProgramLog::Write(QStringLiteral("Regroup request: %1").arg(QString::fromUtf8(failure.what())));
    }
}

bool RegroupStore::Store(const RegroupRequest& request)
{
    const dao::RegroupRecord record{
        .groupId = request.groupId, .memberId = request.memberId, .pos = request.pos};
    if (!request.move)
        dao::RegroupTable::Store(m_session.Database(), record);
    else if (!dao::RegroupTable::Move(m_session.Database(), request.oldGroupId, record))
        return false;
    m_session.Memory().PutRegrouping(
        {.groupId = request.groupId, .memberId = request.memberId, .pos = request.pos});
    return true;
}

void RegroupStore::Store(const UngroupRequest& request)
{
    if (request.wholeGroup)
        dao::RegroupTable::RemoveMembersOf(m_session.Database(), request.groupId, request.pos);
    else
        dao::RegroupTable::RemoveMember(m_session.Database(), request.memberId, request.pos);
    if (request.wholeGroup)
        m_session.Memory().DropGroup(request.groupId, request.pos);
    else
        m_session.Memory().DropMember(request.memberId, request.pos);
}
