#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

// What can be made to go wrong on purpose; FaultSettings.cpp says what each fault means.
enum class FaultKind {
    // On the line, in both directions.
    BitErrors,
    DropFrames,
    WrongFcs,
    LostLa,
    DuplicateLt,
    Noise,
    Delay,
    // On the line, from the radio only.
    NoCredit,
    StrayLr,
    FlagFcs,
    // In what the radio says.
    NoIdent,
    ExtraOctets,
    UnknownTypes,
    ShortSettings,
    HighNetworkBits,
    ConnectedTwice,
};

// How strong each fault is: the probability that it strikes, or milliseconds.
class FaultSettings {
public:
    // 0: it never strikes.
    double Of(FaultKind kind) const;
    void Set(FaultKind kind, double value) { m_values.insert_or_assign(kind, value); }
    // The other settings override these.
    void Overlay(const FaultSettings& others);

    bool operator==(const FaultSettings&) const = default;

private:
    std::map<FaultKind, double> m_values;
};

struct FaultDescription {
    FaultKind kind;
    std::string_view word; // in scenarios, commands and switches
    double usual;          // when no value is given
    double highest;
    std::string_view meaning;
};
constexpr std::size_t FaultCount = 16;
extern const std::array<FaultDescription, FaultCount> FaultDescriptions;

const FaultDescription& DescriptionOf(FaultKind kind);
// Null for an unknown word.
const FaultDescription* FaultOfWord(std::string_view word);
// All words, for a person: "bit-errors, ...".
std::string FaultWords();

// "NAME" or "NAME=VALUE"; the value may be "off".
struct FaultChoice {
    FaultKind kind;
    double value;
};
// An empty `value` means the usual one. On failure `problem` says why, in plain words.
std::optional<FaultChoice> ChooseFault(std::string_view word, std::string_view value, std::string& problem);

} // namespace sim
