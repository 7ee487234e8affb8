#pragma once

#include <string>

// Ranges and well-known idents of the 20-bit MPT1327 address: 7 bits of prefix, 13 bits of ident.
inline constexpr int HighestPrefix = 127;
inline constexpr int HighestIdent = 8191;
// Highest ident of a unit or group; what lies above is special (gateways, registration, everybody).
inline constexpr int MaxSubscriberIdent = 8100;

inline constexpr int DummyIdent = 0;
inline constexpr int PstnGatewayIdent = 8101;
inline constexpr int PabxGatewayIdent = 8102;
inline constexpr int EverybodyIdent = 8191;

enum class AddressKind {
    Radio = 0,   // a radio, a group or a special ident; digits are empty
    Gateway = 1, // a telephone number behind ident 8101 or 8102
};

// Where a call or message goes. A value of this type may be invalid; ValidateAddress() tells.
struct RadioAddress {
    int prefix = 0; // 0..127
    int ident = 0;  // 0..8191
    AddressKind kind = AddressKind::Radio;
    // Only of a Gateway: 1..31 digits; a public number without its leading access digit 0.
    std::string digits = {};

    bool operator==(const RadioAddress&) const = default;
};

// Throws AddressingError when the prefix, ident, kind or digits cannot form an address.
void ValidateAddress(const RadioAddress& address);
