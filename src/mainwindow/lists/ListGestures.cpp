#include "mainwindow/lists/ListGestures.h"

#include "core/widgets/ListHelpers.h"
#include "core/widgets/PlainKey.h"

#include <QAbstractItemView>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>

ListGestures::ListGestures(QAbstractItemView& list, DoubleClick doubleClick)
    : QObject(&list),
      m_list(list),
      m_doubleClick(doubleClick)
{
    list.installEventFilter(this);
    list.viewport()->installEventFilter(this);
}

bool ListGestures::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        return watched == &m_list && HandleKey(*static_cast<QKeyEvent*>(event));
    case QEvent::MouseButtonPress:
        m_pressed = m_list.indexAt(static_cast<QMouseEvent*>(event)->pos());
        return false;
    case QEvent::MouseButtonRelease: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::RightButton && Choose(m_pressed))
            Q_EMIT MenuRequested(mouse->globalPosition().toPoint());
        return false;
    }
    case QEvent::MouseButtonDblClick: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        const QModelIndex hit = m_list.indexAt(mouse->pos());
        const bool same = hit == m_pressed; // the list may have scrolled between the two clicks
        m_pressed = hit;
        if (m_doubleClick == DoubleClick::Calls && mouse->button() == Qt::LeftButton && same && Choose(hit))
            Q_EMIT CallRequested();
        return false;
    }
    case QEvent::ContextMenu:
        // The mouse asks with the release of its button.
        if (static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Keyboard &&
            Choose(GetSelectedItem(m_list)))
            Q_EMIT MenuRequested(MenuPlaceOfSelection());
        return true;
    default:
        return false;
    }
}

bool ListGestures::HandleKey(const QKeyEvent& key)
{
    if (IsPlainEnter(key)) {
        const bool call = mayCall();
        if (Choose(GetSelectedItem(m_list)) && call)
            Q_EMIT CallRequested();
        return true;
    }
    if (IsPlain(key, Qt::Key_F5)) {
        Q_EMIT ReloadRequested();
        return true;
    }
    return false;
}

// False when nothing was hit.
bool ListGestures::Choose(const QModelIndex& hit)
{
    if (!hit.isValid())
        return false;
    QItemSelectionModel& selection = *m_list.selectionModel();
    selection.setCurrentIndex(hit, selection.isSelected(hit)
                                       ? QItemSelectionModel::NoUpdate
                                       : QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    Q_EMIT Chosen();
    return true;
}

QPoint ListGestures::MenuPlaceOfSelection() const
{
    const QRect line = m_list.visualRect(m_list.currentIndex());
    return m_list.viewport()->mapToGlobal(line.isValid() ? line.center() : QPoint());
}
