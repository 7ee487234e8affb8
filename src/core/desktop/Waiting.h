#pragma once

#include "core/desktop/InputGate.h"
#include "dao/base/Patience.h"

#include <QDeadlineTimer>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

class QEventLoop;
class WaitSign;
struct Clock;
struct IStringSource;

// How the thread of the windows waits for a database or a port: in an event loop, so that the windows paint
// and the radio's events arrive, while input reaches none of them but the window of a radio call. After
// 300 ms a sign says what is being waited for and offers to give up. Waits that follow one another without a
// return to the event loop are one operation. One exists, beside the application, and is the thread's
// patience as long as it lives.
class Waiting : public QObject, public dao::Patience {
    Q_OBJECT

public:
    // Both must outlive it.
    Waiting(const IStringSource& strings, const Clock& clock);
    ~Waiting() override;

    End Await(const Wait& wait) override;
    // Shows the sign at once, as long as the object that it gives back lives. For somebody who waits in an
    // event loop of his own; `giveUp` is called from it.
    std::shared_ptr<void> ShowFor(const QString& where, std::function<void()> giveUp);

    // From now on nobody has asked for what is waited for: it is given up by itself after two seconds, so
    // that no operator is kept from his work by it.
    void SetUnasked(bool unasked) { m_unasked = unasked; }
    // A database is being waited for: its session must not be used.
    bool IsWaiting() const { return m_inWait; }
    // Does this once nothing is being waited for, which ends within a second or so, safe or not.
    void EndSoon(std::function<void()> then);

Q_SIGNALS:
    void WaitingChanged(bool waiting);

private:
    struct Port {
        QString where;
        std::function<void()> giveUp;
    };

    End AwaitInLoop(const Wait& wait);
    std::chrono::milliseconds Spent() const; // by the operation
    void Look();
    void ShowSign();
    bool MayGiveUp() const;
    void GiveUp();
    void Finish(End end);
    void EndPort();
    void EndOperation();

    const IStringSource& m_strings;
    const Clock& m_clock;
    InputGate m_gate;
    QTimer m_tick;
    QTimer m_lull;                                    // fires when the operation is over
    std::optional<std::chrono::milliseconds> m_since; // the operation's first wait; ticks of the clock
    QDeadlineTimer m_unnoticed;
    std::optional<std::chrono::milliseconds> m_shown; // likewise the sign
    std::optional<std::chrono::milliseconds> m_last;  // likewise when waiting ends in any case
    QPointer<WaitSign> m_sign;
    Wait m_wait;              // the present or last one
    std::optional<End> m_end; // of it
    QEventLoop* m_loop = nullptr;
    bool m_inWait = false;
    bool m_unasked = false;
    std::shared_ptr<Port> m_port;
    std::function<void()> m_then;
};
