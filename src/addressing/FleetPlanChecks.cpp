#include "addressing/FleetPlanChecks.h"

#include "addressing/Mpt1343Numbers.h"
#include "addressing/RadioAddress.h"

#include <initializer_list>

namespace {

AddressingError MakeError(AddressingCode code, std::initializer_list<long long> values)
{
    std::vector<std::string> texts;
    for (const long long value : values)
        texts.push_back(std::to_string(value));
    return AddressingError(code, std::move(texts));
}

// Prefix and base ident are known to be in range.
std::optional<AddressingError> CheckExtent(FleetType type, int numberPrefix, int baseIdent, long long size)
{
    const bool units = type == FleetType::Units;
    if (size < MinFleetSize || size > (units ? MaxUnitFleetSize : MaxGroupFleetSize))
        return MakeError(units ? AddressingCode::UnitFleetSize : AddressingCode::GroupFleetSize, {size});
    if (baseIdent + size - 1 > MaxSubscriberIdent)
        return MakeError(AddressingCode::FleetEndsTooHigh, {numberPrefix, FleetNumberOf(baseIdent)});
    return std::nullopt;
}

} // namespace

std::optional<AddressingError> CheckFleet(const PlannedFleet& fleet)
{
    if (fleet.numberPrefix < MinNumberPrefix || fleet.numberPrefix > MaxNumberPrefix)
        return MakeError(AddressingCode::NumberPrefixRange, {fleet.numberPrefix});
    if (fleet.fleetNumber < MinFleetNumber || fleet.fleetNumber > MaxFleetNumber)
        return MakeError(AddressingCode::FleetNumberRange, {fleet.fleetNumber});
    return CheckExtent(fleet.fleetType, fleet.numberPrefix, BaseIdentOf(fleet.fleetNumber), fleet.size);
}

std::optional<AddressingError> CheckFleetRow(const FleetConfig& fleet)
{
    if (fleet.prefix < 0 || fleet.prefix > HighestPrefix)
        return MakeError(AddressingCode::PrefixRange, {fleet.prefix});
    if (fleet.baseIdent < BaseIdentOf(MinFleetNumber) || fleet.baseIdent > BaseIdentOf(MaxFleetNumber) ||
        fleet.baseIdent % 2 != 0)
        return MakeError(AddressingCode::FleetBaseIdent, {fleet.baseIdent});
    if (auto error = CheckExtent(fleet.fleetType, fleet.prefix + NumberPrefixOffset, fleet.baseIdent,
                                 static_cast<long long>(fleet.maxIdent) - fleet.baseIdent + 1))
        return error;
    if (fleet.digits != 2 && fleet.digits != 3)
        return MakeError(AddressingCode::FleetDigitsRange, {fleet.digits});
    return std::nullopt;
}

FleetConfig ToFleetConfig(const PlannedFleet& fleet, int digits)
{
    const int base = BaseIdentOf(fleet.fleetNumber);
    return {.fleetType = fleet.fleetType,
            .digits = digits,
            .prefix = fleet.numberPrefix - NumberPrefixOffset,
            .baseIdent = base,
            .maxIdent = base + fleet.size - 1};
}

std::optional<AddressingError> CheckOverlap(const FleetConfig& fleet, std::span<const FleetConfig> others)
{
    for (const FleetConfig& other : others) {
        if (Overlap(fleet, other)) {
            const int numberPrefix = fleet.prefix + NumberPrefixOffset;
            return MakeError(AddressingCode::FleetsOverlap, {numberPrefix, FleetNumberOf(fleet.baseIdent),
                                                             numberPrefix, FleetNumberOf(other.baseIdent)});
        }
    }
    return std::nullopt;
}

std::vector<FleetPlanFinding> CheckPlan(std::span<const FleetConfig> plan)
{
    std::vector<FleetPlanFinding> findings;
    std::vector<FleetConfig> sound;
    for (std::size_t row = 0; row < plan.size(); ++row) {
        auto error = CheckFleetRow(plan[row]);
        if (!error)
            error = CheckOverlap(plan[row], sound);
        if (error)
            findings.push_back({row, *error});
        else
            sound.push_back(plan[row]);
    }
    return findings;
}
