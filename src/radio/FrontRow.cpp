#include "radio/FrontRow.h"

#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QTimer>
#include <QWindow>

namespace {

void StayOnTop(const QWidget& window, bool on)
{
    if (QWindow* handle = window.windowHandle())
        handle->setFlag(Qt::WindowStaysOnTopHint, on);
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
            Later();
        else if (const QDialog* dialog = AsDialog(watched); dialog && m_callWindow.isVisible())
            StayOnTop(*dialog, true);
        break;
    case QEvent::Hide:
        if (watched == &m_callWindow)
            LetDown();
        break;
    // Window managers raise a window that is activated, clicked or moved.
    case QEvent::WindowActivate:
    case QEvent::Move:
    case QEvent::MouseButtonPress:
    case QEvent::NonClientAreaMouseButtonPress:
        if (watched == &m_callWindow || watched == m_callWindow.windowHandle())
            Later();
        break;
    default:
        break;
    }
    return false;
}

void FrontRow::Later()
{
    if (m_waiting)
        return;
    m_waiting = true;
    QTimer::singleShot(0, this, &FrontRow::RaiseBoxes);
}

void FrontRow::RaiseBoxes()
{
    m_waiting = false;
    if (!m_callWindow.isVisible())
        return;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (qobject_cast<QMessageBox*>(window) && window->isVisible()) {
            StayOnTop(*window, true);
            window->raise();
        }
    }
}

// Without a call window nothing has to stand above the windows of other programs.
void FrontRow::LetDown()
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (AsDialog(window) && window->isVisible())
            StayOnTop(*window, false);
    }
}
