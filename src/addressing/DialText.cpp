#include "addressing/DialText.h"

#include "addressing/AddressingError.h"
#include "addressing/Digits.h"

#include <algorithm>
#include <cstdio>
#include <utility>

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
    RequireNothingButDigits(number);
    RequireNothingButDigits(telephone);
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
