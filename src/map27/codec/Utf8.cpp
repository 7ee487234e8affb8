#include "map27/codec/Utf8.h"

#include <cstddef>
#include <cstdint>

namespace map27 {

namespace {

struct Lead {
    std::size_t length; // octets of the character
    char32_t bits;      // of the lead octet
    char32_t lowest;    // what a character of this length must reach
};

std::optional<Lead> Classify(std::uint8_t octet)
{
    if (octet < 0x80)
        return Lead{1, octet, 0};
    if ((octet & 0xE0) == 0xC0)
        return Lead{2, octet & 0x1Fu, 0x80};
    if ((octet & 0xF0) == 0xE0)
        return Lead{3, octet & 0x0Fu, 0x800};
    if ((octet & 0xF8) == 0xF0)
        return Lead{4, octet & 0x07u, 0x10000};
    return std::nullopt;
}

} // namespace

std::optional<char32_t> TakeUtf8(std::string_view& text)
{
    const auto lead = Classify(static_cast<std::uint8_t>(text.front()));
    if (!lead || text.size() < lead->length)
        return std::nullopt;
    char32_t character = lead->bits;
    for (std::size_t index = 1; index < lead->length; ++index) {
        const auto octet = static_cast<std::uint8_t>(text[index]);
        if ((octet & 0xC0) != 0x80)
            return std::nullopt;
        character = (character << 6) | (octet & 0x3Fu);
    }
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < lead->lowest || character > 0x10FFFF || surrogate)
        return std::nullopt;
    text.remove_prefix(lead->length);
    return character;
}

void AppendUtf8(std::string& text, char32_t character)
{
    const auto append = [&text](char32_t octet) { text += static_cast<char>(octet); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0 | (character >> 6));
        append(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        append(0xE0 | (character >> 12));
        append(0x80 | ((character >> 6) & 0x3F));
        append(0x80 | (character & 0x3F));
    } else {
        append(0xF0 | (character >> 18));
        append(0x80 | ((character >> 12) & 0x3F));
        append(0x80 | ((character >> 6) & 0x3F));
        append(0x80 | (character & 0x3F));
    }
}

} // namespace map27
