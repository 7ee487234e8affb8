#pragma once

#include "map27/codec/Direction.h"

#include <cstdint>
#include <string>

namespace map27 {

// The cause octet of an acknowledgement, a disconnect or clear, or a protocol info, in English for traces and
// log files. Unknown causes are told by the outcome that the type stands for, and their number (MAP27 v1.5,
// A7.5).
std::string CauseText(std::uint8_t type, std::uint8_t cause, Direction direction = Direction::FromRadio);

// "INCOMING EMERGENCY CALL" for A5 from the radio; hexadecimal for a type that has no name.
std::string TypeName(std::uint8_t type, Direction direction);

} // namespace map27
