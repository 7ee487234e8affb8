#pragma once

#include "core/desktop/FreshKeys.h"
#include "radio/window/TransmitKey.h"

#include <QObject>
#include <QTimer>

class QKeyEvent;
class QPushButton;
struct Clock;

// Watches what holds the transmit button: the mouse, or a key that went down while the button had the focus
// and no other key was down. Losing the focus lets go. A child of the button.
class TransmitButton : public QObject {
    Q_OBJECT

public:
    TransmitButton(QPushButton& button, const Clock& clock);

    void LetGo();

Q_SIGNALS:
    void Switched(bool on);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool HandleKey(const QKeyEvent& event);
    void HandleFocus(bool has);
    void Tell(const TransmitKey::Switches& switches);

    const Clock& m_clock;
    FreshKeys m_keys;
    TransmitKey m_key;
    QTimer m_timer; // for a release that is held back
};
