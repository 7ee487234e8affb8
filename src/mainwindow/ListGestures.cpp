#include "mainwindow/ListGestures.h"

#include "core/PlainKey.h"

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
    case QEvent::MouseButtonRelease: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::RightButton) {
            Q_EMIT MenuRequested(mouse->globalPosition().toPoint());
        }
        return false;
    }
    case QEvent::MouseButtonDblClick:
        if (m_doubleClick == DoubleClick::Calls &&
            static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            Q_EMIT CallRequested();
        }
        return false;
    case QEvent::ContextMenu:
        // The mouse's own is told by the release of its button.
        if (static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Keyboard) {
            Q_EMIT MenuRequested(MenuPlaceOfSelection());
        }
        return true;
    default:
        return false;
    }
}

bool ListGestures::HandleKey(const QKeyEvent& key)
{
    if (IsPlainEnter(key)) {
        Q_EMIT CallRequested();
        return true;
    }
    if (IsPlain(key, Qt::Key_F5)) {
        Q_EMIT ReloadRequested();
        return true;
    }
    return false;
}

QPoint ListGestures::MenuPlaceOfSelection() const
{
    const QRect line = m_list.visualRect(m_list.currentIndex());
    return m_list.viewport()->mapToGlobal(line.isValid() ? line.center() : QPoint());
}
