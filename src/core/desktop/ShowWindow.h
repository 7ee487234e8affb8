#pragma once

class QWidget;

// Whether a window takes the keyboard. With Leave and Mark that stays where it is; with Mark the desktop
// marks the window as urgent instead.
enum class Activation { Take, Leave, Mark };

// Shows a window in front of the others and on the screen that is looked at, whatever was done to it before:
// minimised, sent to another desktop, left on a screen that is gone.
void BringToScreen(QWidget& window, Activation activation);
