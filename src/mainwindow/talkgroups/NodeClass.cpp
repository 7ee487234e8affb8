#include "mainwindow/talkgroups/NodeClass.h"

#include "mainwindow/talkgroups/TalkgroupModel.h"

namespace {

bool ParentIs(const QModelIndex& node, const char* rootKey)
{
    return node.isValid() && node.parent().isValid() &&
           node.parent().data(TalkgroupModel::KeyRole).toString() == QLatin1String(rootKey);
}

} // namespace

bool IsDynamicGroupNode(const QModelIndex& node)
{
    return ParentIs(node, TalkgroupModel::DynamicKey);
}

bool IsGroupNode(const QModelIndex& node)
{
    return IsDynamicGroupNode(node) || ParentIs(node, TalkgroupModel::StaticKey);
}

bool IsDynamicMemberNode(const QModelIndex& node)
{
    return node.isValid() && !node.model()->hasChildren(node) && IsDynamicGroupNode(node.parent());
}

bool IsRegroupTarget(const QModelIndex& node)
{
    return IsDynamicMemberNode(node) || IsGroupNode(node);
}

RegroupingAllowed RegroupingAllowedFor(const QModelIndex& node)
{
    const bool member = IsDynamicMemberNode(node);
    const bool group = IsDynamicGroupNode(node);
    return {.regroup = member, .sendName = member || group, .ungroup = member || group};
}

bool IsDropTarget(const QModelIndex& draggedMember, const QModelIndex& node)
{
    return draggedMember.isValid() && IsDynamicGroupNode(node) && node != draggedMember.parent();
}
