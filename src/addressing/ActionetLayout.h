#pragma once

#include "addressing/AddressingError.h"
#include "addressing/FleetConfig.h"

#include <array>
#include <optional>
#include <string>

// How the ANN numbering cuts the idents 1..8100 of a prefix into fleets. There are ten segments of 810
// idents: the first FPP are large fleets, the last MEP are mini fleets, those between are small. A segment
// that is no large fleet has ten blocks of 81 idents, each one small fleet or three mini fleets.
//
// No standard that we could obtain tells the order of fleets and numbers; `fleetShapes` and the counts above
// it are all there is to change if a network proves to differ.

enum class ActionetFleetKind {
    Large,
    Small,
    Mini,
};

struct NumberRange {
    int first;
    int last;

    constexpr int Count() const { return last - first + 1; }
    constexpr bool Contains(int number) const { return first <= number && number <= last; }
    bool operator==(const NumberRange&) const = default;
};

// One kind of fleet; of the mini fleets, one of the three in a block. The first ident is that of the first
// unit, the groups follow the units without a gap, and the idents left over have no number.
struct FleetShape {
    ActionetFleetKind kind;
    int start;  // first ident, counted from that of the segment or block
    int idents; // with those that have no number
    int digits; // length of a number in the fleet
    NumberRange units;
    NumberRange groups;
};

inline constexpr int actionetSegments = 10; // of a prefix
inline constexpr int segmentIdents = 810;
inline constexpr int blockIdents = 81;
inline constexpr int actionetDigits = 4; // length of a number in its prefix

inline constexpr std::array<FleetShape, 5> fleetShapes{{
    {ActionetFleetKind::Large, 0, 810, 3, {200, 899}, {900, 999}},
    {ActionetFleetKind::Small, 0, 81, 2, {20, 89}, {90, 99}},
    {ActionetFleetKind::Mini, 0, 27, 2, {20, 42}, {90, 92}},
    {ActionetFleetKind::Mini, 27, 27, 2, {43, 65}, {93, 95}},
    {ActionetFleetKind::Mini, 54, 27, 2, {66, 88}, {96, 98}},
}};

// A fleet of one prefix.
struct ActionetFleet {
    const FleetShape* shape; // one of fleetShapes
    int segment;
    int block; // 0 for a large fleet

    int FirstIdent() const;
    // The digits before the number in the fleet, without those of the prefix.
    std::string Digits() const;
    // Of an ident in this fleet; none when it has no number.
    std::optional<int> NumberOf(int ident) const;

    bool operator==(const ActionetFleet&) const = default;
};

struct ActionetFleetCounts {
    int large;
    int small;
    int mini;
};

// The first of these that is wrong: FPP and MEP each 0..10, their sum at most 10, the model.
std::optional<AddressingError> CheckActionet(const ActionetConfig& config);

// The functions below expect parameters that CheckActionet() accepts.

ActionetFleetCounts CountActionetFleets(const ActionetConfig& config);

// The fleet that holds an ident of 1..8100.
ActionetFleet ActionetFleetOf(const ActionetConfig& config, int ident);

// Four digits to an ident. Throws when no radio or group has that number.
int ActionetIdentOf(const ActionetConfig& config, const std::string& digits);
