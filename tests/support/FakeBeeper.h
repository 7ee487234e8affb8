#pragma once

#include "core/sounds/Beeper.h"

#include <vector>

struct FakeBeeper : IBeeper {
    void Play(const Sound& sound) override { played.push_back(sound); }
    bool HasOutput() const override { return hasOutput; }
    void Beep() override { ++beeps; }

    int Heard(SoundKind kind) const
    {
        int count = 0;
        for (const Sound& sound : played)
            count += sound.kind == kind ? 1 : 0;
        return count;
    }

    std::vector<Sound> played;
    int beeps = 0;
    bool hasOutput = true;
};
