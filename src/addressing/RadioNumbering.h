#pragma once

#include "addressing/AddressingError.h"

#include <optional>

// The radio's own number and the fleet that it belongs to, as it reports them (MAP27 v1.5, radio numbering).
// A base ident of 0 means that the radio has no such fleet; only one of the two may be missing.
struct RadioNumbering {
    int prefix = 0; // 0..127
    int ident = 0;  // 1..8100
    int unitBaseIdent = 0;
    int unitMaxIdent = 0;
    int groupBaseIdent = 0;
    int groupMaxIdent = 0;
    int unitDigits = 2;  // length of a unit number, 2 or 3
    int groupDigits = 2; // length of a group number, 2 or 3

    bool operator==(const RadioNumbering&) const = default;
};

// A warning when the radio's own prefix or ident cannot exist.
std::optional<AddressingError> CheckOwnNumber(const RadioNumbering& numbering);
// Warnings of fleets whose base is above their highest ident, and of a report that names neither fleet.
std::vector<AddressingError> CheckOwnFleets(const RadioNumbering& numbering);
