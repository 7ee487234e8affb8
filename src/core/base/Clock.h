#pragma once

#include <QDateTime>
#include <chrono>

// The time, injected so that tests control it.
struct Clock {
    virtual ~Clock() = default;

    // Wall clock, in local time.
    virtual QDateTime Now() const = 0;
    // Never goes backwards; its origin is arbitrary.
    virtual std::chrono::milliseconds Ticks() const = 0;
};

class SystemClock : public Clock {
public:
    QDateTime Now() const override;
    std::chrono::milliseconds Ticks() const override;
};
