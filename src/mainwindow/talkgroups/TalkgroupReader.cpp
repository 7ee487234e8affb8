#include "mainwindow/talkgroups/TalkgroupReader.h"

#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "dao/base/TextMatch.h"
#include "dao/tables/AddressTable.h"
#include "dao/tables/RegroupTable.h"

#include <algorithm>

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
    if (m_from == From::Memory) {
        groups = Draw(lookfor, false);
        groups.resize(std::min(groups.size(), static_cast<std::size_t>(most)));
        return;
    }
    const auto rows = OpenGroups(m_session, QStringLiteral("find_group_ob_callsign"), lookfor);
    const int callsign = rows->Position(dao::AddressTable::CallsignField);
    const int ident = rows->Position(dao::AddressTable::IdentField);
    const int dynamic = rows->Position(dao::AddressTable::DynamicField);
    for (; !rows->Eof() && static_cast<int>(groups.size()) < most; rows->MoveNext())
        if (rows->NumberAt(dynamic) == 0)
            groups.push_back({.callsign = rows->TextAt(callsign), .ident = rows->TextAt(ident)});
}

void TalkgroupReader::ReadDynamic(const QString& lookfor, int most, std::vector<TalkgroupRow>& groups) const
{
    if (m_from == From::Memory) {
        groups = Draw(lookfor, true);
        std::sort(groups.begin(), groups.end(), [](const TalkgroupRow& one, const TalkgroupRow& other) {
            return one.ident.toUtf8() < other.ident.toUtf8();
        });
        groups.resize(std::min(groups.size(), static_cast<std::size_t>(most)));
        return;
    }
    const auto rows = OpenGroups(m_session, QStringLiteral("find_group_ob_ident"), lookfor);
    const int callsign = rows->Position(dao::AddressTable::CallsignField);
    const int ident = rows->Position(dao::AddressTable::IdentField);
    const int dynamic = rows->Position(dao::AddressTable::DynamicField);
    const int id = rows->Position(dao::AddressTable::IdField);
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
    if (m_from == From::Memory)
        return DrawMembers(ownCallsign, members);
    const auto rows = m_session.Database().OpenSnapshot(QStringLiteral("dynamic_members"));
    const int callsign = rows->Position(dao::AddressTable::CallsignField);
    const int group = rows->Position(dao::RegroupTable::GroupField);
    const int member = rows->Position(dao::RegroupTable::MemberField);
    const int pos = rows->Position(dao::RegroupTable::PosField);
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

// In the order of callsigns.
std::vector<TalkgroupRow> TalkgroupReader::Draw(const QString& lookfor, bool dynamic) const
{
    std::vector<TalkgroupRow> groups;
    const dao::LookFor wanted(lookfor);
    const Directory& directory = m_session.Memory().Addresses();
    for (std::size_t i = 0; i < directory.Size(); ++i) {
        const Directory::Entry entry = directory.At(i);
        if (entry.type != Directory::Type::Talkgroup || entry.dynamic != dynamic)
            continue;
        TalkgroupRow row{.callsign = Directory::Text(entry.callsign), .ident = Directory::Text(entry.ident)};
        if (dynamic) {
            row.id = entry.id;
            row.pos = entry.position;
        }
        if (wanted.MatchesEverything() || wanted.Matches(row.callsign) || wanted.Matches(row.ident))
            groups.push_back(std::move(row));
    }
    return groups;
}

// By group, position and callsign, as the query has them.
void TalkgroupReader::DrawMembers(const QString& ownCallsign, std::vector<GroupMemberRow>& members) const
{
    SessionMemory& memory = m_session.Memory();
    for (const Regrouping& row : memory.Regroupings()) {
        const auto entry = memory.Addresses().Find(row.memberId);
        QString callsign = entry ? Directory::Text(entry->callsign) : QString();
        if (entry && callsign != ownCallsign)
            members.push_back({.callsign = std::move(callsign),
                               .groupId = row.groupId,
                               .memberId = row.memberId,
                               .pos = row.pos});
    }
    std::sort(members.begin(), members.end(), [](const GroupMemberRow& one, const GroupMemberRow& other) {
        const auto key = [](const GroupMemberRow& row) {
            return std::tuple(row.groupId, row.pos, dao::Fold(row.callsign).toUtf8());
        };
        return key(one) < key(other);
    });
}
