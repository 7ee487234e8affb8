#pragma once

#include "map27/codec/Messages.h"
#include "simulator/base/Behaviour.h"

#include <functional>
#include <vector>

namespace sim {

// How the console is told of a step.
constexpr map27::AckOutcome AckOutcomeOf(StepOutcome outcome)
{
    switch (outcome) {
    case StepOutcome::Pending:
        return map27::AckOutcome::Queued;
    case StepOutcome::Success:
        return map27::AckOutcome::Positive;
    case StepOutcome::Failure:
        break;
    }
    return map27::AckOutcome::Negative;
}

// A request on its way through the network: tells each step when its time has come, the final one being the
// last.
class Attempt {
public:
    using Handler = std::function<void(StepOutcome outcome, std::uint8_t cause)>;

    explicit Attempt(Schedule& schedule) : m_timer(schedule) {}

    // With no steps it stays open until stopped.
    void Start(std::vector<Step> steps, Handler handler);
    // Nothing more is reported.
    void Stop();
    bool IsOpen() const { return m_open; }

private:
    void PlanNext();
    void Take();

    Timer m_timer;
    std::vector<Step> m_steps;
    std::size_t m_next = 0;
    Handler m_handler;
    bool m_open = false;
};

} // namespace sim
