#include "mainwindow/talkgroups/RegroupStore.h"

#include "core/base/Clock.h"
#include "core/eventlog/EventLog.h"
#include "core/session/DbSession.h"
#include "dao/Workspace.h"
#include "dao/base/Error.h"
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

void RegroupStore::Close(const QString& request)
{
    if (!request.isEmpty())
        m_eventLog.AppendRegroup(m_clock.Now(), {.request = request});
}

QString RegroupStore::Store(const RegroupRequest& confirmed, const QString& request)
{
    return m_eventLog.AppendRegroup(
        m_clock.Now(), {.kind = confirmed.move ? RegroupChange::Kind::Moved : RegroupChange::Kind::Entered,
                        .groupId = confirmed.groupId,
                        .oldGroupId = confirmed.oldGroupId,
                        .memberId = confirmed.memberId,
                        .pos = confirmed.pos,
                        .request = request});
}

QString RegroupStore::Store(const UngroupRequest& confirmed, const QString& request)
{
    return m_eventLog.AppendRegroup(
        m_clock.Now(),
        {.kind = confirmed.wholeGroup ? RegroupChange::Kind::Dissolved : RegroupChange::Kind::Left,
         .groupId = confirmed.groupId,
         .memberId = confirmed.memberId,
         .pos = confirmed.pos,
         .request = request});
}
