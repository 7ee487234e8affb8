#pragma once

#include "core/base/Clock.h"

#include <chrono>

// How long an operator has to wait after wrong passwords, so that they cannot be tried by the thousand: no
// time after the first, then 1, 2, 4, 8, 16 and finally 30 seconds after each further one. A successful logon
// starts afresh.
class LogonPause {
public:
    explicit LogonPause(const Clock& clock) : m_clock(clock) {}

    void Failed();
    void Succeeded();
    // Zero when the next attempt may be made.
    std::chrono::milliseconds Remaining() const;

private:
    const Clock& m_clock;
    int m_failures = 0;
    std::chrono::milliseconds m_end{0}; // in ticks of the clock
};
