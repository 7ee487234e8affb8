#pragma once

#include "simulator/base/Scenario.h"

namespace sim {

// A command line that cannot be followed.
struct CommandProblem {
    std::string reason; // in plain words
};

// The words of a command line, taken one after another. Throws CommandProblem.
class Words {
public:
    Words(std::string_view line, const Scenario& scenario) : m_scenario(&scenario), m_rest(line) { Trim(); }

    bool AtEnd() const { return m_rest.empty(); }
    std::string_view Peek() const;
    // Throws that `what` is missing when the line has ended.
    std::string_view Next(const char* what);
    bool Skip(std::string_view word);
    int Number(const char* what, int lowest, int highest);
    // Not only whole ones.
    double Real(const char* what, double highest);
    Milliseconds Seconds(const char* what);
    map27::Address Sender();
    // The rest of the line, without the one blank after the word before.
    std::string Remainder();
    // Throws unless the line has ended.
    void End() const;

private:
    void Trim();

    const Scenario* m_scenario;
    std::string_view m_rest;
    std::string_view m_afterWord;
};

} // namespace sim
