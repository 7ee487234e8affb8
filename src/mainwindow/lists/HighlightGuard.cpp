#include "mainwindow/lists/HighlightGuard.h"

#include "core/base/Clock.h"

namespace {

constexpr std::chrono::seconds TimeToNotice(1);

} // namespace

void HighlightGuard::MovedByItself()
{
    m_moved = m_clock.Ticks();
}

bool HighlightGuard::MayCall()
{
    const bool noticed = !m_moved || m_clock.Ticks() - *m_moved >= TimeToNotice;
    m_moved.reset();
    return noticed;
}
