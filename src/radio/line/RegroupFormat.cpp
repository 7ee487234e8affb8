#include "radio/line/RegroupFormat.h"

namespace {

enum class Operation : std::uint8_t { Regroup = 1, GroupName = 2 };

map27::Octets Head(Operation operation, int position)
{
    return {0x56, 0x4B, 0x01, static_cast<std::uint8_t>(operation), static_cast<std::uint8_t>(position)};
}

} // namespace

map27::Octets RegroupFormat::Regroup(int position, map27::Address group)
{
    map27::Octets octets = Head(Operation::Regroup, position);
    octets.push_back(group.prefix);
    octets.push_back(static_cast<std::uint8_t>(group.ident >> 8));
    octets.push_back(static_cast<std::uint8_t>(group.ident & 0xFF));
    return octets;
}

std::variant<map27::Octets, map27::TextProblem> RegroupFormat::GroupName(int position, std::string_view utf8)
{
    const auto name = map27::EncodeCodePage437(utf8, LongestName);
    if (const auto* problem = std::get_if<map27::TextProblem>(&name))
        return *problem;
    map27::Octets octets = Head(Operation::GroupName, position);
    const auto& characters = std::get<map27::Octets>(name);
    octets.insert(octets.end(), characters.begin(), characters.end());
    return octets;
}
