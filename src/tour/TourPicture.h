#pragma once

#include <QImage>

// A picture of all visible windows as they lie above each other, each with a plain title bar, since the tour
// runs without a window manager.
QImage TakeTourPicture();
