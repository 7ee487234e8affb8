#pragma once

#include "map27/codec/Address.h"
#include "map27/codec/ShortData.h"

#include <variant>

namespace sim {

// What the console tells a radio about its dynamic groups. MAP27 has no message for that; it comes as binary
// short data (docs/scenarios.md, regrouping).
struct RegroupCommand {
    int position = 1;     // 1..16
    map27::Address group; // the dummy address takes the radio out of its group
    bool operator==(const RegroupCommand&) const = default;
};
struct GroupNameCommand {
    int position = 1;
    std::string name; // UTF-8
    bool operator==(const GroupNameCommand&) const = default;
};
using GroupCommand = std::variant<RegroupCommand, GroupNameCommand>;

// Whether the data carry the signature of a group command, valid or not.
bool IsGroupCommand(const map27::ShortData& data);
// Empty for data that carry it and still mean nothing to a radio: another version, an unknown operation, a
// wrong position.
std::optional<GroupCommand> DecodeGroupCommand(const map27::ShortData& data);

} // namespace sim
