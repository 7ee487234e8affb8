#include "mainwindow/frame/FrameKeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

FrameKeys::FrameKeys(QWidget& window) : QObject(&window), m_window(window)
{
    qApp->installEventFilter(this);
}

bool FrameKeys::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto* widget = qobject_cast<QWidget*>(watched);
    return widget != nullptr && widget->window() == &m_window && Handle(*static_cast<QKeyEvent*>(event));
}

bool FrameKeys::Handle(const QKeyEvent& key)
{
    const Qt::KeyboardModifiers modifiers = key.modifiers();
    const bool control = modifiers & Qt::ControlModifier;
    const bool shift = modifiers & Qt::ShiftModifier;
    if (control && (key.key() == Qt::Key_Backtab || (key.key() == Qt::Key_Tab && shift))) {
        Q_EMIT PreviousTab();
        return true;
    }
    if (control && key.key() == Qt::Key_Tab) {
        Q_EMIT NextTab();
        return true;
    }
    if (modifiers == Qt::NoModifier && key.key() == Qt::Key_F11 && !key.isAutoRepeat()) {
        Q_EMIT AttentionRequested();
        return true;
    }
    if (modifiers == Qt::AltModifier && (key.key() == Qt::Key_7 || key.key() == Qt::Key_8)) {
        Q_EMIT EncodingChosen(key.key() == Qt::Key_8);
        return true;
    }
    return false;
}
