#pragma once

#include "addressing/AddressingError.h"
#include "addressing/FleetConfig.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

// A fleet as the plan's editor writes it.
struct PlannedFleet {
    FleetType fleetType = FleetType::Units;
    int numberPrefix = 0; // 200..327
    int fleetNumber = 0;  // 2001..6050
    int size = 0;         // idents: 2..700 units, 2..100 groups
};

// A finding about row `row` (0-based) of the plan that was checked.
struct FleetPlanFinding {
    std::size_t row = 0;
    AddressingError error;
};

// The first thing that is wrong: number prefix, fleet number, size, or an end above ident 8100.
std::optional<AddressingError> CheckFleet(const PlannedFleet& fleet);

// The same for a stored or imported row, in terms of its own fields: prefix, base ident (even, 2..8100),
// size, end above ident 8100, digits (2 or 3).
std::optional<AddressingError> CheckFleetRow(const FleetConfig& fleet);

// The row as it is stored, for a fleet that CheckFleet() accepts. `digits` is not checked.
FleetConfig ToFleetConfig(const PlannedFleet& fleet, int digits);

// The first row of `others` that shares an ident with `fleet`, as a "fleets overlap" error.
std::optional<AddressingError> CheckOverlap(const FleetConfig& fleet, std::span<const FleetConfig> others);

// Everything wrong with a plan, at most one finding a row, in the plan's order. The later of two overlapping
// rows carries the finding; a row with a finding is not compared with later ones.
std::vector<FleetPlanFinding> CheckPlan(std::span<const FleetConfig> plan);
