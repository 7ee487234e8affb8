#pragma once

#include "addressing/AddressingError.h"

#include <optional>

// The own radio's number and the fleet it belongs to, as the radio reports them (MAP27 v1.5, radio
// numbering). A row whose base ident is 0, or whose max is below its base, says that the radio has no such
// fleet.
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

// An own prefix or ident that cannot exist, as a warning.
std::optional<AddressingError> CheckOwnNumber(const RadioNumbering& numbering);
