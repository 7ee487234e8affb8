#pragma once

#include "map27/codec/Octets.h"

#include <optional>
#include <string_view>

namespace map27 {

// MPT1327 address as MAP27 carries it: prefix 0..127, ident 0..8191.
struct Address {
    std::uint8_t prefix = 0;
    std::uint16_t ident = 0;

    // "No address": decided by the ident alone, since prefix 0 is a prefix like any other (MAP27 v1.5, A6.5).
    bool IsDummy() const { return ident == 0; }
    bool operator==(const Address&) const = default;
};

constexpr std::uint8_t HighestPrefix = 127;
constexpr std::uint16_t HighestIdent = 8191;

namespace Ident {
constexpr std::uint16_t Pstn = 8101;            // with the digits as address description
constexpr std::uint16_t Pabx = 8102;            // likewise
constexpr std::uint16_t FirstStoredPstn = 8121; // 8121..8135: numbers 1..15 kept by the network
constexpr std::uint16_t LastStoredPstn = 8135;
constexpr std::uint16_t SystemWide = 8191;
} // namespace Ident

// False for idents that a terminal must not use (0, 8103..8120 and 8181..8190) and for what is not an address
// at all.
bool IsSendable(Address address);

// "12/345", for log files.
std::string ToText(Address address);

// What the octets of an address description mean (ADESC, MAP27 v1.5, 5.2.1.3).
enum class DescriptionKind : std::uint8_t {
    None = 0,
    Digits = 1,            // telephone number for Ident::Pstn or Ident::Pabx
    Custom = 2,            // raw octets, meaning left to the vendor
    PabxExtension = 3,     // ident is the extension, exchange 0..15 says whose
    PabxExtensionFull = 4, // extension as unit.ident, and the exchange; only in acknowledgements
    Unit = 5,              // a radio address; only in acknowledgements
    UnitWithDigits = 6,    // a gateway and its digits; only in acknowledgements
    DialledString = 7,     // the user's own dialling, ident is 0
};

// The optional second half of an address header. Which members count depends on kind.
struct AddressDescription {
    DescriptionKind kind = DescriptionKind::None;
    Address unit;              // PabxExtensionFull, Unit, UnitWithDigits
    std::uint8_t exchange = 0; // PabxExtension, PabxExtensionFull
    std::string digits;        // Digits, UnitWithDigits, DialledString: 0-9 * #
    Octets raw;                // Custom, and the address octets of a description that could not be understood
    bool understood = true;    // false: reserved kind, wrong length or a reserved digit; raw holds the octets

    bool operator==(const AddressDescription&) const = default;
};

// The longest telephone number, and the longest address part in octets.
constexpr std::size_t MostDigits = 24;
constexpr std::size_t MostAddressOctets = 15;

// Who a message is for or from.
struct Party {
    Address address;
    AddressDescription description;

    bool operator==(const Party&) const = default;
};

// Packed BCD, first digit in the upper half, an odd count padded with Fh (MAP27 v1.5, 5.2.1.2). Empty when a
// character is not one of 0-9 * #.
std::optional<Octets> PackDigits(std::string_view digits);

// Empty when a half octet is reserved, or digits follow the filler.
std::optional<std::string> UnpackDigits(OctetSpan octets);

} // namespace map27
