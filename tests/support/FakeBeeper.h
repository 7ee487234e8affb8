#pragma once

#include "core/Beeper.h"

struct FakeBeeper : IBeeper {
    void InformationBeep() override { ++informationBeeps; }
    void Beep() override { ++beeps; }

    int informationBeeps = 0;
    int beeps = 0;
};
