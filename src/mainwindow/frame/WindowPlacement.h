#pragma once

#include "core/settings/Settings.h"

#include <QObject>
#include <QRect>
#include <QTimer>

class QWidget;

// Place and size of the main window over its life and across runs, and its full-screen mode. Lengths are
// device-independent pixels; left and top are those of the frame.
//
// A window manager acts on a request only later, and the frame's width is not known until then. The result is
// therefore checked once more when the window has come to rest, and put right.
class WindowPlacement : public QObject {
    Q_OBJECT

public:
    WindowPlacement(QWidget& window, Settings& settings);

    // Raises Error for a stored value that is not a number; nothing is then changed.
    Settings::Placement Stored() const { return m_settings.WindowPlacement(); }
    // Gives the window its stored rectangle in the normal state. One that is on no screen is moved onto the
    // first; one that is larger than its screen is fitted to it, frame included.
    void RestoreRectangle(const Settings::Placement& placement);
    void RestoreState(const Settings::Placement& placement);
    // Raises Error when the settings cannot be written.
    void Save();

    // Entering remembers the rectangle; leaving restores it, unless full-screen mode was not on.
    void SetFullScreen(bool on);
    bool IsFullScreen() const { return m_fullScreen; }
    // Neither minimised nor maximised; full-screen is a sub-state of the normal state.
    bool IsNormal() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class Awaited { Nothing, FullScreen, NormalRectangle, FirstPlace };

    void Await(Awaited awaited);
    void ComeToRest();
    void MendFirstPlace();
    bool HasFrame() const;
    QRect Rectangle() const;
    void SetRectangle(const QRect& rectangle);

    QWidget& m_window;
    Settings& m_settings;
    bool m_fullScreen = false;
    bool m_hadFrame = false; // when full-screen mode was entered, or will have when it is shown
    QRect m_normalRect;      // NormalRect
    Awaited m_awaited = Awaited::Nothing;
    int m_looks = 0;
    QTimer m_rest;
};
