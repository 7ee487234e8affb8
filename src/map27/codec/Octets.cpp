#include "map27/codec/Octets.h"

namespace map27 {

std::string ToHex(OctetSpan octets, char separator)
{
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(octets.size() * 3);
    for (const std::uint8_t octet : octets) {
        if (separator != 0 && !text.empty())
            text += separator;
        text += digits[octet >> 4];
        text += digits[octet & 0x0F];
    }
    return text;
}

} // namespace map27
