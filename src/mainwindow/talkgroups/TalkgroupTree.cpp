#include "mainwindow/talkgroups/TalkgroupTree.h"

#include "core/widgets/Icons.h"
#include "mainwindow/talkgroups/NodeClass.h"
#include "mainwindow/talkgroups/TalkgroupModel.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

namespace {

constexpr QPoint BesidePointer(10, 6);
constexpr int FrameWidth = 2;
constexpr std::chrono::milliseconds ScrollPause(60); // for each row

bool IsPlain(const QMouseEvent& event)
{
    return (event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier)) ==
           Qt::NoModifier;
}

// -1 at or above the upper edge of the tree's view, 1 at or below the lower one, 0 between.
int EdgeAt(const QTreeView& tree, const QPoint& place)
{
    const int margin = tree.autoScrollMargin();
    const QRect view = tree.viewport()->rect();
    return place.y() < view.top() + margin ? -1 : place.y() > view.bottom() - margin ? 1 : 0;
}

QString KeyOf(const QModelIndex& node)
{
    return node.data(TalkgroupModel::KeyRole).toString();
}

} // namespace

TalkgroupTree::TalkgroupTree(QWidget* parent) : QTreeView(parent), m_dragIcon(new QLabel(viewport()))
{
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_dragIcon->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_dragIcon->hide();
    m_scroll.setInterval(ScrollPause);
    connect(&m_scroll, &QTimer::timeout, this, &TalkgroupTree::ScrollAtEdge);
}

void TalkgroupTree::mousePressEvent(QMouseEvent* event)
{
    const QModelIndex node = indexAt(event->pos());
    m_pressed = node;
    if (event->button() == Qt::LeftButton && IsPlain(*event)) {
        m_drag.Press(event->pos(), KeyOf(node), IsDynamicMemberNode(node) && mayDrag());
        if (m_drag.IsIdle())
            EndDrag();
    }
    QTreeView::mousePressEvent(event);
}

void TalkgroupTree::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton))
        QTreeView::mouseMoveEvent(event);
    else if (m_drag.IsDragging() || (IsPlain(*event) && m_drag.Move(event->pos())))
        DragTo(event->pos());
    // A held button neither selects what it passes nor starts a drag of the toolkit's own.
}

void TalkgroupTree::mouseReleaseEvent(QMouseEvent* event)
{
    const bool left = event->button() == Qt::LeftButton;
    const bool dropped = left && m_drag.IsDragging();
    if (dropped)
        HighlightAt(event->pos());
    const QString member = m_drag.DraggedKey();
    const QString group = KeyOf(m_highlight);
    if (dropped)
        EndDrag();
    else if (!m_drag.IsDragging())
        m_drag.End();
    if (left && indexAt(event->pos()) != m_pressed)
        setState(NoState); // the base class would select what the button is released on
    else
        QTreeView::mouseReleaseEvent(event);
    if (dropped && !group.isEmpty())
        Q_EMIT MemberDropped(member, group);
}

void TalkgroupTree::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && !m_drag.IsIdle()) {
        EndDrag();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void TalkgroupTree::focusOutEvent(QFocusEvent* event)
{
    EndDrag();
    QTreeView::focusOutEvent(event);
}

void TalkgroupTree::scrollContentsBy(int dx, int dy)
{
    QTreeView::scrollContentsBy(dx, dy);
    if (m_drag.IsDragging())
        DragTo(m_pointer);
}

void TalkgroupTree::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const
{
    QTreeView::drawRow(painter, option, index);
    if (index == m_highlight) {
        const QColor color = palette().color(QPalette::Highlight);
        QColor veil = color;
        veil.setAlpha(60);
        painter->fillRect(option.rect, veil);
        painter->setPen(QPen(color, FrameWidth));
        painter->drawRect(QRect(option.rect).adjusted(1, 1, -1, -1));
    }
}

QModelIndex TalkgroupTree::DraggedMember() const
{
    const auto* talkgroups = qobject_cast<const TalkgroupModel*>(model());
    return talkgroups != nullptr ? talkgroups->Find(m_drag.DraggedKey()) : QModelIndex();
}

void TalkgroupTree::DragTo(const QPoint& place)
{
    m_pointer = place;
    if (!DraggedMember().isValid()) { // a reload took it away
        EndDrag();
        return;
    }
    HighlightAt(place);
    m_dragIcon->setPixmap(LoadIcon(QStringLiteral("dragging")).pixmap(iconSize()));
    m_dragIcon->adjustSize();
    m_dragIcon->move(place + BesidePointer);
    m_dragIcon->show();
    if (EdgeAt(*this, place) == 0)
        m_scroll.stop();
    else if (!m_scroll.isActive())
        m_scroll.start();
}

// Scrolling looks afresh at what is under the pointer.
void TalkgroupTree::ScrollAtEdge()
{
    QScrollBar& bar = *verticalScrollBar();
    bar.setValue(bar.value() + EdgeAt(*this, m_pointer) * bar.singleStep());
}

void TalkgroupTree::HighlightAt(const QPoint& place)
{
    const QModelIndex node = viewport()->rect().contains(place) ? indexAt(place) : QModelIndex();
    m_highlight = IsDropTarget(DraggedMember(), node) ? node : QModelIndex();
    viewport()->update();
}

void TalkgroupTree::EndDrag()
{
    m_drag.End();
    m_scroll.stop();
    m_highlight = QModelIndex();
    m_dragIcon->hide();
    viewport()->update();
}
