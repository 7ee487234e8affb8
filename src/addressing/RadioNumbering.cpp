#include "addressing/RadioNumbering.h"

#include "addressing/RadioAddress.h"

std::optional<AddressingError> CheckOwnNumber(const RadioNumbering& numbering)
{
    if (numbering.prefix >= 0 && numbering.prefix <= HighestPrefix && numbering.ident > DummyIdent &&
        numbering.ident <= HighestIdent)
        return std::nullopt;
    return AddressingError(AddressingCode::OwnNumberIgnored,
                           {std::to_string(numbering.prefix), std::to_string(numbering.ident)});
}

std::vector<AddressingError> CheckOwnFleets(const RadioNumbering& numbering)
{
    std::vector<AddressingError> warnings;
    const auto warn = [&](int base, int max, int digits) {
        warnings.emplace_back(AddressingCode::OwnFleetIgnored,
                              std::vector{std::to_string(base), std::to_string(max), std::to_string(digits)});
    };
    if (numbering.unitBaseIdent > numbering.unitMaxIdent)
        warn(numbering.unitBaseIdent, numbering.unitMaxIdent, numbering.unitDigits);
    if (numbering.groupBaseIdent > numbering.groupMaxIdent)
        warn(numbering.groupBaseIdent, numbering.groupMaxIdent, numbering.groupDigits);
    if (numbering.unitBaseIdent == 0 && numbering.groupBaseIdent == 0)
        warn(0, numbering.unitMaxIdent, numbering.unitDigits);
    return warnings;
}
