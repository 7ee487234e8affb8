#include "core/desktop/InputGate.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace {

const QWidget* WidgetOf(const QWindow* window)
{
    for (const QWidget* widget : QApplication::topLevelWidgets())
        if (widget->windowHandle() == window)
            return widget;
    return nullptr;
}

bool IsText(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Backspace || (!event.text().isEmpty() && event.text().at(0).isPrint());
}

} // namespace

InputGate::InputGate()
{
    qApp->installEventFilter(this);
}

InputGate::~InputGate()
{
    Open();
}

void InputGate::Close()
{
    if (m_closed)
        return;
    m_closed = true;
    m_keepsText = true;
    m_pressed = false;
    m_usable.clear();
}

void InputGate::Let(QWidget& window)
{
    m_usable.emplace_back(&window);
}

void InputGate::Open()
{
    if (!m_closed)
        return;
    m_closed = false;
    for (Kept& kept : std::exchange(m_kept, {}))
        if (kept.receiver)
            QCoreApplication::postEvent(kept.receiver, kept.event.release());
}

// A call window is told by its place above the others, as Prompt does.
bool InputGate::Passes(const QWidget* window) const
{
    while (window) {
        const auto isThis = [&](const QPointer<QWidget>& usable) { return usable == window; };
        if (window->windowFlags().testFlag(Qt::WindowStaysOnTopHint) ||
            std::any_of(m_usable.begin(), m_usable.end(), isThis))
            return true;
        window = window->parentWidget() ? window->parentWidget()->window() : nullptr;
    }
    return false;
}

bool InputGate::eventFilter(QObject* watched, QEvent* event)
{
    if (!m_closed)
        return false;
    switch (event->type()) {
    case QEvent::Show:
        if (auto* box = qobject_cast<QMessageBox*>(watched))
            Let(*box);
        return false;
    case QEvent::InputMethod:
        return watched->isWidgetType() && !Passes(static_cast<QWidget*>(watched)->window());
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::TabletMove:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Close:
        break;
    default:
        return false;
    }
    auto* window = qobject_cast<QWindow*>(watched);
    if (!window || (event->type() == QEvent::Close && m_letsClose) || Passes(WidgetOf(window)))
        return false;
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        event->accept(); // then no shortcut is looked for
        break;
    case QEvent::KeyPress:
        TakeKey(WidgetOf(window), *static_cast<QKeyEvent*>(event));
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        m_pressed = true;
        break;
    case QEvent::MouseButtonRelease:
        if (!m_pressed) // what it went down on before still waits for it
            m_kept.push_back({window, std::unique_ptr<QEvent>(event->clone())});
        break;
    default:
        event->ignore();
        break;
    }
    return true;
}

void InputGate::TakeKey(const QWidget* window, const QKeyEvent& event)
{
    if (event.key() == Qt::Key_Escape) {
        if (!event.isAutoRepeat())
            Q_EMIT EscapePressed();
        return;
    }
    QWidget* field = window ? window->focusWidget() : nullptr;
    const auto acting = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (m_keepsText && field && field->testAttribute(Qt::WA_InputMethodEnabled) && IsText(event) &&
        !(event.modifiers() & acting))
        m_kept.push_back({field, std::unique_ptr<QEvent>(event.clone())});
}
