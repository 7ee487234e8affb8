#include "mainwindow/talkgroups/RegroupCommands.h"

#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/eventlog/EventLog.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "dao/base/Error.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/talkgroups/NodeClass.h"
#include "mainwindow/talkgroups/NodeKeys.h"
#include "mainwindow/talkgroups/TalkgroupModel.h"
#include "radio/facade/Map27Executive.h"

#include <utility>

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
      m_store(services.session, services.eventLog, services.clock)
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
    if (!IsDynamicMemberNode(member) || !IsDropTarget(member, group))
        return;
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
    Send(request, TagOf(group));
}

void RegroupCommands::RegroupToDefault(const QString& callsign, qint32 memberId)
{
    const QString groupKey = ShownDefaultGroup();
    if (groupKey.isEmpty())
        return;
    const GroupKeyParts to = PartsOfGroupKey(groupKey);
    Send(RegroupRequest{.pending = true,
                        .sourceNodeKey = {},
                        .groupNodeKey = groupKey,
                        .memberCallsign = callsign,
                        .oldGroupId = 0,
                        .groupId = to.groupId,
                        .memberId = memberId,
                        .pos = to.pos,
                        .move = false},
         TagOf(m_model.Find(groupKey)));
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
    if (SendUnderRequest({.groupId = request.groupId, .memberId = request.memberId, .pos = request.pos},
                         TagOf(node), NoGroup))
        Fill(request);
}

void RegroupCommands::SendGroupName(const QModelIndex& node)
{
    const bool group = IsDynamicGroupNode(node);
    if (!group && !IsDynamicMemberNode(node))
        return;
    const quint8 pos = group ? PartsOfGroupKey(KeyOf(node)).pos : PartsOfMemberKey(KeyOf(node)).pos;
    if (IsPosition(pos) && Attempt([this] { m_store.RequireRight(); }))
        m_services.executive.SendGroupName(TagOf(node), pos, TagOf(group ? node : node.parent()));
}

bool RegroupCommands::StoreRegroup()
{
    if (!m_regroup.pending)
        return false;
    m_takenBack = m_regroup.sourceNodeKey.isEmpty() ? m_regroup.groupNodeKey : m_regroup.sourceNodeKey;
    m_record = m_store.Store(m_regroup, std::exchange(m_request, {}));
    End();
    return true;
}

bool RegroupCommands::StoreUngroup()
{
    if (!m_ungroup.pending)
        return false;
    m_takenBack = m_ungroup.nodeKey;
    m_record = m_store.Store(m_ungroup, std::exchange(m_request, {}));
    End();
    return true;
}

void RegroupCommands::ReflectRegroup()
{
    const RegroupRequest& done = m_regroup;
    if (done.move) {
        m_model.MoveMember(done.sourceNodeKey, done.groupId);
    } else {
        m_model.RemoveElsewhere(done.groupId, done.memberId, done.pos);
        if (done.memberCallsign != m_services.executive.MyCallsign())
            m_model.AddMember(done.memberCallsign, done.groupId, done.memberId, done.pos);
        m_model.SetPicture(done.sourceNodeKey, QLatin1String(TalkgroupModel::MemberPicture));
    }
    const QString memberKey = MakeMemberKey(done.groupId, done.memberId, done.pos);
    m_model.SetPicture(memberKey, QLatin1String(TalkgroupModel::MemberPicture));
    // This console's radio is not shown as a member: its group shows the outcome.
    ShowDone(m_model.Find(memberKey).isValid() ? memberKey : done.groupNodeKey);
}

void RegroupCommands::ReflectUngroup()
{
    if (m_ungroup.wholeGroup) {
        m_model.RemoveChildren(m_ungroup.nodeKey);
        ShowGroup(m_ungroup.nodeKey);
        ShowDone(m_ungroup.nodeKey);
    } else {
        const QString groupKey = KeyOf(m_model.Find(m_ungroup.nodeKey).parent());
        m_model.Remove(m_ungroup.nodeKey);
        ShowDone(groupKey);
    }
}

// What the radio has done, and that it is not on a disk yet.
void RegroupCommands::ShowDone(const QString& nodeKey)
{
    m_model.SetOutcome(nodeKey, Outcome::Done);
    if (!m_services.eventLog.IsSafe(m_record))
        m_model.SetWaiting(nodeKey, m_record);
}

void RegroupCommands::TakeBack(const QString& record)
{
    if (record != m_record)
        return;
    m_model.ClearOutcomes();
    m_model.SetOutcome(m_takenBack, Outcome::NotDone);
}

void RegroupCommands::CancelRegroup()
{
    if (!m_regroup.pending)
        return;
    End();
    if (m_regroup.sourceNodeKey.isEmpty()) {
        m_model.SetOutcome(m_regroup.groupNodeKey, Outcome::NotDone);
    } else {
        m_model.SetPicture(m_regroup.sourceNodeKey, QLatin1String(TalkgroupModel::MemberPicture));
        m_model.SetOutcome(m_regroup.sourceNodeKey, Outcome::NotDone);
    }
}

void RegroupCommands::CancelUngroup()
{
    if (!m_ungroup.pending)
        return;
    End();
    if (m_ungroup.wholeGroup)
        ShowGroup(m_ungroup.nodeKey);
    else
        m_model.SetPicture(m_ungroup.nodeKey, QLatin1String(TalkgroupModel::MemberPicture));
    m_model.SetOutcome(m_ungroup.nodeKey, Outcome::NotDone);
}

void RegroupCommands::ForgetOutcome()
{
    m_model.ClearOutcomes();
    m_model.ClearWaiting();
    m_record.clear();
}

void RegroupCommands::MarkPending()
{
    const QString picture = QLatin1String(TalkgroupModel::PendingPicture);
    if (m_regroup.pending)
        m_model.SetPicture(m_regroup.sourceNodeKey, picture);
    else if (m_ungroup.pending)
        m_model.SetPicture(m_ungroup.nodeKey, picture);
}

// Radios know the positions 1 to 16; a group in the directory may have none.
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

void RegroupCommands::Send(const RegroupRequest& request, const QString& group)
{
    if (SendUnderRequest({.groupId = request.groupId, .memberId = request.memberId, .pos = request.pos},
                         request.memberCallsign, group))
        Fill(request);
}

// The request is in the database before the radio is asked, so that whatever the radio confirms can be
// stored. False when the command was not accepted; the reason has been shown then.
bool RegroupCommands::SendUnderRequest(const RequestedChange& change, const QString& member,
                                       const QString& group)
{
    if (!IsPosition(change.pos))
        return false;
    Map27Executive& executive = m_services.executive;
    if (executive.TransactionKind() != TransactionKind::None)
        return executive.SendRegroup(member, change.pos, group); // which says that it is not ready
    QString request;
    if (!Attempt([&] { request = m_store.Open(change); }))
        return false;
    if (!executive.SendRegroup(member, change.pos, group)) {
        m_store.Close(request);
        return false;
    }
    End(); // the radio has one transaction: a request still marked as pending no longer is
    m_request = request;
    return true;
}

void RegroupCommands::Fill(const RegroupRequest& request)
{
    m_regroup = request;
    m_model.ClearOutcomes();
    MarkPending();
}

void RegroupCommands::Fill(const UngroupRequest& request)
{
    m_ungroup = request;
    m_model.ClearOutcomes();
    MarkPending();
}

// Nothing is pending any more.
void RegroupCommands::End()
{
    m_regroup.pending = false;
    m_ungroup.pending = false;
    m_store.Close(std::exchange(m_request, {}));
}

// False when the step failed; what is wrong has been shown then.
bool RegroupCommands::Attempt(const std::function<void()>& step)
{
    try {
        step();
        return true;
    } catch (const dao::Error& failure) {
        m_services.prompt.ShowWarning(failure.kind == dao::Kind::NotPermitted
                                          ? m_services.strings.LoadString(MainText::MayNotRegroup)
                                          : DescribeError(failure, m_services.strings));
    } catch (const std::exception& failure) {
        m_services.prompt.ShowWarning(DescribeError(failure, m_services.strings));
    }
    return false;
}

// The picture of a group, whose node may await an answer.
void RegroupCommands::ShowGroup(const QString& groupKey)
{
    if (!IsDynamicGroupNode(m_model.Find(groupKey)))
        return;
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
