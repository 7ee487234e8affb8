#include "simulator/base/OutstationSettings.h"

#include <algorithm>

namespace sim {

namespace {

constexpr std::array<std::pair<std::string_view, Signal>, 3> Words{
    {{"off", Signal::Off}, {"on", Signal::On}, {"unknown", Signal::Unknown}}};

} // namespace

std::string ToText(const Signals& signals)
{
    std::string text;
    for (auto signal = signals.rbegin(); signal != signals.rend(); ++signal)
        text += *signal == Signal::On ? '1' : *signal == Signal::Off ? '0' : '?';
    return text;
}

std::optional<Signals> SignalsOfText(std::string_view text)
{
    Signals signals{};
    if (text.size() != signals.size())
        return std::nullopt;
    std::transform(text.rbegin(), text.rend(), signals.begin(), [](char c) {
        return c == '1' ? Signal::On : c == '0' ? Signal::Off : Signal::Unknown;
    });
    return signals;
}

std::optional<Signal> SignalOfWord(std::string_view word)
{
    const auto found = std::ranges::find(Words, word, &std::pair<std::string_view, Signal>::first);
    if (found == Words.end())
        return std::nullopt;
    return found->second;
}

std::string_view WordOf(Signal signal)
{
    return std::ranges::find(Words, signal, &std::pair<std::string_view, Signal>::second)->first;
}

} // namespace sim
