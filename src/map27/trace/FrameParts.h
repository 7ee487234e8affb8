#pragma once

#include "map27/codec/Octets.h"

#include <optional>

namespace map27 {

// A frame taken apart.
struct FrameParts {
    Octets body; // unstuffed
    std::uint16_t fcs = 0;
    std::uint16_t rightFcs = 0;

    bool IsGood() const { return fcs == rightFcs; }
};

// Empty when the octets are not one frame from start flag to FCS.
std::optional<FrameParts> TakeApart(OctetSpan frame);

} // namespace map27
