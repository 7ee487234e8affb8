#include "core/desktop/ModalFocus.h"

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <QWindow>

namespace {

constexpr int AfterClick = 50; // ms until the click is known: desktops refuse requests of an earlier time

} // namespace

ModalFocus::ModalFocus()
{
    connect(
        qApp, &QGuiApplication::focusWindowChanged, this,
        [this](const QWindow* window) {
            if (window)
                QTimer::singleShot(AfterClick, this, &ModalFocus::TakeBack);
        });
}

void ModalFocus::TakeBack()
{
    QWidget* dialog = QApplication::activeModalWidget();
    const QWidget* active = QApplication::activeWindow();
    // A call's window is never a dialog's parent and stays usable.
    for (const QWidget* owner = dialog; owner && active != dialog; owner = owner->parentWidget())
        if (owner == active)
            dialog->activateWindow();
}
