#pragma once

#include "radio/window/TypingWatch.h"

#include <QObject>

// Sees every key that the program receives: to tell whether somebody is typing, and for the key that leads to
// the call window from anywhere.
class CallKeys : public QObject {
    Q_OBJECT

public:
    static constexpr Qt::Key LeadKey = Qt::Key_F12;

    explicit CallKeys(const Clock& clock);

    // Whether a window may take the keyboard.
    bool IsKeyboardFree() const;

Q_SIGNALS:
    void CallWindowAsked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    TypingWatch m_typing;
};
