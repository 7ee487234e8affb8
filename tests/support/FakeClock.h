#pragma once

#include "core/base/Clock.h"

// Stands still until it is set or stepped; both times move together.
class FakeClock : public Clock {
public:
    explicit FakeClock(const QDateTime& now = QDateTime(QDate(2024, 3, 1), QTime(10, 0))) : m_now(now) {}

    QDateTime Now() const override { return m_now; }
    std::chrono::milliseconds Ticks() const override { return m_ticks; }

    void Step(std::chrono::milliseconds duration)
    {
        m_ticks += duration;
        m_now = m_now.addMSecs(duration.count());
    }

private:
    QDateTime m_now;
    std::chrono::milliseconds m_ticks{1'000'000};
};
