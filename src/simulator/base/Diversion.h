#pragma once

#include "map27/codec/Address.h"

namespace sim {

// Calls or messages for one radio that go to another.
struct Diversion {
    map27::Address from;
    map27::Address to;
    bool speech = true;
    bool data = true;
    bool operator==(const Diversion&) const = default;
};

} // namespace sim
