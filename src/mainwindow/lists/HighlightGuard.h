#pragma once

#include <chrono>
#include <optional>

struct Clock;

// Whether Enter on the log means its highlighted line. A line that was highlighted automatically a moment ago
// is not the one that the person was looking at: the first Enter only chooses it, the second one calls.
class HighlightGuard {
public:
    explicit HighlightGuard(const Clock& clock) : m_clock(clock) {}

    void MovedByItself();
    void ChosenByPerson() { m_moved.reset(); }
    // For one press of Enter, which counts as a look at the line.
    bool MayCall();

private:
    const Clock& m_clock;
    std::optional<std::chrono::milliseconds> m_moved; // ticks of the clock; none once a person has chosen
};
