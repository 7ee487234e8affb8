#pragma once

#include "core/desktop/FreshKeys.h"

class QKeyEvent;

// What only the desktop knows about the keyboard. X is asked; elsewhere the program's own events have to do.
namespace Keyboard {

// The keys that are down, whichever window has the keyboard; empty where the desktop does not say.
FreshKeys::Keys Held();

// Asks the desktop to stop sending a release for each repeat of a held key, or to send them again. True when
// a key that goes up can be told from one that repeats.
bool TellRepetitions(bool on);

// The physical key that an event is about.
quint32 CodeOf(const QKeyEvent& event);

} // namespace Keyboard
