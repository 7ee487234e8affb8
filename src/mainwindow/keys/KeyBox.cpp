#include "mainwindow/keys/KeyBox.h"

#include "mainwindow/keys/KeyTable.h"

#include <QKeyEvent>

namespace {

bool IsLeftAlone(const QKeyEvent& event)
{
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    const int key = event.key();
    return key == Qt::Key_Tab || key == Qt::Key_Backtab || key == Qt::Key_Escape || key == Qt::Key_Return ||
           key == Qt::Key_Enter;
}

bool IsModifier(int key)
{
    return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_AltGr ||
           key == Qt::Key_Super_L || key == Qt::Key_Super_R || key == Qt::Key_unknown || key == 0;
}

} // namespace

KeyBox::KeyBox(QWidget* parent) : QLineEdit(parent)
{
    setReadOnly(true);
    setContextMenuPolicy(Qt::NoContextMenu);
}

void KeyBox::Show(const QKeySequence& key)
{
    m_key = key;
    setText(key.toString(QKeySequence::NativeText));
}

bool KeyBox::event(QEvent* event)
{
    const bool press = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    if (!press || IsLeftAlone(*static_cast<QKeyEvent*>(event)))
        return QLineEdit::event(event);
    event->accept(); // before Ctrl+Tab or a button's letter gets it
    if (event->type() == QEvent::KeyPress)
        keyPressEvent(static_cast<QKeyEvent*>(event));
    return true;
}

void KeyBox::keyPressEvent(QKeyEvent* event)
{
    if (IsLeftAlone(*event)) {
        event->ignore();
        return;
    }
    if (IsModifier(event->key()) || event->isAutoRepeat())
        return;
    Show(QKeySequence(NormalKey(event->keyCombination())));
    Q_EMIT KeyPressed();
}
