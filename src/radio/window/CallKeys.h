#pragma once

#include <QObject>
#include <chrono>
#include <optional>

struct Clock;

// Sees every key that the program receives: to tell whether somebody is typing, and for the key that leads to
// the call window from anywhere.
class CallKeys : public QObject {
    Q_OBJECT

public:
    static constexpr Qt::Key LeadKey = Qt::Key_F12;

    explicit CallKeys(const Clock& clock);

    // Whether a window that opens unasked may take the keyboard: nobody is typing. False while another
    // program is active, since what is typed there cannot be seen.
    bool IsKeyboardFree() const;

Q_SIGNALS:
    void CallWindowAsked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    const Clock& m_clock;
    std::optional<std::chrono::milliseconds> m_lastKey; // ticks of the clock
};
