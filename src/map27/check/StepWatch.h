#pragma once

#include "map27/check/CheckSteps.h"

namespace map27 {

// What a radio does while a step waits for its time to be over, and what that says of the radio.
class StepWatch {
public:
    void Begin() { *this = {}; }
    // `takesNext`: it acknowledges the message that it must not take.
    void TakeAcknowledgement(bool takesNext);
    void TakeMessage(OctetSpan message);

    // When no answer has come, be it that none is wanted.
    CheckReport::Item Judge(const CheckStep& step, Milliseconds waited) const;

private:
    CheckReport::Item JudgeDamaged(const CheckStep& step) const;
    CheckReport::Item JudgeRepeated(const CheckStep& step) const;
    CheckReport::Item JudgeRest(const CheckStep& step) const;

    int m_acknowledgements = 0;
    int m_taken = 0;   // of those, for a message that it must not take
    int m_answers = 0; // messages that would answer it
};

} // namespace map27
