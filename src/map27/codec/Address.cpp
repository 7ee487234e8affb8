#include "map27/codec/Address.h"

namespace map27 {

namespace {

constexpr std::uint8_t Filler = 0x0F;

std::optional<std::uint8_t> DigitValue(char digit)
{
    if (digit >= '0' && digit <= '9')
        return static_cast<std::uint8_t>(digit - '0');
    if (digit == '*')
        return std::uint8_t{0x0B};
    if (digit == '#')
        return std::uint8_t{0x0C};
    return std::nullopt;
}

std::optional<char> DigitCharacter(std::uint8_t value)
{
    if (value <= 9)
        return static_cast<char>('0' + value);
    if (value == 0x0B)
        return '*';
    if (value == 0x0C)
        return '#';
    return std::nullopt;
}

} // namespace

bool IsSendable(Address address)
{
    if (address.prefix > HighestPrefix || address.ident > HighestIdent || address.IsDummy())
        return false;
    // Idents that the network uses for call control; MAP27 has messages in their place.
    const bool reserved =
        (address.ident >= 8103 && address.ident <= 8120) || (address.ident >= 8181 && address.ident <= 8190);
    return !reserved;
}

std::string ToText(Address address)
{
    return std::to_string(address.prefix) + '/' + std::to_string(address.ident);
}

std::optional<Octets> PackDigits(std::string_view digits)
{
    Octets packed;
    packed.reserve((digits.size() + 1) / 2);
    for (std::size_t index = 0; index < digits.size(); ++index) {
        const auto value = DigitValue(digits[index]);
        if (!value)
            return std::nullopt;
        if (index % 2 == 0)
            packed.push_back(static_cast<std::uint8_t>((*value << 4) | Filler));
        else
            packed.back() = static_cast<std::uint8_t>((packed.back() & 0xF0) | *value);
    }
    return packed;
}

std::optional<std::string> UnpackDigits(OctetSpan octets)
{
    std::string digits;
    bool ended = false;
    for (const std::uint8_t octet : octets) {
        for (const int half : {octet >> 4, octet & 0x0F}) {
            if (half == Filler) {
                ended = true;
                continue;
            }
            const auto digit = DigitCharacter(static_cast<std::uint8_t>(half));
            if (!digit || ended)
                return std::nullopt;
            digits += *digit;
        }
    }
    return digits;
}

} // namespace map27
