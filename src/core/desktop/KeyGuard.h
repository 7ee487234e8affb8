#pragma once

#include "core/desktop/FreshKeys.h"

#include <QObject>

class QKeyEvent;
class QWidget;
struct Clock;

// Withholds from a window the keys that were pressed before anybody could see it: they reach neither its
// controls nor its shortcuts. The window counts as seen once it has been painted and is active. Becomes a
// child of the window.
class KeyGuard : public QObject {
    Q_OBJECT

public:
    // `quiet` as for FreshKeys. The clock must outlive the window.
    KeyGuard(QWidget& window, const Clock& clock, FreshKeys::Time quiet);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Look(const QEvent& event);
    bool Drops(QEvent& event);

    QWidget& m_window;
    const Clock& m_clock;
    FreshKeys m_keys;
    bool m_painted = false;
};
