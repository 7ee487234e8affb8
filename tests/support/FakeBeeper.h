#pragma once

#include "core/widgets/Beeper.h"

struct FakeBeeper : IBeeper {
    void InformationBeep() override { ++informationBeeps; }
    void Beep() override { ++beeps; }

    int informationBeeps = 0;
    int beeps = 0;
};
