#include "core/logon/LogonPause.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds Longest = 30s;
constexpr int FailuresToLongest = 7;

std::chrono::milliseconds PauseAfter(int failures)
{
    if (failures < 2)
        return 0ms;
    return failures >= FailuresToLongest ? Longest : 1000ms * (1 << (failures - 2));
}

} // namespace

void LogonPause::Failed()
{
    ++m_failures;
    m_end = m_clock.Ticks() + PauseAfter(m_failures);
}

void LogonPause::Succeeded()
{
    m_failures = 0;
}

std::chrono::milliseconds LogonPause::Remaining() const
{
    return m_failures == 0 ? 0ms : std::max(m_end - m_clock.Ticks(), std::chrono::milliseconds{0});
}
