#include "mainwindow/RegroupStore.h"

#include "core/DbSession.h"
#include "dao/Database.h"
#include "mainwindow/RegroupRequests.h"

bool RegroupStore::Store(const RegroupRequest& request)
{
    if (!request.pending) {
        return false;
    }
    const auto rows = m_session.Database().OpenTable(QStringLiteral("dynamic_regroup"));
    if (request.move) {
        rows->SetIndex(QStringLiteral("PrimaryKey"));
        rows->Seek(request.oldGroupId, request.memberId, request.pos);
        if (rows->NoMatch()) {
            return false;
        }
        rows->Edit();
    } else {
        rows->SetIndex(QStringLiteral("MemberPos"));
        rows->Seek(request.memberId, request.pos);
        if (rows->NoMatch()) {
            rows->AddNew();
            rows->SetField(QStringLiteral("member_id"), request.memberId);
            rows->SetField(QStringLiteral("pos"), request.pos);
        } else {
            rows->Edit();
        }
    }
    rows->SetField(QStringLiteral("group_id"), request.groupId);
    rows->Update();
    return true;
}

bool RegroupStore::Store(const UngroupRequest& request)
{
    if (!request.pending) {
        return false;
    }
    const auto query = m_session.Database().QueryDef(request.wholeGroup ? QStringLiteral("ungroup")
                                                                        : QStringLiteral("ind_ungroup"));
    if (request.wholeGroup) {
        query->SetParameter(QStringLiteral("gi"), request.groupId);
    } else {
        query->SetParameter(QStringLiteral("mi"), request.memberId);
    }
    query->SetParameter(QStringLiteral("p"), request.pos);
    query->Execute();
    return true;
}
