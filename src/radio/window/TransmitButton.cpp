#include "radio/window/TransmitButton.h"

#include "core/base/Clock.h"
#include "core/desktop/Keyboard.h"

#include <QKeyEvent>
#include <QPushButton>

namespace {

// Keys that move the focus, open something else or have a meaning of their own never key the transmitter.
bool Transmits(const QKeyEvent& event)
{
    if ((event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != Qt::NoModifier)
        return false;
    if (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F35)
        return false;
    switch (event.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Escape:
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
        return false;
    default:
        return true;
    }
}

} // namespace

TransmitButton::TransmitButton(QPushButton& button, const Clock& clock)
    : QObject(&button),
      m_clock(clock),
      m_keys(FreshKeys::Time(0), &Keyboard::Held)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(TransmitKey::HoldBack);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        Tell(m_key.Expire(m_clock.Ticks()));
        if (m_key.HeldBackUntil())
            m_timer.start();
    });
    button.installEventFilter(this);
}

void TransmitButton::LetGo()
{
    Tell(m_key.LetGo());
}

bool TransmitButton::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return HandleKey(*static_cast<QKeyEvent*>(event));
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
            Tell(m_key.Press(TransmitKey::Mouse, 0));
        break;
    case QEvent::MouseButtonRelease:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
            Tell(m_key.Release(TransmitKey::Mouse, 0, m_clock.Ticks()));
        break;
    case QEvent::FocusIn:
        HandleFocus(true);
        break;
    case QEvent::FocusOut: // the release would go elsewhere, and the transmitter would stay keyed
    case QEvent::Hide:
        HandleFocus(false);
        break;
    default:
        break;
    }
    return false;
}

// True when the button must not see the key.
bool TransmitButton::HandleKey(const QKeyEvent& event)
{
    const quint32 code = Keyboard::CodeOf(event);
    if (event.type() == QEvent::KeyPress) {
        if (!Transmits(event))
            return false;
        if (!event.isAutoRepeat() && m_keys.Press(code, m_clock.Ticks()) != FreshKeys::Verdict::Early)
            Tell(m_key.Press(code, event.timestamp()));
        return true;
    }
    if (event.isAutoRepeat())
        return true;
    m_keys.Release(code);
    Tell(m_key.Release(code, event.timestamp(), m_clock.Ticks()));
    if (m_key.HeldBackUntil())
        m_timer.start();
    return Transmits(event);
}

void TransmitButton::HandleFocus(bool has)
{
    const bool told = Keyboard::TellRepetitions(has);
    if (has) {
        m_key.SetHoldingBack(!told);
        m_keys.Begin(m_clock.Ticks());
    } else {
        m_keys.End();
        LetGo();
    }
}

void TransmitButton::Tell(const TransmitKey::Switches& switches)
{
    for (const bool on : switches)
        Q_EMIT Switched(on);
}
