#pragma once

#include <QKeyEvent>

// A key without Shift, Ctrl and Alt, pressed and not merely held; the numeric keypad counts as well.
inline bool IsPlain(const QKeyEvent& event, int key)
{
    return event.key() == key && !event.isAutoRepeat() &&
           (event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier)) ==
               Qt::NoModifier;
}

inline bool IsPlainEnter(const QKeyEvent& event)
{
    return IsPlain(event, Qt::Key_Return) || IsPlain(event, Qt::Key_Enter);
}
