#pragma once

#include <chrono>
#include <optional>

struct Clock;

// Knows whether somebody is typing, so that a window that opens unasked leaves the keyboard where it is.
class TypingWatch {
public:
    static constexpr std::chrono::seconds Pause{5};

    explicit TypingWatch(const Clock& clock) : m_clock(clock) {}

    // The program has received a key.
    void KeyPressed();
    // False while another program is active, since what is typed there cannot be seen.
    bool IsKeyboardFree(bool programActive) const;

private:
    const Clock& m_clock;
    std::optional<std::chrono::milliseconds> m_last;
};
