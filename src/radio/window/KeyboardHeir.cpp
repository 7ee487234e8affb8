#include "radio/window/KeyboardHeir.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QTimer>

namespace {

constexpr int AfterClose = 50; // ms until the desktop has done with the window that went

} // namespace

KeyboardHeir::KeyboardHeir(QWidget& callWindow) : QObject(&callWindow), m_callWindow(callWindow)
{
    qApp->installEventFilter(this);
    connect(qApp, &QGuiApplication::focusWindowChanged, this, &KeyboardHeir::Follow);
}

void KeyboardHeir::Follow(QWindow* window)
{
    if (!window)
        return;
    const QWindow* call = m_callWindow.windowHandle();
    if (window == call) {
        const bool gone = m_anyLast && (!m_last || !m_last->isVisible());
        m_inherited = gone && (!m_fromCall || m_last != m_fromCall);
        if (m_inherited) {
            PassOn();
            QTimer::singleShot(AfterClose, this, &KeyboardHeir::PassOn);
        }
    } else {
        if (call && m_last == call && !m_inherited)
            m_fromCall = window;
        m_inherited = false;
    }
    m_last = window;
    m_anyLast = true;
}

void KeyboardHeir::PassOn()
{
    if (!m_inherited)
        return;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && qobject_cast<QMainWindow*>(window) != nullptr)
            window->activateWindow();
}

bool KeyboardHeir::eventFilter(QObject* watched, QEvent* event)
{
    if (!m_inherited)
        return false;
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (watched != m_callWindow.windowHandle() && (!widget || widget->window() != &m_callWindow))
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        m_inherited = false;
        return false;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride: {
        const int key = static_cast<QKeyEvent*>(event)->key();
        return key < Qt::Key_F1 || key > Qt::Key_F35;
    }
    default:
        return false;
    }
}
