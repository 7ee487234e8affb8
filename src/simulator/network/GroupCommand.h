#pragma once

#include "map27/codec/Address.h"
#include "map27/codec/ShortData.h"

#include <variant>

namespace sim {

// What the console tells a radio about its dynamic groups. MAP27 has no message for that; it comes as binary
// short data (docs/scenarios.md, regrouping).
struct RegroupCommand {
    int position = 1;     // 1..16
    map27::Address group; // the dummy address takes the radio out
    bool operator==(const RegroupCommand&) const = default;
};
struct GroupNameCommand {
    int position = 1;
    std::string name; // UTF-8
    bool operator==(const GroupNameCommand&) const = default;
};
using GroupCommand = std::variant<RegroupCommand, GroupNameCommand>;

// Whether the data bear the signature of a group command, good or bad.
bool IsGroupCommand(const map27::ShortData& data);
// Empty when they bear it but a radio cannot follow them: another version, an unknown operation, a wrong
// position.
std::optional<GroupCommand> DecodeGroupCommand(const map27::ShortData& data);

} // namespace sim
