#include "core/session/DynamicRegroup.h"

#include "core/session/DbSession.h"
#include "dao/records/Database.h"

bool IsInDynamicRegroup(IDbSession& session, qint32 addressId)
{
    const QString id = QString::number(addressId);
    const auto rows =
        session.Database().OpenSnapshot(QStringLiteral("select * from dynamic_regroup where group_id=") + id +
                                        QStringLiteral(" or member_id=") + id);
    return !rows->Eof();
}
