#include "core/ShowWindow.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <algorithm>

namespace {

// A window whose middle lies on no screen is moved onto the first one.
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

} // namespace

void BringToScreen(QWidget& window, Activation activation)
{
    const bool take = activation == Activation::Take;
    // A desktop forgets what was done to a window only when that is hidden.
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
    else
        QApplication::alert(&window);
}
