#include "simulator/network/GroupCommand.h"

#include "map27/codec/CharacterCoding.h"

namespace sim {

namespace {

// Octets: signature (2), version, operation, position, then the group (3) or the characters of the name.
constexpr std::uint8_t FirstSignature = 0x56;
constexpr std::uint8_t SecondSignature = 0x4B;
constexpr std::uint8_t Version = 1;
constexpr std::uint8_t Regroup = 1;
constexpr std::uint8_t GroupName = 2;
constexpr std::size_t HeadOctets = 5;
constexpr std::size_t AddressOctets = 3;
constexpr int HighestPosition = 16;

} // namespace

bool IsGroupCommand(const map27::ShortData& data)
{
    return data.coding == map27::Coding::Binary && data.octets.size() >= 2 &&
           data.octets[0] == FirstSignature && data.octets[1] == SecondSignature;
}

std::optional<GroupCommand> DecodeGroupCommand(const map27::ShortData& data)
{
    const map27::Octets& octets = data.octets;
    if (!IsGroupCommand(data) || octets.size() < HeadOctets || octets[2] != Version)
        return std::nullopt;
    const int position = octets[4];
    if (position < 1 || position > HighestPosition)
        return std::nullopt;
    const map27::OctetSpan rest = map27::OctetSpan(octets).subspan(HeadOctets);
    if (octets[3] == Regroup && rest.size() >= AddressOctets) {
        const auto ident = static_cast<std::uint16_t>(rest[1] << 8 | rest[2]);
        if (rest[0] > map27::HighestPrefix || ident > map27::HighestIdent)
            return std::nullopt;
        return RegroupCommand{position, {rest[0], ident}};
    }
    if (octets[3] == GroupName && !rest.empty())
        return GroupNameCommand{position, map27::DecodeCodePage437(rest)};
    return std::nullopt;
}

} // namespace sim
