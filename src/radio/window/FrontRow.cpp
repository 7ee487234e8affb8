#include "radio/window/FrontRow.h"

#include "core/desktop/XDisplay.h"

#include <QApplication>
#include <QDialog>
#include <QMainWindow>
#include <QMessageBox>
#include <QWindow>

// Included last: it defines common words as macros.
#include <X11/Xatom.h>
#include <X11/Xutil.h>

namespace {

void StayOnTop(const QWidget& window, bool on)
{
    if (QWindow* handle = window.windowHandle())
        handle->setFlag(Qt::WindowStaysOnTopHint, on);
}

// Tells the window manager to keep a window above another one, or above none for null. Qt's own way would let
// a dialog that blocks the other window block this one too. Does nothing without an X display.
void KeepAbove(const QWidget& window, const QWidget* other)
{
    Display* display = XDisplay();
    const QWindow* handle = window.windowHandle();
    const QWindow* below = other ? other->windowHandle() : nullptr;
    if (!display || !handle || (other && !below))
        return;
    // A window that is shown again is a new one of the display's, of which QWidget::winId knows nothing.
    if (below)
        XSetTransientForHint(display, handle->winId(), below->winId());
    else
        XDeleteProperty(display, handle->winId(), XA_WM_TRANSIENT_FOR);
    XFlush(display);
}

// A dialog that has to be answered before its owner can be used again.
QDialog* AsDialog(QObject* object)
{
    auto* dialog = qobject_cast<QDialog*>(object);
    return dialog && dialog->isWindow() && dialog->isModal() ? dialog : nullptr;
}

} // namespace

FrontRow::FrontRow(QWidget& callWindow) : QObject(&callWindow), m_callWindow(callWindow)
{
    qApp->installEventFilter(this);
}

bool FrontRow::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Show:
        if (watched == &m_callWindow)
            ArrangeLater(); // showing the window would undo part of the arrangement
        else if (const QDialog* dialog = AsDialog(watched); dialog && m_callWindow.isVisible()) {
            StayOnTop(*dialog, true);
            Arrange();
        }
        break;
    case QEvent::Hide:
        if (watched == &m_callWindow)
            LetDown();
        else if (qobject_cast<QMessageBox*>(watched))
            ArrangeLater();
        break;
    case QEvent::WindowStateChange:
        if (qobject_cast<QMainWindow*>(watched))
            ArrangeLater();
        break;
    default:
        break;
    }
    return false;
}

void FrontRow::ArrangeLater()
{
    QMetaObject::invokeMethod(this, &FrontRow::Arrange, Qt::QueuedConnection);
}

void FrontRow::Arrange()
{
    if (!m_callWindow.isVisible())
        return;
    bool boxes = false;
    const QWidget* main = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible())
            continue;
        if (qobject_cast<QMessageBox*>(window)) {
            StayOnTop(*window, true);
            boxes = true;
        } else if (qobject_cast<QMainWindow*>(window)) {
            main = window;
        }
    }
    // A full-screen window lies above those that stay on top.
    const bool above = main && !main->isMinimized() && (boxes || main->isFullScreen());
    KeepAbove(m_callWindow, above ? main : nullptr);
    StayOnTop(m_callWindow, !boxes);
}

// Without a call window nothing has to stand above the windows of other programs.
void FrontRow::LetDown()
{
    for (QWidget* window : QApplication::topLevelWidgets())
        if (AsDialog(window) && window->isVisible())
            StayOnTop(*window, false);
}
