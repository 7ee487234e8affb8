#pragma once

#include "map27/codec/ShortData.h"

#include <string_view>
#include <variant>

namespace map27 {

// Received data as text, UTF-8. Of a character coding every character is decoded; trailing NULs, NULL digits
// and blanks, the radio's padding, are removed, and NULs in between become blanks. Bit strings and unknown
// codings become hexadecimal pairs without separators, with nothing removed. A meaningless character becomes
// U+FFFD.
std::string DecodeText(const ShortData& data);

// The characters that a person may send.
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
    DataSize size; // the smallest that holds the text
    ShortData data;
};

// Never shortens or replaces anything.
std::variant<EncodedText, TextProblem> EncodeText(std::string_view utf8, TextCoding coding);

// Code page 437, for texts inside binary formats. Control characters other than NUL stand for themselves.
// The same checks as above except Empty; limit in characters.
std::variant<Octets, TextProblem> EncodeCodePage437(std::string_view utf8, std::size_t limit);
std::string DecodeCodePage437(OctetSpan octets);

} // namespace map27
