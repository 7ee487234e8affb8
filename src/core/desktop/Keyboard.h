#pragma once

#include "core/desktop/FreshKeys.h"

class QKeyEvent;

// What only the desktop knows of the keyboard. Under X it is asked; elsewhere the program's own events do.
namespace Keyboard {

// The keys that are down, whoever has the keyboard; empty where the desktop does not tell.
FreshKeys::Keys Held();

// Asks the desktop to send no release for each repetition of a held key, or to send them again. True when a
// key that goes up can be told from one that is repeated.
bool TellRepetitions(bool on);

// Which key of the keyboard an event is about.
quint32 CodeOf(const QKeyEvent& event);

} // namespace Keyboard
