#pragma once

#include <memory>

// The sound of an incoming message.
struct IBeeper {
    virtual ~IBeeper() = default;

    // The information sound (message beep 64). Returns at once.
    virtual void InformationBeep() = 0;
    // Refused input (the platform's plain beep). Returns at once.
    virtual void Beep() = 0;
};

// Plays a generated tone on the default sound output; without one falls back to the desktop's own beep.
class Beeper : public IBeeper {
public:
    Beeper();
    ~Beeper() override;
    void InformationBeep() override;
    void Beep() override;

private:
    struct Player;
    std::unique_ptr<Player> m_player; // opened at the first sound
};
