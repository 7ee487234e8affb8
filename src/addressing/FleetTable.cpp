#include "addressing/FleetTable.h"

#include "addressing/FleetPlanChecks.h"
#include "addressing/Mpt1343Numbers.h"
#include "addressing/RadioAddress.h"

#include <algorithm>

namespace {

bool CanNumber(int digits)
{
    return digits == 2 || digits == 3;
}

bool IsUsable(const FleetConfig& row)
{
    return row.prefix >= 0 && row.prefix <= HighestPrefix && row.baseIdent >= 1 &&
           row.maxIdent >= row.baseIdent && row.maxIdent <= MaxSubscriberIdent && CanNumber(row.digits);
}

} // namespace

void FleetTable::SetPlan(const std::vector<FleetConfig>& plan)
{
    m_plan.clear();
    m_planWarnings.clear();
    for (const FleetConfig& row : plan) {
        if (!IsUsable(row)) {
            m_planWarnings.emplace_back(AddressingCode::PlanRowIgnored,
                                        std::vector{std::to_string(row.prefix), std::to_string(row.baseIdent),
                                                    std::to_string(row.maxIdent),
                                                    std::to_string(row.digits)});
            continue;
        }
        if (const auto overlap = CheckOverlap(row, m_plan))
            m_planWarnings.push_back(*overlap);
        m_plan.push_back(row);
    }
}

void FleetTable::SetOwn(const RadioNumbering& numbering)
{
    m_ownPrefix.reset();
    m_ownUnits.reset();
    m_ownGroups.reset();
    m_ownWarnings.clear();
    if (const auto error = CheckOwnNumber(numbering)) {
        m_ownWarnings.push_back(*error);
        return;
    }
    m_ownWarnings = CheckOwnFleets(numbering);
    m_ownPrefix = numbering.prefix;
    m_ownUnits = MakeOwnRow(FleetType::Units, numbering);
    m_ownGroups = MakeOwnRow(FleetType::Groups, numbering);
}

std::optional<FleetConfig> FleetTable::MakeOwnRow(FleetType type, const RadioNumbering& numbering)
{
    const bool units = type == FleetType::Units;
    FleetConfig row{.fleetType = type,
                    .digits = units ? numbering.unitDigits : numbering.groupDigits,
                    .prefix = numbering.prefix,
                    .baseIdent = units ? numbering.unitBaseIdent : numbering.groupBaseIdent,
                    .maxIdent = units ? numbering.unitMaxIdent : numbering.groupMaxIdent};
    if (row.baseIdent < 1 || row.maxIdent < row.baseIdent)
        return std::nullopt;
    if (row.baseIdent > MaxSubscriberIdent || !CanNumber(row.digits)) {
        m_ownWarnings.emplace_back(AddressingCode::OwnFleetIgnored,
                                   std::vector{std::to_string(row.baseIdent), std::to_string(row.maxIdent),
                                               std::to_string(row.digits)});
        return std::nullopt;
    }
    if (row.maxIdent > MaxSubscriberIdent) {
        m_ownWarnings.emplace_back(AddressingCode::OwnFleetCut,
                                   std::vector{std::to_string(row.baseIdent), std::to_string(row.maxIdent)});
        row.maxIdent = MaxSubscriberIdent;
    }
    return row;
}

const FleetConfig* FleetTable::OwnRow(FleetType type) const
{
    const std::optional<FleetConfig>& row = type == FleetType::Units ? m_ownUnits : m_ownGroups;
    return row ? &*row : nullptr;
}

template <typename Predicate> const FleetConfig* FleetTable::FindIf(Predicate matches) const
{
    for (const FleetType type : {FleetType::Units, FleetType::Groups}) {
        const FleetConfig* own = OwnRow(type);
        if (own && matches(*own))
            return own;
    }
    const auto found = std::find_if(m_plan.begin(), m_plan.end(), matches);
    return found == m_plan.end() ? nullptr : &*found;
}

const FleetConfig* FleetTable::Find(int prefix, int baseIdent, FleetType type) const
{
    return FindIf([=](const FleetConfig& row) {
        return row.prefix == prefix && row.baseIdent == baseIdent && row.fleetType == type;
    });
}

const FleetConfig* FleetTable::FindContaining(int prefix, int ident) const
{
    return FindIf([=](const FleetConfig& row) { return ContainsIdent(row, prefix, ident); });
}

std::vector<AddressingError> FleetTable::Warnings() const
{
    std::vector<AddressingError> warnings = m_ownWarnings;
    for (const FleetType type : {FleetType::Units, FleetType::Groups}) {
        const FleetConfig* own = OwnRow(type);
        for (const FleetConfig& row : m_plan) {
            if (own && Overlap(*own, row) && *own != row)
                warnings.emplace_back(
                    AddressingCode::OwnFleetDiffers,
                    std::vector{std::to_string(own->baseIdent), std::to_string(own->maxIdent),
                                std::to_string(row.prefix + NumberPrefixOffset),
                                std::to_string(FleetNumberOf(row.baseIdent)), std::to_string(row.baseIdent),
                                std::to_string(row.maxIdent)});
        }
    }
    warnings.insert(warnings.end(), m_planWarnings.begin(), m_planWarnings.end());
    return warnings;
}
