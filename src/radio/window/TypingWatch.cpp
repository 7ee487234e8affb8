#include "radio/window/TypingWatch.h"

#include "core/base/Clock.h"

void TypingWatch::KeyPressed()
{
    m_last = m_clock.Ticks();
}

bool TypingWatch::IsKeyboardFree(bool programActive) const
{
    return programActive && (!m_last || m_clock.Ticks() - *m_last >= Pause);
}
