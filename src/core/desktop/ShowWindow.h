#pragma once

class QWidget;

enum class Activation { Take, Leave };

// Shows a window in front of the others and on the screen that is looked at, whatever was done to it before:
// minimised, sent to another desktop, left on a screen that is gone. Without activation the keyboard stays
// where it is, and the desktop marks the window as urgent instead.
void BringToScreen(QWidget& window, Activation activation);
