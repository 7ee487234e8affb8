#pragma once

#include "core/desktop/FreshKeys.h"

#include <QObject>

// Keeps Enter and the space bar to the window in which they went down: held while another window gets the
// keyboard, because a call ends or a box closes, they would repeat there as if they had been pressed for it.
// One exists, beside the application.
class HeldKeys : public QObject {
    Q_OBJECT

public:
    HeldKeys();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    FreshKeys::Keys m_down; // since before the window had the keyboard
};
