#pragma once

#include "map27/codec/Messages.h"

namespace sim {

// The radio that the console is connected to.
struct OwnRadio {
    map27::Address address;
    map27::NumberRange units;
    map27::NumberRange groups;
    // What not every radio can do.
    bool dataCalls = false; // and modem data in them
    bool includeCalls = false;
    bool diversions = false;
};

} // namespace sim
