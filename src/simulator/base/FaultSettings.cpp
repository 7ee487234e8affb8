#include "simulator/base/FaultSettings.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace sim {

const std::array<FaultDescription, FaultCount> FaultDescriptions{{
    {FaultKind::BitErrors, "bit-errors", 0.001, 1, "each bit is inverted"},
    {FaultKind::DropFrames, "drop-frames", 0.1, 1, "a frame is lost"},
    {FaultKind::WrongFcs, "wrong-fcs", 0.1, 1, "a frame has a wrong check sequence"},
    {FaultKind::LostLa, "lost-la", 0.1, 1, "an acknowledgement (LA) is lost"},
    {FaultKind::DuplicateLt, "duplicate-lt", 0.1, 1, "a transfer (LT) comes twice"},
    {FaultKind::Noise, "noise", 0.1, 1, "random octets before a frame"},
    {FaultKind::Delay, "delay", 500, 10000, "a frame is late by up to this many milliseconds"},
    {FaultKind::NoCredit, "no-credit", 0.1, 1, "an acknowledgement of the radio gives no credit"},
    {FaultKind::StrayLr, "stray-lr", 0.01, 1, "the radio asks for a new link in the middle of the traffic"},
    {FaultKind::FlagFcs, "flag-fcs", 1, 1,
     "a frame of the radio has 02, 03, 10 or 16 in its check sequence, forced by extra octets at its end"},
    {FaultKind::NoIdent, "no-ident", 1, 1, "an acknowledgement names nobody"},
    {FaultKind::ExtraOctets, "extra-octets", 1, 1, "octets after the end of a message"},
    {FaultKind::UnknownTypes, "unknown-types", 0.1, 1, "a message is followed by one of an unknown type"},
    {FaultKind::ShortSettings, "short-settings", 1, 1, "radio settings of four octets, as before 1998"},
    {FaultKind::HighNetworkBits, "high-network-bits", 1, 1, "bits set above the channel number"},
    {FaultKind::ConnectedTwice, "connected-twice", 1, 1, "C5 after a call that came in connected"},
}};

double FaultSettings::Of(FaultKind kind) const
{
    const auto found = m_values.find(kind);
    return found == m_values.end() ? 0 : found->second;
}

void FaultSettings::Overlay(const FaultSettings& others)
{
    for (const auto& [kind, value] : others.m_values)
        Set(kind, value);
}

const FaultDescription& DescriptionOf(FaultKind kind)
{
    return *std::ranges::find(FaultDescriptions, kind, &FaultDescription::kind);
}

const FaultDescription* FaultOfWord(std::string_view word)
{
    const auto found = std::ranges::find(FaultDescriptions, word, &FaultDescription::word);
    return found == FaultDescriptions.end() ? nullptr : &*found;
}

std::string FaultWords()
{
    std::string words;
    for (const FaultDescription& fault : FaultDescriptions)
        words += (words.empty() ? "" : ", ") + std::string(fault.word);
    return words;
}

std::optional<FaultChoice> ChooseFault(std::string_view word, std::string_view value, std::string& problem)
{
    const FaultDescription* fault = FaultOfWord(word);
    if (!fault) {
        problem = "unknown fault \"" + std::string(word) + "\"; known are " + FaultWords();
        return std::nullopt;
    }
    if (value.empty() || value == "off")
        return FaultChoice{fault->kind, value.empty() ? fault->usual : 0};
    double number = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error != std::errc{} || end != value.data() + value.size() || !std::isfinite(number) || number < 0 ||
        number > fault->highest) {
        problem = std::string(word) + " must be off or 0 to " +
                  std::to_string(static_cast<int>(fault->highest)) + ", not \"" + std::string(value) + '"';
        return std::nullopt;
    }
    return FaultChoice{fault->kind, number};
}

} // namespace sim
