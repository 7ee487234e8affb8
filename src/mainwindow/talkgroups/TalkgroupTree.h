#pragma once

#include "mainwindow/talkgroups/MemberDrag.h"

#include <QPersistentModelIndex>
#include <QTimer>
#include <QTreeView>
#include <functional>

class QLabel;

// The view of the talkgroup tree with its own mouse handling: a member is dragged onto another dynamic group.
// What is under the pointer is highlighted while it can take the member; at the upper and lower edge the tree
// scrolls. Esc, and losing the keyboard, end the drag without a drop.
class TalkgroupTree : public QTreeView {
    Q_OBJECT

public:
    explicit TalkgroupTree(QWidget* parent);

    // Asked when the button goes down on a member.
    std::function<bool()> mayDrag = [] { return true; };

    QModelIndex DropHighlight() const { return m_highlight; }

Q_SIGNALS:
    // Keys of the nodes.
    void MemberDropped(const QString& memberKey, const QString& groupKey);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;

private:
    QModelIndex DraggedMember() const;
    void DragTo(const QPoint& place);
    void HighlightAt(const QPoint& place);
    void ScrollAtEdge();
    void EndDrag();

    MemberDrag m_drag;
    QPersistentModelIndex m_pressed;
    QPersistentModelIndex m_highlight;
    QPoint m_pointer;
    QLabel* m_dragIcon;
    QTimer m_scroll; // runs while a drag is at an edge
};
