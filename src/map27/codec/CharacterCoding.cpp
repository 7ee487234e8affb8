#include "map27/codec/CharacterCoding.h"

#include "map27/codec/CodePage437.h"
#include "map27/codec/Utf8.h"

#include <array>

namespace map27 {

namespace {

constexpr std::uint8_t ShiftOut = 0x0E; // figures
constexpr std::uint8_t ShiftIn = 0x0F;  // letters

// CCITT 2; 0 where there is nothing to show. 9 in figures is "who are you".
constexpr std::uint8_t TelexFigures = 27;
constexpr std::uint8_t TelexLetters = 31;
constexpr std::array<char32_t, 32> LettersCase{0,   'E', '\n', 'A', ' ', 'S', 'I', 'U', '\r', 'D', 'R',
                                               'J', 'N', 'F',  'C', 'K', 'T', 'Z', 'L', 'W',  'H', 'Y',
                                               'P', 'Q', 'O',  'B', 'G', 0,   'M', 'X', 'V',  0};
// Three positions are for each country to define.
constexpr char32_t National = ReplacementCharacter;
constexpr std::array<char32_t, 32> FiguresCase{
    0,   '3', '\n', '-', ' ',      '\'', '8', '7', '\r', 0x05, '4',      0x07, ',', National, ':', '(',
    '5', '+', ')',  '2', National, '6',  '0', '1', '9',  '?',  National, 0,    '.', '/',      '=', 0};

char32_t FromBcd(std::uint8_t value)
{
    if (value <= 9)
        return static_cast<char32_t>('0' + value);
    switch (value) {
    case 0x0B:
        return '*';
    case 0x0C:
        return '#';
    case 0x0F:
        return 0; // NULL digit
    default:
        return ReplacementCharacter;
    }
}

std::u32string DecodeTelex(const Octets& octets)
{
    std::u32string text;
    bool figures = false;
    for (const std::uint8_t octet : octets)
        if (octet >= LettersCase.size())
            text += ReplacementCharacter;
        else if (octet == TelexFigures || octet == TelexLetters)
            figures = octet == TelexFigures;
        else
            text += figures ? FiguresCase[octet] : LettersCase[octet];
    return text;
}

std::u32string DecodeCharacters(const ShortData& data)
{
    if (data.coding == Coding::Telex)
        return DecodeTelex(data.octets);
    std::u32string text;
    for (const std::uint8_t octet : data.octets)
        if (data.coding == Coding::Bcd)
            text += FromBcd(octet);
        else if (data.coding == Coding::PcCharacters)
            text += FromCodePage437(octet);
        else if (data.coding == Coding::TelexAscii && (octet == ShiftIn || octet == ShiftOut))
            continue;
        else
            text += octet < 0x80 ? octet : ReplacementCharacter;
    return text;
}

std::optional<std::uint8_t> EncodeCharacter(char32_t character, Coding coding)
{
    // Radios pad with NUL, so it would not arrive.
    if (character == 0)
        return std::nullopt;
    if (coding == Coding::PcCharacters)
        return ToCodePage437(character);
    return character < 0x80 ? std::optional(static_cast<std::uint8_t>(character)) : std::nullopt;
}

std::variant<Octets, TextProblem> EncodeCharacters(std::string_view utf8, Coding coding, std::size_t limit)
{
    Octets octets;
    while (!utf8.empty()) {
        const std::string_view before = utf8;
        const auto character = TakeUtf8(utf8);
        if (!character)
            return TextProblem{.fault = TextFault::NotUtf8, .character = {}, .position = octets.size()};
        const auto octet = EncodeCharacter(*character, coding);
        if (!octet) {
            const std::string_view taken = before.substr(0, before.size() - utf8.size());
            return TextProblem{
                .fault = TextFault::Character, .character = std::string(taken), .position = octets.size()};
        }
        octets.push_back(*octet);
    }
    if (octets.size() > limit)
        return TextProblem{
            .fault = TextFault::TooLong, .character = {}, .length = octets.size(), .limit = limit};
    return octets;
}

} // namespace

std::string DecodeText(const ShortData& data)
{
    if (!IsCharacterCoding(data.coding))
        return ToHex(data.octets, 0);
    std::u32string characters = DecodeCharacters(data);
    while (!characters.empty() && (characters.back() == 0 || characters.back() == ' '))
        characters.pop_back();
    std::string text;
    for (const char32_t character : characters)
        AppendUtf8(text, character == 0 ? U' ' : character);
    return text;
}

std::variant<EncodedText, TextProblem> EncodeText(std::string_view utf8, TextCoding textCoding)
{
    if (utf8.empty())
        return TextProblem{.fault = TextFault::Empty, .character = {}};
    const Coding coding = textCoding == TextCoding::SevenBit ? Coding::Ccitt5 : Coding::PcCharacters;
    auto encoded = EncodeCharacters(utf8, coding, *MostUnits(coding, DataSize::Medium));
    if (auto* problem = std::get_if<TextProblem>(&encoded))
        return std::move(*problem);
    ShortData data{coding, 8, std::get<Octets>(std::move(encoded))};
    const DataSize size = Fits(data, DataSize::Short) ? DataSize::Short : DataSize::Medium;
    return EncodedText{size, std::move(data)};
}

std::variant<Octets, TextProblem> EncodeCodePage437(std::string_view utf8, std::size_t limit)
{
    return EncodeCharacters(utf8, Coding::PcCharacters, limit);
}

std::string DecodeCodePage437(OctetSpan octets)
{
    std::string text;
    for (const std::uint8_t octet : octets)
        AppendUtf8(text, FromCodePage437(octet));
    return text;
}

} // namespace map27
