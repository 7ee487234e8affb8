#pragma once

#include "addressing/AddressingError.h"
#include "addressing/FleetConfig.h"

#include <array>
#include <optional>
#include <string>

// How the ANN numbering divides the idents 1..8100 of a prefix into fleets. There are ten segments of 810
// idents. Each of the first FPP segments is one large fleet. Every other segment has ten blocks of 81 idents;
// a block holds three mini fleets in the last MEP segments and one small fleet in those between.
//
// No published standard gives the order of fleets and numbers. Should a network turn out to differ,
// `FleetShapes` and the counts above it are all there is to change.

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

// A kind of fleet, or one of the three mini fleets in a block. Its idents begin with the units; the groups
// follow without a gap, and any idents left over have no number.
struct FleetShape {
    ActionetFleetKind kind;
    int start;  // its first ident, counted from that of the segment or block
    int idents; // including those without a number
    int digits; // length of a number in the fleet
    NumberRange units;
    NumberRange groups;
};

inline constexpr int ActionetSegments = 10; // of a prefix
inline constexpr int SegmentIdents = 810;
inline constexpr int BlockIdents = 81;
inline constexpr int ActionetDigits = 4; // length of a number in its prefix

inline constexpr std::array<FleetShape, 5> FleetShapes{{
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
    // The number of an ident in this fleet; none when it has no number.
    std::optional<int> NumberOf(int ident) const;

    bool operator==(const ActionetFleet&) const = default;
};

struct ActionetFleetCounts {
    int large;
    int small;
    int mini;
};

// The first rule that the parameters break: FPP and MEP each 0..10, their sum at most 10, a known model.
std::optional<AddressingError> CheckActionet(const ActionetConfig& config);

// The functions below expect parameters that CheckActionet() accepts.

ActionetFleetCounts CountActionetFleets(const ActionetConfig& config);

// The fleet that holds an ident of 1..8100.
ActionetFleet ActionetFleetOf(const ActionetConfig& config, int ident);

// The ident that four dialled digits mean. Throws when no radio or group has that number.
int ActionetIdentOf(const ActionetConfig& config, const std::string& digits);
