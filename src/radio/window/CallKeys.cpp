#include "radio/window/CallKeys.h"

#include "core/widgets/PlainKey.h"

#include <QGuiApplication>
#include <QWindow>

CallKeys::CallKeys(const Clock& clock) : m_typing(clock)
{
    qApp->installEventFilter(this);
}

bool CallKeys::IsKeyboardFree() const
{
    return m_typing.IsKeyboardFree(QGuiApplication::focusWindow() != nullptr);
}

bool CallKeys::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress || !qobject_cast<QWindow*>(watched))
        return false;
    m_typing.KeyPressed();
    if (!IsPlain(*static_cast<QKeyEvent*>(event), LeadKey))
        return false;
    Q_EMIT CallWindowAsked();
    return true;
}
