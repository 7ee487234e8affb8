#pragma once

#include "core/Settings.h"

#include <QRect>

class QWidget;

// Place and size of the main window over its life and across runs, and its full-screen mode. Lengths are
// device-independent pixels; left and top are those of the frame.
class WindowPlacement {
public:
    WindowPlacement(QWidget& window, Settings& settings);

    // Raises Error for a stored value that is no number; nothing is changed then.
    Settings::Placement Stored() const { return m_settings.WindowPlacement(); }
    // Gives the window its stored rectangle in the normal state. One that lies on no screen is moved onto the
    // first.
    void RestoreRectangle(const Settings::Placement& placement);
    void RestoreState(const Settings::Placement& placement);
    // Raises Error when the settings cannot be written.
    void Save();

    // Entering remembers the rectangle; leaving restores it, unless full-screen mode was not on.
    void SetFullScreen(bool on);
    bool IsFullScreen() const { return m_fullScreen; }
    // Neither minimised nor maximised; full-screen is a sub-state of the normal state.
    bool IsNormal() const;

private:
    QRect Rectangle() const;
    void SetRectangle(const QRect& rectangle);

    QWidget& m_window;
    Settings& m_settings;
    bool m_fullScreen = false;
    QRect m_normalRect; // NormalRect
};
