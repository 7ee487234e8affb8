#include "addressing/RadioNumbering.h"

#include "addressing/RadioAddress.h"

std::optional<AddressingError> CheckOwnNumber(const RadioNumbering& numbering)
{
    if (numbering.prefix >= 0 && numbering.prefix <= HighestPrefix && numbering.ident >= 0 &&
        numbering.ident <= HighestIdent)
        return std::nullopt;
    return AddressingError(AddressingCode::OwnNumberIgnored,
                           {std::to_string(numbering.prefix), std::to_string(numbering.ident)});
}
