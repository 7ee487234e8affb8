#include "map27/check/StepWatch.h"

namespace map27 {

namespace {

using Verdict = CheckReport::Verdict;

constexpr Milliseconds LongestSilence{15000}; // T3

} // namespace

void StepWatch::TakeAcknowledgement(bool takesNext)
{
    ++m_acknowledgements;
    m_taken += takesNext ? 1 : 0;
}

void StepWatch::TakeMessage(OctetSpan message)
{
    m_answers += message[0] == Type::Personality || message[0] == Type::ProtocolInfo ? 1 : 0;
}

CheckReport::Item StepWatch::Judge(const CheckStep& step, Milliseconds waited) const
{
    switch (step.way) {
    case CheckStep::Way::Damaged:
        return JudgeDamaged(step);
    case CheckStep::Way::Repeated:
        return JudgeRepeated(step);
    case CheckStep::Way::Rest:
        return JudgeRest(step);
    default:
        return {step.name, Verdict::NoAnswer, "nothing within " + std::to_string(waited.count()) + " ms"};
    }
}

CheckReport::Item StepWatch::JudgeDamaged(const CheckStep& step) const
{
    if (m_answers > 0 || m_taken > 0)
        return {step.name, Verdict::Deviates, "the radio took a frame with a wrong check sequence"};
    return {step.name, Verdict::Good, "dropped without a word"};
}

CheckReport::Item StepWatch::JudgeRepeated(const CheckStep& step) const
{
    if (m_answers > 0)
        return {step.name, Verdict::Deviates, "the radio took the same message twice"};
    if (m_acknowledgements == 0)
        return {step.name, Verdict::Deviates, "the radio did not acknowledge the repetition"};
    return {step.name, Verdict::Good, "acknowledged and not taken twice"};
}

CheckReport::Item StepWatch::JudgeRest(const CheckStep& step) const
{
    const std::string time = std::to_string(step.limit.count() / 1000) + " s";
    if (m_acknowledgements > 0)
        return {step.name, Verdict::Good,
                std::to_string(m_acknowledgements) + " acknowledgements at rest within " + time};
    if (step.limit > LongestSilence)
        return {step.name, Verdict::Deviates, "no acknowledgement at rest within " + time};
    return {step.name, Verdict::Noted, "none within " + time + "; the standard wants one every 15 s"};
}

} // namespace map27
