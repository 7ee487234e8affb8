#include "simulator/network/GroupCommand.h"

#include "map27/codec/CharacterCoding.h"

namespace sim {

namespace {

// Octets: signature (2), version, operation, position, then the group (3) or the characters of the name.
constexpr std::uint8_t firstSignature = 0x56;
constexpr std::uint8_t secondSignature = 0x4B;
constexpr std::uint8_t version = 1;
constexpr std::uint8_t regroup = 1;
constexpr std::uint8_t groupName = 2;
constexpr std::size_t headOctets = 5;
constexpr std::size_t addressOctets = 3;
constexpr int highestPosition = 16;

} // namespace

bool IsGroupCommand(const map27::ShortData& data)
{
    return data.coding == map27::Coding::Binary && data.octets.size() >= 2 &&
           data.octets[0] == firstSignature && data.octets[1] == secondSignature;
}

std::optional<GroupCommand> DecodeGroupCommand(const map27::ShortData& data)
{
    const map27::Octets& octets = data.octets;
    if (!IsGroupCommand(data) || octets.size() < headOctets || octets[2] != version)
        return std::nullopt;
    const int position = octets[4];
    if (position < 1 || position > highestPosition)
        return std::nullopt;
    const map27::OctetSpan rest = map27::OctetSpan(octets).subspan(headOctets);
    if (octets[3] == regroup && rest.size() >= addressOctets) {
        const auto ident = static_cast<std::uint16_t>(rest[1] << 8 | rest[2]);
        if (rest[0] > map27::HighestPrefix || ident > map27::HighestIdent)
            return std::nullopt;
        return RegroupCommand{position, {rest[0], ident}};
    }
    if (octets[3] == groupName && !rest.empty())
        return GroupNameCommand{position, map27::DecodeCodePage437(rest)};
    return std::nullopt;
}

} // namespace sim
