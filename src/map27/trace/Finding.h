#pragma once

#include "map27/codec/Direction.h"

#include <string>
#include <string_view>
#include <vector>

namespace map27 {

// What strikes an observer of the wire.
struct Finding {
    enum class Weight {
        Remark, // allowed, or the line's fault, but worth a look
        Breach, // against the standard
    };

    Weight weight;
    std::string_view kind; // one word that stays the same, for scripts: "fcs"
    Direction by;          // whose frame it is about
    std::string text;      // a sentence for a person, in English

    bool operator==(const Finding&) const = default;
};

using Findings = std::vector<Finding>;

} // namespace map27
