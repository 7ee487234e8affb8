#pragma once

#include "map27/codec/CharacterCoding.h"
#include "map27/link/Time.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

using map27::Milliseconds;

// One sensor or control as an outstation knows it.
enum class Signal { Off, On, Unknown };

// Eight of them, number 0 first.
using Signals = std::array<Signal, 8>;

// As a report has them, number 7 first: "0" off, "1" on, "?" unknown.
std::string ToText(const Signals& signals);
// Any character other than 0 and 1 is unknown. Empty unless there are eight.
std::optional<Signals> SignalsOfText(std::string_view text);
// "off", "on", "unknown".
std::optional<Signal> SignalOfWord(std::string_view word);
std::string_view WordOf(Signal signal);

struct OutstationSettings {
    Signals sensors{};
    Signals controls{};
    std::optional<map27::TextCoding> coding; // of the reports; empty: both by turns
    Milliseconds changeEvery{};              // a sensor changes by itself; 0: none does
    Milliseconds reportEvery{};              // everything is reported unasked; 0: never
    Milliseconds reportAfter{500};           // from a command or change to its report
};

} // namespace sim
