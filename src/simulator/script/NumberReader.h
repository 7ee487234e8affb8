#pragma once

#include "map27/codec/Messages.h"
#include "simulator/script/JsonNode.h"

namespace sim {

// Members "prefix" and "ident" of the node: the address of a radio or group.
map27::Address ReadAddress(const JsonNode& node);

// An object of base, max and digits.
map27::NumberRange ReadRange(const JsonNode& node);

} // namespace sim
