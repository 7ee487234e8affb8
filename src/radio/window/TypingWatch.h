#pragma once

#include <chrono>
#include <optional>

struct Clock;

// Whether somebody is typing, so that a window which comes unasked leaves the keyboard where it is.
class TypingWatch {
public:
    static constexpr std::chrono::seconds Pause{5};

    explicit TypingWatch(const Clock& clock) : m_clock(clock) {}

    // A key went to the program.
    void KeyPressed();
    // False while another program is active, since nobody can tell what is typed there.
    bool IsKeyboardFree(bool programActive) const;

private:
    const Clock& m_clock;
    std::optional<std::chrono::milliseconds> m_last;
};
