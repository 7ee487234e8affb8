#pragma once

#include "addressing/AddressingError.h"
#include "addressing/FleetConfig.h"
#include "addressing/RadioNumbering.h"

#include <optional>
#include <vector>

// The fleets that MPT1343 numbers are looked up in: the own radio's, then those of the plan. Where rows
// overlap, the first one counts.
class FleetTable {
public:
    // Keeps the rows that can be used; Warnings() names the others.
    void SetPlan(const std::vector<FleetConfig>& plan);
    void SetOwn(const RadioNumbering& numbering);

    // Empty until the radio has reported a number that can exist.
    std::optional<int> OwnPrefix() const { return m_ownPrefix; }
    // Null when the radio's own fleet has no units (groups). Valid until the next Set….
    const FleetConfig* OwnRow(FleetType type) const;
    bool IsOwnRow(const FleetConfig& row) const { return &row == OwnRow(row.fleetType); }

    // The row of the fleet that was dialled, or null.
    const FleetConfig* Find(int prefix, int baseIdent, FleetType type) const;
    const FleetConfig* FindContaining(int prefix, int ident) const;

    std::vector<AddressingError> Warnings() const;

private:
    std::optional<FleetConfig> MakeOwnRow(FleetType type, const RadioNumbering& numbering);
    template <typename Predicate> const FleetConfig* FindIf(Predicate matches) const;

    std::optional<int> m_ownPrefix;
    std::optional<FleetConfig> m_ownUnits;
    std::optional<FleetConfig> m_ownGroups;
    std::vector<FleetConfig> m_plan;
    std::vector<AddressingError> m_planWarnings;
    std::vector<AddressingError> m_ownWarnings;
};
