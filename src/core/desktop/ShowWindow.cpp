#include "core/desktop/ShowWindow.h"

#include "core/desktop/XDisplay.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <algorithm>

// Last: it defines common words as macros.
#include <X11/Xlib.h>

namespace {

// A window whose middle is on no screen is moved onto the first one.
void MoveOntoScreen(QWidget& window)
{
    const QRect frame = window.frameGeometry();
    const QList<QScreen*> screens = QApplication::screens();
    const bool seen = std::any_of(screens.begin(), screens.end(), [&](const QScreen* screen) {
        return screen->geometry().contains(frame.center());
    });
    if (seen || screens.isEmpty())
        return;
    QRect place = frame;
    place.moveCenter(screens.first()->availableGeometry().center());
    window.move(place.topLeft());
}

// Qt marks a window only once until it has been active, even if it was hidden in between.
void MarkUrgent(QWidget& window)
{
    Display* display = XDisplay();
    const QWindow* handle = window.windowHandle();
    if (!display || !handle) {
        QApplication::alert(&window);
        return;
    }
    constexpr long Add = 1;
    constexpr long Application = 1; // the source of the request
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = handle->winId(); // not QWidget::winId, which may be that of an earlier showing
    event.xclient.message_type = XInternAtom(display, "_NET_WM_STATE", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = Add;
    event.xclient.data.l[1] =
        static_cast<long>(XInternAtom(display, "_NET_WM_STATE_DEMANDS_ATTENTION", False));
    event.xclient.data.l[3] = Application;
    XSendEvent(display, DefaultRootWindow(display), False, SubstructureNotifyMask | SubstructureRedirectMask,
               &event);
    XFlush(display);
}

} // namespace

void BringToScreen(QWidget& window, Activation activation)
{
    const bool take = activation == Activation::Take;
    // A desktop forgets what was done to a window only when it is hidden.
    if (window.isVisible() && !window.isActiveWindow())
        window.hide();
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    MoveOntoScreen(window);
    window.setAttribute(Qt::WA_ShowWithoutActivating, !take);
    if (QWindow* handle = window.windowHandle())
        handle->setProperty("_q_showWithoutActivating", !take); // the attribute is read only once
    window.show();
    window.raise();
    if (take)
        window.activateWindow();
    else if (activation == Activation::Mark)
        MarkUrgent(window);
}
