#include "mainwindow/frame/FrameKeys.h"

#include "mainwindow/keys/KeyBindings.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

FrameKeys::FrameKeys(QWidget& window, const KeyBindings& keys)
    : QObject(&window),
      m_window(window),
      m_keys(keys)
{
    qApp->installEventFilter(this);
}

bool FrameKeys::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto* widget = qobject_cast<QWidget*>(watched);
    return widget != nullptr && widget->window() == &m_window &&
           Handle(watched, *static_cast<QKeyEvent*>(event));
}

bool FrameKeys::Handle(QObject* target, const QKeyEvent& key)
{
    const KeyBindings::Meaning meaning = m_keys.MeaningOf(key.keyCombination());
    switch (meaning.row != nullptr ? meaning.row->command : KeyCommand::None) {
    case KeyCommand::NextTab:
        Q_EMIT NextTab();
        return true;
    case KeyCommand::PreviousTab:
        Q_EMIT PreviousTab();
        return true;
    case KeyCommand::SevenBit:
        Q_EMIT EncodingChosen(false);
        return true;
    case KeyCommand::EightBit:
        Q_EMIT EncodingChosen(true);
        return true;
    case KeyCommand::Attention:
        if (key.isAutoRepeat())
            return false;
        Q_EMIT AttentionRequested();
        return true;
    case KeyCommand::Help:
    case KeyCommand::Reload:
    case KeyCommand::Enter:
        if (meaning.second)
            PassOn(*target, key, meaning.row->keys[0]);
        return meaning.second;
    case KeyCommand::None:
    case KeyCommand::LogWindow: // these are shortcuts of menu items
    case KeyCommand::SentMessages:
    case KeyCommand::Favourite:
    case KeyCommand::QuickText:
        break;
    }
    return false;
}

// As if the key beside it had been pressed there. It is still this key of the keyboard that is held and let
// go, so that a held one sends once.
void FrameKeys::PassOn(QObject& target, const QKeyEvent& pressed, QKeyCombination as)
{
    QKeyEvent event(QEvent::KeyPress, as.key(), as.keyboardModifiers(), pressed.nativeScanCode(),
                    pressed.nativeVirtualKey(), 0, QString(), pressed.isAutoRepeat());
    event.setTimestamp(pressed.timestamp());
    QCoreApplication::sendEvent(&target, &event);
}
