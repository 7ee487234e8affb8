#pragma once

#include "map27/Messages.h"

namespace sim {

// The radio that the console is connected to.
struct OwnRadio {
    map27::Address address;
    map27::NumberRange units;
    map27::NumberRange groups;
};

} // namespace sim
