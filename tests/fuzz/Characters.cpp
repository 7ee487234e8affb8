// Texts on their way to a radio and back, in both codings, and short data of every kind as texts.

#include "fuzz/Input.h"
#include "map27/codec/CharacterCoding.h"
#include "map27/codec/ShortData.h"
#include "map27/codec/Utf8.h"

using namespace map27;

namespace {

bool IsUtf8(std::string_view text)
{
    while (!text.empty())
        if (!TakeUtf8(text))
            return false;
    return true;
}

std::string WithoutPadding(std::string text)
{
    while (!text.empty() && (text.back() == ' ' || text.back() == '\0'))
        text.pop_back();
    return text;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const std::uint8_t options = input.Octet();
    const auto dataSize = (options & 1) != 0 ? DataSize::Short : DataSize::Medium;
    const auto padding = static_cast<PadStyle>((options >> 1) % 3);
    const ShortData received{static_cast<Coding>(input.Octet() % 16),
                             static_cast<std::uint8_t>(1 + options / 32), input.Octets()};
    MUST_HOLD(IsUtf8(DecodeText(received)));
    CodewordCount(received);
    const auto padded = PadToCodewords(received, dataSize, padding);
    MUST_HOLD(!padded || Fits(received, dataSize));
    MUST_HOLD(!padded || Fits(*padded, dataSize));

    const std::string text = input.RestAsText();
    for (const TextCoding coding : {TextCoding::SevenBit, TextCoding::EightBit}) {
        const auto encoded = EncodeText(text, coding);
        if (const auto* problem = std::get_if<TextProblem>(&encoded)) {
            MUST_HOLD((problem->fault == TextFault::NotUtf8) <= !IsUtf8(text));
            continue;
        }
        const EncodedText& sent = std::get<EncodedText>(encoded);
        const auto atTheRadio = PadToCodewords(sent.data, sent.size, padding);
        MUST_HOLD(atTheRadio);
        MUST_HOLD(DecodeText(*atTheRadio) == WithoutPadding(text) || text.find('\0') != std::string::npos);
    }
    const auto name = EncodeCodePage437(text, 64);
    if (const auto* octets = std::get_if<Octets>(&name))
        MUST_HOLD(DecodeCodePage437(*octets) == text);
    return 0;
}
