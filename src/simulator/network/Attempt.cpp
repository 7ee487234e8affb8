#include "simulator/network/Attempt.h"

#include <utility>

namespace sim {

void Attempt::Start(std::vector<Step> steps, Handler handler)
{
    m_steps = std::move(steps);
    m_next = 0;
    m_handler = std::move(handler);
    m_open = true;
    PlanNext();
}

void Attempt::Stop()
{
    m_timer.Stop();
    m_open = false;
}

void Attempt::PlanNext()
{
    if (m_next < m_steps.size())
        m_timer.Start(
            m_steps[m_next].delay, [this] { Take(); });
}

void Attempt::Take()
{
    const Step step = m_steps[m_next++];
    m_open = step.outcome == StepOutcome::Pending;
    PlanNext();
    // The handler may start the next attempt.
    const Handler handler = m_handler;
    handler(step.outcome, step.cause);
}

} // namespace sim
