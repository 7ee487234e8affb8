#pragma once

#include "map27/codec/Messages.h"
#include "simulator/base/Behaviour.h"

namespace sim {

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

} // namespace sim
