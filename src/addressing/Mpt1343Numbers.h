#pragma once

#include "addressing/FleetConfig.h"

// The arithmetic of MPT1343 numbers: number prefix (3 digits), fleet number (4), number in the fleet (2 or
// 3). Units are numbered 20..89 or 200..899, groups 90..99 or 900..999, and the first number of a fleet is
// its base ident.

inline constexpr int NumberPrefixOffset = 200; // number prefix minus MPT1327 prefix
inline constexpr int MinNumberPrefix = 200;
inline constexpr int MaxNumberPrefix = 327;
inline constexpr int MinFleetNumber = 2001;
inline constexpr int MaxFleetNumber = 6050;
inline constexpr int MinFleetSize = 2;
inline constexpr int MaxUnitFleetSize = 700;
inline constexpr int MaxGroupFleetSize = 100;
inline constexpr int LastUnitFleetNumber = 5499;   // of a fleet outside the plan
inline constexpr int FirstGroupFleetNumber = 5500; // of a fleet outside the plan

constexpr int BaseIdentOf(int fleetNumber)
{
    return (fleetNumber - 2000) * 2;
}

constexpr int FleetNumberOf(int baseIdent)
{
    return baseIdent / 2 + 2000;
}

constexpr int FirstNumber(FleetType type, int digits)
{
    return (type == FleetType::Units ? 20 : 90) * (digits == 2 ? 1 : 10);
}

constexpr int LastNumber(FleetType type, int digits)
{
    const int last = type == FleetType::Units ? 89 : 99;
    return digits == 2 ? last : last * 10 + 9;
}

inline bool ContainsIdent(const FleetConfig& fleet, int prefix, int ident)
{
    return fleet.prefix == prefix && fleet.baseIdent <= ident && ident <= fleet.maxIdent;
}

inline bool Overlap(const FleetConfig& a, const FleetConfig& b)
{
    return a.prefix == b.prefix && a.baseIdent <= b.maxIdent && b.baseIdent <= a.maxIdent;
}
