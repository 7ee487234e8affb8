#pragma once

#include "mainwindow/base/RegroupingAllowed.h"

#include <QModelIndex>

// What kind of node of the talkgroup tree this is. An invalid index is none of them.

bool IsDynamicGroupNode(const QModelIndex& node);
bool IsGroupNode(const QModelIndex& node);
// A radio in a dynamic group.
bool IsDynamicMemberNode(const QModelIndex& node);
// A node that a call or message can be addressed to.
bool IsRegroupTarget(const QModelIndex& node);

RegroupingAllowed RegroupingAllowedFor(const QModelIndex& node);

// Whether a dragged member may be dropped on a node: a dynamic group that is not its own.
bool IsDropTarget(const QModelIndex& draggedMember, const QModelIndex& node);
