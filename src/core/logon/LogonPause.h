#pragma once

#include "core/base/Clock.h"

#include <chrono>

// How long an operator has to wait after wrong passwords, so that they cannot be tried by the thousand:
// nothing after the first, then 1, 2, 4, 8, 16 and at last 30 seconds after each further one. A successful
// logon begins anew.
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
    std::chrono::milliseconds m_end{0}; // on the clock's ticks
};
