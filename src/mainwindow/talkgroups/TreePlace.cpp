#include "mainwindow/talkgroups/TreePlace.h"

#include <QScrollBar>
#include <QTreeView>

namespace {

constexpr int FoldableLevels = 2; // a group's members, which can be many, hold nothing

} // namespace

TreePlace::TreePlace(QTreeView& tree, int keyRole)
    : m_tree(tree),
      m_keyRole(keyRole),
      m_top(SpotOf(tree.indexAt({1, 1}))),
      m_current(SpotOf(tree.currentIndex())),
      m_across(tree.horizontalScrollBar()->value())
{
    for (const QModelIndex& node : tree.selectionModel()->selectedRows())
        m_selected.push_back(SpotOf(node));
    NoteFolded({}, FoldableLevels);
}

void TreePlace::NoteFolded(const QModelIndex& parent, int levels)
{
    const QAbstractItemModel& model = *m_tree.model();
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex node = model.index(row, 0, parent);
        if (!model.hasChildren(node))
            continue;
        if (!m_tree.isExpanded(node))
            m_folded.insert(node.data(m_keyRole).toString());
        if (levels > 1)
            NoteFolded(node, levels - 1);
    }
}

void TreePlace::Restore(const FindKey& find) const
{
    m_tree.setAutoScroll(false); // a selected node that is folded away stays so
    m_tree.clearSelection();
    const QModelIndex current = Find(m_current, find);
    if (current.isValid())
        m_tree.selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    QItemSelection selection;
    for (const Spot& spot : m_selected)
        if (const QModelIndex node = Find(spot, find); node.isValid())
            selection.select(node, node);
    m_tree.selectionModel()->select(selection, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    m_tree.setAutoScroll(true);

    const QModelIndex top = Find(m_top, find);
    if (top.isValid())
        m_tree.scrollTo(top, QAbstractItemView::PositionAtTop);
    m_tree.horizontalScrollBar()->setValue(m_across);
}

TreePlace::Spot TreePlace::SpotOf(const QModelIndex& node) const
{
    return {node.data(m_keyRole).toString(), node};
}

QModelIndex TreePlace::Find(const Spot& spot, const FindKey& find)
{
    return spot.index.isValid() ? QModelIndex(spot.index) : find(spot.key);
}
