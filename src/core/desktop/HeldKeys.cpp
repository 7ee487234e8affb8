#include "core/desktop/HeldKeys.h"

#include "core/desktop/Keyboard.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QWindow>

namespace {

// The keys that send, call or press a button. Others may be typed quickly into a window that has just
// appeared.
bool IsActing(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter || event.key() == Qt::Key_Space;
}

} // namespace

HeldKeys::HeldKeys()
{
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this] { m_down = Keyboard::Held(); });
    qGuiApp->installEventFilter(this);
}

bool HeldKeys::eventFilter(QObject* watched, QEvent* event)
{
    const auto type = event->type();
    const bool press = type == QEvent::KeyPress || type == QEvent::ShortcutOverride;
    if (m_down.empty() || !(press || type == QEvent::KeyRelease) || !qobject_cast<QWindow*>(watched))
        return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    const quint32 code = Keyboard::CodeOf(key);
    if (press) {
        if (!m_down.contains(code) || !IsActing(key))
            return false;
        event->accept(); // then no shortcut is looked for
        return true;
    }
    if (!Keyboard::Held().contains(code))
        m_down.erase(code);
    return false;
}
