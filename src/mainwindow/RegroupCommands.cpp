#include "mainwindow/RegroupCommands.h"

#include "core/Errors.h"
#include "core/FormatMessage.h"
#include "core/ProgramLog.h"
#include "core/Prompt.h"
#include "core/Settings.h"
#include "core/StringSource.h"
#include "mainwindow/NodeClass.h"
#include "mainwindow/NodeKeys.h"
#include "mainwindow/TalkgroupModel.h"
#include "mainwindow/TextIds.h"
#include "radio/Map27Executive.h"

#include <QScopeGuard>

namespace {

constexpr int LowestPosition = 1;
constexpr int HighestPosition = 16;
const QString NoGroup = QStringLiteral("/0000000"); // the address that takes a radio out

QString KeyOf(const QModelIndex& node)
{
    return node.data(TalkgroupModel::KeyRole).toString();
}

QString TagOf(const QModelIndex& node)
{
    return node.data(TalkgroupModel::TagRole).toString();
}

} // namespace

RegroupCommands::RegroupCommands(const TalkgroupServices& services, TalkgroupModel& model)
    : m_services(services),
      m_model(model),
      m_store(services.session)
{
}

QString RegroupCommands::ShownDefaultGroup() const
{
    const QString key = DefaultGroupKey();
    return IsDynamicGroupNode(m_model.Find(key)) ? key : QString();
}

void RegroupCommands::SetDefaultGroup(const QModelIndex& groupNode)
{
    const QString before = DefaultGroupKey();
    const QString key = KeyOf(groupNode);
    m_services.settings.SetDefaultGroupKey(key);
    ShowGroup(before);
    ShowGroup(key);
}

void RegroupCommands::Drop(const QString& memberKey, const QString& groupKey)
{
    const QModelIndex member = m_model.Find(memberKey);
    const QModelIndex group = m_model.Find(groupKey);
    if (!IsDynamicMemberNode(member) || !IsDropTarget(member, group)) {
        return;
    }
    const MemberKeyParts from = PartsOfMemberKey(memberKey);
    const GroupKeyParts to = PartsOfGroupKey(groupKey);
    const RegroupRequest request{.pending = true,
                                 .sourceNodeKey = memberKey,
                                 .groupNodeKey = groupKey,
                                 .memberCallsign = TagOf(member),
                                 .oldGroupId = from.groupId,
                                 .groupId = to.groupId,
                                 .memberId = from.memberId,
                                 .pos = to.pos,
                                 .move = to.pos == from.pos};
    if (Send(request.memberCallsign, request.pos, TagOf(group))) {
        Fill(request);
    }
}

void RegroupCommands::RegroupToDefault(const QString& callsign, qint32 memberId)
{
    const QString groupKey = ShownDefaultGroup();
    if (groupKey.isEmpty()) {
        return;
    }
    const GroupKeyParts to = PartsOfGroupKey(groupKey);
    if (Send(callsign, to.pos, TagOf(m_model.Find(groupKey)))) {
        Fill(RegroupRequest{.pending = true,
                            .sourceNodeKey = {},
                            .groupNodeKey = groupKey,
                            .memberCallsign = callsign,
                            .oldGroupId = 0,
                            .groupId = to.groupId,
                            .memberId = memberId,
                            .pos = to.pos,
                            .move = false});
    }
}

void RegroupCommands::Ungroup(const QModelIndex& node)
{
    UngroupRequest request{.pending = true, .wholeGroup = IsDynamicGroupNode(node), .nodeKey = KeyOf(node)};
    if (request.wholeGroup) {
        const GroupKeyParts parts = PartsOfGroupKey(request.nodeKey);
        request.groupId = parts.groupId;
        request.pos = parts.pos;
    } else if (IsDynamicMemberNode(node)) {
        const MemberKeyParts parts = PartsOfMemberKey(request.nodeKey);
        request.memberId = parts.memberId;
        request.pos = parts.pos;
    } else {
        return;
    }
    if (Send(TagOf(node), request.pos, NoGroup)) {
        Fill(request);
    }
}

void RegroupCommands::SendGroupName(const QModelIndex& node)
{
    const bool group = IsDynamicGroupNode(node);
    if (!group && !IsDynamicMemberNode(node)) {
        return;
    }
    const quint8 pos = group ? PartsOfGroupKey(KeyOf(node)).pos : PartsOfMemberKey(KeyOf(node)).pos;
    if (IsPosition(pos)) {
        m_services.executive.SendGroupName(TagOf(node), pos, TagOf(group ? node : node.parent()));
    }
}

bool RegroupCommands::StoreRegroup()
{
    const auto answered = qScopeGuard([this] { m_regroup.pending = false; });
    if (!m_regroup.pending) {
        return false;
    }
    if (!m_store.Store(m_regroup)) {
        throw Error(
            ErrorCode::First + MainText::MemberMovedMeanwhile,
            FormatMessage(m_services.strings, MainText::MemberMovedMeanwhile, {m_regroup.memberCallsign}));
    }
    return true;
}

bool RegroupCommands::StoreUngroup()
{
    const auto answered = qScopeGuard([this] { m_ungroup.pending = false; });
    return m_store.Store(m_ungroup);
}

void RegroupCommands::ReflectRegroup()
{
    const RegroupRequest& done = m_regroup;
    if (done.move) {
        m_model.MoveMember(done.sourceNodeKey, done.groupId);
    } else {
        m_model.RemoveElsewhere(done.groupId, done.memberId, done.pos);
        if (done.memberCallsign != m_services.executive.MyCallsign()) {
            m_model.AddMember(done.memberCallsign, done.groupId, done.memberId, done.pos);
        }
        m_model.SetPicture(done.sourceNodeKey, QLatin1String(TalkgroupModel::MemberPicture));
    }
    const QString memberKey = MakeMemberKey(done.groupId, done.memberId, done.pos);
    m_model.SetPicture(memberKey, QLatin1String(TalkgroupModel::MemberPicture));
    m_model.SetOutcome(memberKey, Outcome::Done);
}

void RegroupCommands::ReflectUngroup()
{
    if (m_ungroup.wholeGroup) {
        m_model.RemoveChildren(m_ungroup.nodeKey);
        ShowGroup(m_ungroup.nodeKey);
        m_model.SetOutcome(m_ungroup.nodeKey, Outcome::Done);
    } else {
        const QString groupKey = KeyOf(m_model.Find(m_ungroup.nodeKey).parent());
        m_model.Remove(m_ungroup.nodeKey);
        m_model.SetOutcome(groupKey, Outcome::Done);
    }
}

void RegroupCommands::CancelRegroup()
{
    if (!std::exchange(m_regroup.pending, false)) {
        return;
    }
    if (m_regroup.sourceNodeKey.isEmpty()) {
        m_model.SetOutcome(m_regroup.groupNodeKey, Outcome::NotDone);
    } else {
        m_model.SetPicture(m_regroup.sourceNodeKey, QLatin1String(TalkgroupModel::MemberPicture));
        m_model.SetOutcome(m_regroup.sourceNodeKey, Outcome::NotDone);
    }
}

void RegroupCommands::CancelUngroup()
{
    if (!std::exchange(m_ungroup.pending, false)) {
        return;
    }
    if (m_ungroup.wholeGroup) {
        ShowGroup(m_ungroup.nodeKey);
    } else {
        m_model.SetPicture(m_ungroup.nodeKey, QLatin1String(TalkgroupModel::MemberPicture));
    }
    m_model.SetOutcome(m_ungroup.nodeKey, Outcome::NotDone);
}

void RegroupCommands::MarkPending()
{
    const QString picture = QLatin1String(TalkgroupModel::PendingPicture);
    if (m_regroup.pending) {
        m_model.SetPicture(m_regroup.sourceNodeKey, picture);
    } else if (m_ungroup.pending) {
        m_model.SetPicture(m_ungroup.nodeKey, picture);
    }
}

// Radios know the positions 1 to 16; a group of the directory may have none.
bool RegroupCommands::IsPosition(quint8 pos)
{
    const bool known = pos >= LowestPosition && pos <= HighestPosition;
    if (!known) {
        m_services.prompt.ShowWarning(
            FormatMessage(m_services.strings, MainText::NoSuchPosition,
                          {QString::number(LowestPosition), QString::number(HighestPosition)}));
    }
    return known;
}

// False when the command was not accepted; the reason has been shown then.
bool RegroupCommands::Send(const QString& member, quint8 pos, const QString& group)
{
    return IsPosition(pos) && m_services.executive.SendRegroup(member, pos, group);
}

// The radio has one transaction, so that a request still marked as pending is none any more.
void RegroupCommands::Fill(const RegroupRequest& request)
{
    m_regroup = request;
    m_ungroup.pending = false;
    m_model.ClearOutcomes();
    MarkPending();
}

void RegroupCommands::Fill(const UngroupRequest& request)
{
    m_ungroup = request;
    m_regroup.pending = false;
    m_model.ClearOutcomes();
    MarkPending();
}

// The picture of a group, whose node may await an answer.
void RegroupCommands::ShowGroup(const QString& groupKey)
{
    if (!IsDynamicGroupNode(m_model.Find(groupKey))) {
        return;
    }
    m_model.SetPicture(groupKey, groupKey == DefaultGroupKey()
                                     ? QLatin1String(TalkgroupModel::DefaultGroupPicture)
                                     : QString());
    MarkPending();
}

QString RegroupCommands::DefaultGroupKey() const
{
    try {
        return m_services.settings.DefaultGroupKey();
    } catch (const std::exception& failure) {
        ProgramLog::Write(DescribeError(failure, m_services.strings));
        return {};
    }
}
