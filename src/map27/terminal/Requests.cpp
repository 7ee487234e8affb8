#include "map27/terminal/Requests.h"

namespace map27 {

namespace {

std::uint8_t SetupDetails(CallWishes wishes)
{
    constexpr int oneWay = 0x20;
    constexpr int normalPriority = 0x08; // clear asks for high priority
    const int details =
        (wishes.dialog ? 0 : oneWay) | (wishes.emergency || wishes.priority ? 0 : normalPriority);
    return static_cast<std::uint8_t>(details);
}

Request RequestTo(Address to, ToRadio message)
{
    if (!IsSendable(to))
        return Refusal{.code = RefusalCode::AddressNotSendable};
    return message;
}

Refusal OutOfLimit(RefusalCode code, std::size_t length, std::size_t limit)
{
    return {.code = code, .length = length, .limit = limit};
}

} // namespace

Request StatusRequest(Address to, unsigned status)
{
    if (status > HighestStatus)
        return OutOfLimit(RefusalCode::StatusOutOfRange, status, HighestStatus);
    return RequestTo(to, StatusMessage{{to, {}}, static_cast<std::uint8_t>(status)});
}

Request TextRequest(Address to, std::string_view utf8, TextCoding coding)
{
    auto encoded = EncodeText(utf8, coding);
    if (const auto* problem = std::get_if<TextProblem>(&encoded))
        return Refusal{.code = RefusalCode::Text, .text = *problem};
    auto& text = std::get<EncodedText>(encoded);
    return RequestTo(to, ShortDataMessage{text.size, {to, {}}, std::move(text.data)});
}

Request BinaryRequest(Address to, OctetSpan octets)
{
    const std::size_t limit = *MostUnits(Coding::Binary, DataSize::Short) / 8;
    if (octets.empty())
        return Refusal{.code = RefusalCode::DataEmpty};
    if (octets.size() > limit)
        return OutOfLimit(RefusalCode::DataTooLong, octets.size(), limit);
    ShortData data{Coding::Binary, 8, Octets(octets.begin(), octets.end())};
    return RequestTo(to, ShortDataMessage{DataSize::Short, {to, {}}, std::move(data)});
}

Request CallRequest(Address to, CallWishes wishes)
{
    return RequestTo(to, CallMessage{wishes.emergency, {to, {}}, {SetupDetails(wishes)}, {}});
}

Request GatewayCallRequest(int gateway, std::string_view digits, CallWishes wishes)
{
    const bool pstn = gateway == static_cast<int>(Gateway::Pstn);
    if (!pstn && gateway != static_cast<int>(Gateway::Pabx))
        return Refusal{.code = RefusalCode::GatewayUnknown};
    if (digits.empty())
        return Refusal{.code = RefusalCode::DigitsMissing};
    if (!PackDigits(digits))
        return Refusal{.code = RefusalCode::DigitsInvalid};
    if (digits.size() > MostDigits)
        return OutOfLimit(RefusalCode::DigitsTooMany, digits.size(), MostDigits);
    Party to;
    to.address.ident = pstn ? Ident::Pstn : Ident::Pabx;
    to.description.kind = DescriptionKind::Digits;
    to.description.digits = digits;
    return ToRadio(CallMessage{wishes.emergency, to, {SetupDetails(wishes)}, {}});
}

} // namespace map27
