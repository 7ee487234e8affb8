#include "core/desktop/KeyGuard.h"

#include "core/base/Clock.h"
#include "core/desktop/Keyboard.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <QWindow>

KeyGuard::KeyGuard(QWidget& window, const Clock& clock, FreshKeys::Time quiet)
    : QObject(&window),
      m_window(window),
      m_clock(clock),
      m_keys(quiet, &Keyboard::Held)
{
    qApp->installEventFilter(this);
}

bool KeyGuard::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == &m_window)
        Look(*event);
    else if (watched == m_window.windowHandle())
        return Drops(*event);
    return false;
}

void KeyGuard::Look(const QEvent& event)
{
    switch (event.type()) {
    case QEvent::Paint:
        if (!m_painted && m_window.isActiveWindow())
            m_keys.Begin(m_clock.Ticks());
        m_painted = true;
        break;
    case QEvent::WindowActivate:
        if (m_painted)
            m_keys.Begin(m_clock.Ticks());
        break;
    case QEvent::WindowDeactivate:
        m_keys.End();
        break;
    case QEvent::Hide:
        m_painted = false;
        m_keys.End();
        break;
    default:
        break;
    }
}

// Sees the keys before the program looks for a matching shortcut.
bool KeyGuard::Drops(QEvent& event)
{
    using Verdict = FreshKeys::Verdict;
    const auto code = [&] { return Keyboard::CodeOf(static_cast<QKeyEvent&>(event)); };
    switch (event.type()) {
    case QEvent::ShortcutOverride:
        if (m_keys.Judge(code(), m_clock.Ticks()) != Verdict::Early)
            return false;
        event.accept(); // then no shortcut is looked for
        return true;
    case QEvent::KeyPress:
        // A repeat of a key that went down elsewhere.
        if (static_cast<QKeyEvent&>(event).isAutoRepeat() &&
            m_keys.Judge(code(), m_clock.Ticks()) != Verdict::Repeated)
            return true;
        return m_keys.Press(code(), m_clock.Ticks()) == Verdict::Early;
    case QEvent::KeyRelease:
        return !m_keys.Release(code());
    default:
        return false;
    }
}
