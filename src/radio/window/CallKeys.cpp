#include "radio/window/CallKeys.h"

#include "core/base/Clock.h"
#include "core/widgets/PlainKey.h"

#include <QGuiApplication>
#include <QWindow>

namespace {

constexpr std::chrono::seconds TypingPause(5);

} // namespace

CallKeys::CallKeys(const Clock& clock) : m_clock(clock)
{
    qApp->installEventFilter(this);
}

bool CallKeys::IsKeyboardFree() const
{
    const bool programActive = QGuiApplication::focusWindow() != nullptr;
    return programActive && (!m_lastKey || m_clock.Ticks() - *m_lastKey >= TypingPause);
}

bool CallKeys::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress || !qobject_cast<QWindow*>(watched))
        return false;
    m_lastKey = m_clock.Ticks();
    if (!IsPlain(*static_cast<QKeyEvent*>(event), LeadKey))
        return false;
    Q_EMIT CallWindowAsked();
    return true;
}
