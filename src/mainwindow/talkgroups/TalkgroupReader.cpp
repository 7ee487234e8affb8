#include "mainwindow/talkgroups/TalkgroupReader.h"

#include "core/session/DbSession.h"
#include "dao/records/Database.h"

namespace {

std::unique_ptr<dao::Recordset> OpenGroups(IDbSession& session, const QString& queryName,
                                           const QString& lookfor)
{
    const auto query = session.Database().QueryDef(queryName);
    query->SetParameter(QStringLiteral("lookfor"), lookfor);
    return query->OpenSnapshot();
}

} // namespace

void TalkgroupReader::ReadStatic(const QString& lookfor, int most, std::vector<TalkgroupRow>& groups) const
{
    const auto rows = OpenGroups(m_session, QStringLiteral("find_group_ob_callsign"), lookfor);
    const int callsign = rows->Position(QStringLiteral("callsign"));
    const int ident = rows->Position(QStringLiteral("IDENT"));
    const int dynamic = rows->Position(QStringLiteral("dynamic"));
    for (; !rows->Eof() && static_cast<int>(groups.size()) < most; rows->MoveNext())
        if (rows->NumberAt(dynamic) == 0)
            groups.push_back({.callsign = rows->TextAt(callsign), .ident = rows->TextAt(ident)});
}

void TalkgroupReader::ReadDynamic(const QString& lookfor, int most, std::vector<TalkgroupRow>& groups) const
{
    const auto rows = OpenGroups(m_session, QStringLiteral("find_group_ob_ident"), lookfor);
    const int callsign = rows->Position(QStringLiteral("callsign"));
    const int ident = rows->Position(QStringLiteral("IDENT"));
    const int dynamic = rows->Position(QStringLiteral("dynamic"));
    const int id = rows->Position(QStringLiteral("address_id"));
    const int pos = rows->Position(QStringLiteral("pos"));
    for (; !rows->Eof() && static_cast<int>(groups.size()) < most; rows->MoveNext()) {
        if (rows->NumberAt(dynamic) != 0) {
            groups.push_back({.callsign = rows->TextAt(callsign),
                              .ident = rows->TextAt(ident),
                              .id = static_cast<qint32>(rows->NumberAt(id)),
                              .pos = static_cast<quint8>(rows->NumberAt(pos))});
        }
    }
}

void TalkgroupReader::ReadMembers(const QString& ownCallsign, std::vector<GroupMemberRow>& members) const
{
    const auto rows = m_session.Database().OpenSnapshot(QStringLiteral("dynamic_members"));
    const int callsign = rows->Position(QStringLiteral("callsign"));
    const int group = rows->Position(QStringLiteral("group_id"));
    const int member = rows->Position(QStringLiteral("member_id"));
    const int pos = rows->Position(QStringLiteral("pos"));
    for (; !rows->Eof(); rows->MoveNext()) {
        QString name = rows->TextAt(callsign);
        if (name != ownCallsign) {
            members.push_back({.callsign = std::move(name),
                               .groupId = static_cast<qint32>(rows->NumberAt(group)),
                               .memberId = static_cast<qint32>(rows->NumberAt(member)),
                               .pos = static_cast<quint8>(rows->NumberAt(pos))});
        }
    }
}
