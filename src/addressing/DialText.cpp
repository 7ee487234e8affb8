#include "addressing/DialText.h"

#include "addressing/AddressingError.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

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

[[noreturn]] void RaiseInvalidCharacter(std::string_view text, std::size_t pos)
{
    throw AddressingError(AddressingCode::InvalidCharacter, {CharacterAt(text, pos)});
}

} // namespace

RadioAddress SubscriberAddress(int prefix, int ident)
{
    return {.prefix = prefix, .ident = ident, .kind = AddressKind::Radio, .digits = {}};
}

RadioAddress GatewayAddress(int prefix, int ident, std::string digits)
{
    return {.prefix = prefix, .ident = ident, .kind = AddressKind::Gateway, .digits = std::move(digits)};
}

std::string CleanDialText(std::string_view dial)
{
    std::string text;
    std::copy_if(dial.begin(), dial.end(), std::back_inserter(text),
                 [](char c) { return c != ' ' && c != '\t' && c != '-'; });
    if (!text.empty() && text.back() == '#')
        text.pop_back();
    if (text.empty())
        throw AddressingError(AddressingCode::NumberEmpty);
    return text;
}

std::string WithoutInnerSlashes(const std::string& cleaned)
{
    std::string text;
    for (std::size_t pos = 0; pos < cleaned.size(); ++pos) {
        const bool inner = cleaned[pos] == '/' && pos > 0 && IsDigit(cleaned[pos - 1]) &&
                           pos + 1 < cleaned.size() && IsDigit(cleaned[pos + 1]);
        if (!inner)
            text += cleaned[pos];
    }
    return text;
}

void RequireDigits(std::string_view text)
{
    const std::size_t pos = FirstNonDigit(text);
    if (pos == text.size())
        return;
    if (text[pos] == '*' || text[pos] == '#')
        throw AddressingError(AddressingCode::CallModifier);
    RaiseInvalidCharacter(text, pos);
}

void RequireTelephoneLength(std::string_view digits)
{
    if (digits.empty())
        throw AddressingError(AddressingCode::TelephoneMissing);
    if (digits.size() > maxTelephoneDigits)
        throw AddressingError(AddressingCode::TelephoneTooLong);
}

int ParseDigits(std::string_view digits)
{
    int value = 0;
    for (const char c : digits)
        value = value * 10 + (c - '0');
    return value;
}

bool IsRawForm(std::string_view cleaned)
{
    return cleaned.front() == '/';
}

RadioAddress ParseRaw(std::string_view cleaned)
{
    const std::string_view body = cleaned.substr(1);
    const std::size_t star = body.find('*');
    const bool withTelephone = star != std::string_view::npos;
    const std::string_view number = body.substr(0, star);
    const std::string_view telephone = withTelephone ? body.substr(star + 1) : std::string_view();
    for (const std::string_view part : {number, telephone}) {
        const std::size_t pos = FirstNonDigit(part);
        if (pos < part.size())
            RaiseInvalidCharacter(part, pos);
    }
    if (number.size() != 7)
        throw AddressingError(AddressingCode::RawFormLength);

    RadioAddress address;
    address.prefix = ParseDigits(number.substr(0, 3));
    address.ident = ParseDigits(number.substr(3));
    address.kind = withTelephone ? AddressKind::Gateway : AddressKind::Radio;
    address.digits = telephone;
    ValidateAddress(address);
    return address;
}

std::string FormatRaw(const RadioAddress& address)
{
    char text[16];
    std::snprintf(text, sizeof text, "/%03d%04d", address.prefix, address.ident);
    std::string raw = text;
    if (address.kind == AddressKind::Gateway)
        raw += '*' + address.digits;
    return raw;
}
