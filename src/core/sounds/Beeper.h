#pragma once

#include "core/sounds/Sound.h"

#include <memory>

// What makes the console heard.
struct IBeeper {
    virtual ~IBeeper() = default;

    // In place of what is still sounding. Returns at once.
    virtual void Play(const Sound& sound) = 0;
    // Whether the computer has a sound output.
    virtual bool HasOutput() const = 0;
    // Refused input (the platform's plain beep). Returns at once.
    virtual void Beep() = 0;
};

// Plays on the default sound output; without one falls back to the desktop's own beep.
class Beeper : public IBeeper {
public:
    Beeper();
    ~Beeper() override;
    void Play(const Sound& sound) override;
    bool HasOutput() const override;
    void Beep() override;

private:
    struct Player;
    std::unique_ptr<Player> m_player; // opened at the first sound
};
