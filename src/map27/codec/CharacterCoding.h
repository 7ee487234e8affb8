#pragma once

#include "map27/codec/ShortData.h"

#include <string_view>
#include <variant>

namespace map27 {

// Received data as text, UTF-8. Character codings: every character decoded, then trailing NULs, NULL digits
// and blanks, which are the radio's filling, taken away; NULs in between become blanks. Bit strings and
// codings that are unknown: hexadecimal pairs without separators, nothing taken away. A character that means
// nothing becomes U+FFFD.
std::string DecodeText(const ShortData& data);

// Which characters a person may send.
enum class TextCoding {
    SevenBit, // Coding::Ccitt5
    EightBit, // Coding::PcCharacters
};

enum class TextFault {
    Empty,
    NotUtf8,
    Character, // the coding has no such character
    TooLong,
};

struct TextProblem {
    TextFault fault;
    std::string character;    // Character: as UTF-8
    std::size_t position = 0; // Character, NotUtf8: counted in characters, from 0
    std::size_t length = 0;   // TooLong: characters given
    std::size_t limit = 0;    // TooLong: characters allowed
    bool operator==(const TextProblem&) const = default;
};

struct EncodedText {
    DataSize size; // the smallest that holds it
    ShortData data;
};

// Never shortens or replaces anything.
std::variant<EncodedText, TextProblem> EncodeText(std::string_view utf8, TextCoding coding);

// Code page 437, for texts inside binary formats. Control characters other than NUL stand for themselves.
// Same checks as above but for Empty; limit in characters.
std::variant<Octets, TextProblem> EncodeCodePage437(std::string_view utf8, std::size_t limit);
std::string DecodeCodePage437(OctetSpan octets);

} // namespace map27
