#include "core/desktop/Keyboard.h"

#include "core/desktop/XDisplay.h"

#include <QKeyEvent>

// Last: it defines common words as macros.
#include <X11/XKBlib.h>

FreshKeys::Keys Keyboard::Held()
{
    FreshKeys::Keys keys;
    Display* display = XDisplay();
    if (!display)
        return keys;
    char down[32] = {};
    XQueryKeymap(display, down);
    for (quint32 code = 0; code < 8 * sizeof down; ++code)
        if ((static_cast<unsigned char>(down[code / 8]) & (1U << (code % 8))) != 0)
            keys.insert(code);
    return keys;
}

bool Keyboard::TellRepetitions(bool on)
{
    Display* display = XDisplay();
    if (!display)
        return true; // other desktops mark repeats themselves
    Bool supported = False;
    const Bool set = XkbSetDetectableAutoRepeat(display, on ? True : False, &supported);
    return supported != False && (set != False) == on;
}

quint32 Keyboard::CodeOf(const QKeyEvent& event)
{
    return event.nativeScanCode() != 0 ? event.nativeScanCode() : static_cast<quint32>(event.key());
}
