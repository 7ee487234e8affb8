#include "simulator/script/CommandWords.h"

#include <charconv>
#include <cmath>

namespace sim {

namespace {

constexpr std::string_view Blanks = " \t";
constexpr double LongestSeconds = 86400;

} // namespace

std::string_view Words::Peek() const
{
    return m_rest.substr(0, m_rest.find_first_of(Blanks));
}

std::string_view Words::Next(const char* what)
{
    if (AtEnd())
        throw CommandProblem{std::string(what) + " is missing"};
    const std::string_view word = Peek();
    m_rest.remove_prefix(word.size());
    m_afterWord = m_rest;
    Trim();
    return word;
}

bool Words::Skip(std::string_view word)
{
    if (Peek() != word)
        return false;
    Next("");
    return true;
}

int Words::Number(const char* what, int lowest, int highest)
{
    const std::string word(Next(what));
    int value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc{} || end != word.data() + word.size() || value < lowest || value > highest)
        throw CommandProblem{std::string(what) + " must be " + std::to_string(lowest) + " to " +
                             std::to_string(highest) + ", not \"" + word + '"'};
    return value;
}

double Words::Real(const char* what, double highest)
{
    const std::string word(Next(what));
    double value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc{} || end != word.data() + word.size() || !(value >= 0 && value <= highest))
        throw CommandProblem{std::string(what) + " must be 0 to " +
                             std::to_string(static_cast<int>(highest)) + ", not \"" + word + '"'};
    return value;
}

Milliseconds Words::Seconds(const char* what)
{
    return Milliseconds(std::llround(Real(what, LongestSeconds) * 1000));
}

map27::Address Words::Sender()
{
    const std::string word(Next("the sender"));
    const auto address = m_scenario->fleet.Resolve(word);
    if (!address)
        throw CommandProblem{"there is no \"" + word + "\" in the fleet, and it is no prefix/ident"};
    return *address;
}

std::string Words::Remainder()
{
    std::string text(m_afterWord.empty() ? m_afterWord : m_afterWord.substr(1));
    m_rest = {};
    return text;
}

void Words::End() const
{
    if (!AtEnd())
        throw CommandProblem{"\"" + std::string(m_rest) + "\" is too much"};
}

void Words::Trim()
{
    const std::size_t begin = m_rest.find_first_not_of(Blanks);
    m_rest.remove_prefix(begin == std::string_view::npos ? m_rest.size() : begin);
}

} // namespace sim
