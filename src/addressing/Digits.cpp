#include "addressing/Digits.h"

#include "addressing/AddressingError.h"

#include <algorithm>

namespace {

// The whole UTF-8 character that begins at `pos`; U+FFFD for a byte that begins none.
std::string CharacterAt(std::string_view text, std::size_t pos)
{
    const auto lead = static_cast<unsigned char>(text[pos]);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    const std::string_view character = text.substr(pos, length);
    const bool whole = length > 0 && character.size() == length &&
                       std::all_of(character.begin() + 1, character.end(),
                                   [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; });
    return whole ? std::string(character) : "\xEF\xBF\xBD";
}

std::size_t FirstNonDigit(std::string_view text)
{
    return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsDigit) - text.begin());
}

} // namespace

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

void RequireNothingButDigits(std::string_view text)
{
    const std::size_t pos = FirstNonDigit(text);
    if (pos < text.size())
        throw AddressingError(AddressingCode::InvalidCharacter, {CharacterAt(text, pos)});
}

void RequireDigits(std::string_view text)
{
    const std::size_t pos = FirstNonDigit(text);
    if (pos < text.size() && (text[pos] == '*' || text[pos] == '#'))
        throw AddressingError(AddressingCode::CallModifier);
    RequireNothingButDigits(text);
}

void RequireTelephoneLength(std::string_view digits)
{
    if (digits.empty())
        throw AddressingError(AddressingCode::TelephoneMissing);
    if (digits.size() > MaxTelephoneDigits)
        throw AddressingError(AddressingCode::TelephoneTooLong);
}

int ParseDigits(std::string_view digits)
{
    int value = 0;
    for (const char c : digits)
        value = value * 10 + (c - '0');
    return value;
}
