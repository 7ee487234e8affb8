#pragma once

#include "core/sounds/Sound.h"

class Settings;

// What the operator wants of one kind of sound, in the section "sounds" of the settings.
struct SoundChoice {
    static constexpr int LowestOfEmergency = 30; // percent; an emergency is never off nor too low

    bool on = true;
    int tune = 0;
    int volume = 70; // percent

    bool operator==(const SoundChoice&) const = default;
};

// Raises Error when the file cannot be read, or says something else than a choice.
SoundChoice ReadSoundChoice(const Settings& settings, SoundKind kind);
// Raises Error when the file cannot be written.
void StoreSoundChoice(Settings& settings, SoundKind kind, const SoundChoice& choice);
