#include "map27/link/RoundTrip.h"

namespace map27 {

void RoundTrip::Take(Milliseconds time)
{
    if (time > LongestOfAll)
        return;
    time = std::max(time, Milliseconds(0));
    m_limit = Milliseconds(0);
    m_isMeasured = true;
    if (m_isNew) {
        m_isNew = false;
        m_usual = m_shortest = time;
        m_deviation = time / 4;
        return;
    }
    m_shortest = std::min(m_shortest, time);
    m_deviation += (std::chrono::abs(time - m_usual) - m_deviation) / 4;
    m_usual += (time - m_usual) / 8;
}

} // namespace map27
