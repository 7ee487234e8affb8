#pragma once

#include "map27/codec/Address.h"
#include "map27/codec/CharacterCoding.h"

#include <string_view>
#include <variant>

// How a regroup and a group name travel to a radio. MAP27 has no message for them, so they go as binary short
// data (SST, coding 8) in a format of our own. For a network with another format, only this file has to
// change.
//
//   octet 1, 2   signature 56h 4Bh
//   octet 3      version 01h
//   octet 4      operation: 01h regroup, 02h group name
//   octet 5      position 1..16
//   octet 6..    regroup: prefix and ident (2 octets) of the group, all 0 to take the radio out
//                group name: code page 437, at most 16 octets
namespace RegroupFormat {

constexpr std::size_t LongestName = 16;

map27::Octets Regroup(int position, map27::Address group);
// A name that is too long or has an unsendable character is refused; nothing is cut.
std::variant<map27::Octets, map27::TextProblem> GroupName(int position, std::string_view utf8);

} // namespace RegroupFormat
