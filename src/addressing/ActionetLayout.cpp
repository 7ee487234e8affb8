#include "addressing/ActionetLayout.h"

#include "addressing/Digits.h"

namespace {

constexpr int BlocksOfSegment = SegmentIdents / BlockIdents;
constexpr int MiniFleetsOfBlock = 3;
constexpr int LastModel = 3; // EXTRA LARGE

ActionetFleetKind KindOf(const ActionetConfig& config, int segment)
{
    if (segment < config.FPP)
        return ActionetFleetKind::Large;
    return segment < ActionetSegments - config.MEP ? ActionetFleetKind::Small : ActionetFleetKind::Mini;
}

// How far a number is from the fleet's first ident; none when the fleet has no such number.
std::optional<int> OffsetOf(const FleetShape& shape, int number)
{
    if (shape.units.Contains(number))
        return number - shape.units.first;
    if (shape.groups.Contains(number))
        return shape.units.Count() + number - shape.groups.first;
    return std::nullopt;
}

} // namespace

int ActionetFleet::FirstIdent() const
{
    return 1 + SegmentIdents * segment + BlockIdents * block + shape->start;
}

std::string ActionetFleet::Digits() const
{
    std::string digits = std::to_string(segment);
    if (shape->kind != ActionetFleetKind::Large)
        digits += std::to_string(block);
    return digits;
}

std::optional<int> ActionetFleet::NumberOf(int ident) const
{
    const int offset = ident - FirstIdent();
    if (offset < shape->units.Count())
        return shape->units.first + offset;
    const int groupOffset = offset - shape->units.Count();
    if (groupOffset < shape->groups.Count())
        return shape->groups.first + groupOffset;
    return std::nullopt;
}

std::optional<AddressingError> CheckActionet(const ActionetConfig& config)
{
    if (config.FPP < 0 || config.FPP > ActionetSegments || config.MEP < 0 || config.MEP > ActionetSegments)
        return AddressingError(AddressingCode::ActionetRange);
    if (config.FPP + config.MEP > ActionetSegments)
        return AddressingError(AddressingCode::ActionetSum);
    if (config.model < 0 || config.model > LastModel)
        return AddressingError(AddressingCode::ActionetModel, {std::to_string(config.model)});
    return std::nullopt;
}

ActionetFleetCounts CountActionetFleets(const ActionetConfig& config)
{
    return {.large = config.FPP,
            .small = (ActionetSegments - config.FPP - config.MEP) * BlocksOfSegment,
            .mini = config.MEP * BlocksOfSegment * MiniFleetsOfBlock};
}

ActionetFleet ActionetFleetOf(const ActionetConfig& config, int ident)
{
    const int segment = (ident - 1) / SegmentIdents;
    const ActionetFleetKind kind = KindOf(config, segment);
    const int inSegment = (ident - 1) % SegmentIdents;
    const int block = kind == ActionetFleetKind::Large ? 0 : inSegment / BlockIdents;
    const int rest = inSegment - block * BlockIdents;
    const FleetShape* holder = nullptr;
    for (const FleetShape& shape : FleetShapes)
        if (shape.kind == kind && shape.start <= rest)
            holder = &shape;
    return {.shape = holder, .segment = segment, .block = block};
}

int ActionetIdentOf(const ActionetConfig& config, const std::string& digits)
{
    const int segment = digits.front() - '0';
    const ActionetFleetKind kind = KindOf(config, segment);
    const bool large = kind == ActionetFleetKind::Large;
    const std::string fleet = digits.substr(0, large ? 1 : 2);
    const std::string number = digits.substr(fleet.size());
    if (number.front() <= '1')
        throw AddressingError(large ? AddressingCode::LargeFleetRange : AddressingCode::SmallFleetRange,
                              {number, fleet});
    for (const FleetShape& shape : FleetShapes) {
        const auto offset = shape.kind == kind ? OffsetOf(shape, ParseDigits(number)) : std::nullopt;
        if (offset) {
            const int block = large ? 0 : fleet.back() - '0';
            return ActionetFleet{&shape, segment, block}.FirstIdent() + *offset;
        }
    }
    throw AddressingError(AddressingCode::NotUsedInMiniFleets, {number});
}
