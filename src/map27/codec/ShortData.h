#pragma once

#include "map27/codec/Octets.h"

#include <optional>

namespace map27 {

// 81 or 82: one to four codewords, or five to sixteen, on the air.
enum class DataSize { Short, Medium };

// Codings of SST and MST (MAP27 v1.5, 5.2.1.6).
enum class Coding : std::uint8_t {
    FreeFormat = 0,    // bit string in the air's own format, SST only
    BcdAscii = 1,      // digits on the air, characters 0-9 * # here
    TelexAscii = 2,    // telex on the air, ASCII here
    Binary = 8,        // bit string
    Bcd = 9,           // one digit per octet
    Telex = 10,        // one five-bit character per octet
    Ccitt5 = 11,       // seven-bit ASCII
    PcCharacters = 15, // code page 437
    // 3..7, 12, 13 are reserved, 14 is free for customisation; received ones keep their number.
};

bool IsKnown(Coding coding);
bool IsCharacterCoding(Coding coding); // else a bit string, or unknown

// Coding and data octets of one message as on the wire.
struct ShortData {
    Coding coding = Coding::Ccitt5;
    std::uint8_t bitsInLastOctet = 8; // 1..8; other than 8 only for bit strings
    Octets octets;

    std::size_t Bits() const { return octets.empty() ? 0 : octets.size() * 8 - (8 - bitsInLastOctet); }
    bool operator==(const ShortData&) const = default;
};

// How many units (bits or characters) a message of this size holds; empty when the coding is not allowed
// there.
std::optional<std::size_t> MostUnits(Coding coding, DataSize size);

// Whether the data fit; counts bits or characters, depending on the coding.
bool Fits(const ShortData& data, DataSize size);

// What a radio pads with: it learns from the air only how many codewords came (MAP27 v1.5, A6.2).
enum class PadStyle {
    Nul,       // NUL characters
    NullDigit, // for BCD the NULL digit, else as Nul
    Blank,     // blanks where the coding has one, else as NullDigit
};

// The data as the receiving radio hands them over, padded to full codewords. Empty when the data do not fit
// into the size, or the coding is unknown.
std::optional<ShortData> PadToCodewords(const ShortData& data, DataSize size, PadStyle style);

// Codewords that the data take on the air, for a simulated network's timing. 0 when they fit into no message.
std::size_t CodewordCount(const ShortData& data);

} // namespace map27
