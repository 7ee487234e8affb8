#include "core/base/Clock.h"

QDateTime SystemClock::Now() const
{
    return QDateTime::currentDateTime();
}

std::chrono::milliseconds SystemClock::Ticks() const
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}
