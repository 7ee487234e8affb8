#include "map27/codec/CharacterCoding.h"
#include "map27/Script.h"
#include "support/Table.h"

#include <gtest/gtest.h>
#include <map>

using namespace map27;

namespace {

ShortData Data(int coding, const std::string& hex, std::uint8_t bitsInLastOctet = 8)
{
    return {static_cast<Coding>(coding), bitsInLastOctet, FromHex(hex)};
}

std::string Repeat(const std::string& text, int count)
{
    std::string repeated;
    for (int index = 0; index < count; ++index)
        repeated += text;
    return repeated;
}

// "SST F7 ..." or the problem.
std::string Encode(const std::string& text, TextCoding coding)
{
    const auto result = EncodeText(text, coding);
    if (const auto* problem = std::get_if<TextProblem>(&result)) {
        switch (problem->fault) {
        case TextFault::Empty:
            return "empty";
        case TextFault::NotUtf8:
            return "not UTF-8 at " + std::to_string(problem->position);
        case TextFault::Character:
            return "no " + problem->character + " at " + std::to_string(problem->position);
        case TextFault::TooLong:
            return std::to_string(problem->length) + " of " + std::to_string(problem->limit);
        }
    }
    const auto& encoded = std::get<EncodedText>(result);
    return (encoded.size == DataSize::Short ? "SST " : "MST ") + std::to_string(encoded.data.octets.size()) +
           ' ' + ToHex(encoded.data.octets).substr(0, 8);
}

} // namespace

// Coding, octets, text.
TEST(CharacterCoding, Decoding)
{
    for (const TableRow& row : ReadTable("map27-codec.tsv", "Decoding", 20))
        EXPECT_EQ(DecodeText(Data(std::stoi(row.at(0)), row.at(1))), row.at(2))
            << row.at(0) << ": " << row.at(1);
}

// Coding, text, and its size and first octets, or what is wrong with it.
TEST(CharacterCoding, Encoding)
{
    for (const TableRow& row : ReadTable("map27-codec.tsv", "Encoding", 22))
        EXPECT_EQ(Encode(row.at(1), row.at(0) == "seven" ? TextCoding::SevenBit : TextCoding::EightBit),
                  row.at(2))
            << row.at(1);
}

TEST(CharacterCoding, EveryCodePageCharacterThereAndBack)
{
    for (int octet = 1; octet < 256; ++octet) {
        const Octets one{static_cast<std::uint8_t>(octet)};
        const auto again = EncodeCodePage437(DecodeCodePage437(one), 1);
        ASSERT_TRUE(std::holds_alternative<Octets>(again)) << octet;
        EXPECT_EQ(std::get<Octets>(again), one) << octet;
    }
    EXPECT_EQ(std::get<TextProblem>(EncodeCodePage437("12345", 4)).limit, 4u);
}

TEST(ShortData, PaddingOfTheRadio)
{
    const auto sst = DataSize::Short;
    const std::string thirty = Repeat("41", 30);
    const std::string tooMany = Repeat("41", 101);
    const std::map<std::string, PadStyle> styles{
        {"Nul", PadStyle::Nul}, {"Blank", PadStyle::Blank}, {"NullDigit", PadStyle::NullDigit}};
    // Coding, size, style, octets afterwards (0: refused), the last of them, octets before.
    for (const TableRow& row : ReadTable("map27-codec.tsv", "Padding", 18)) {
        const ShortData data = Data(std::stoi(row.at(0)), row.at(5));
        const auto padded =
            PadToCodewords(data, row.at(1) == "sst" ? sst : DataSize::Medium, styles.at(row.at(2)));
        ASSERT_EQ(padded.has_value(), row.at(3) != "0") << row.at(0) << ' ' << row.at(5);
        if (!padded)
            continue;
        EXPECT_EQ(std::to_string(padded->octets.size()), row.at(3)) << row.at(0) << ' ' << row.at(5);
        EXPECT_EQ(Octets{padded->octets.back()}, FromHex(row.at(4))) << row.at(0) << ' ' << row.at(5);
        // What the terminal makes of it is what was sent.
        if (IsCharacterCoding(padded->coding)) {
            EXPECT_EQ(DecodeText(*padded), DecodeText(data));
        }
    }
    EXPECT_EQ(PadToCodewords(Data(8, "FF"), sst, PadStyle::Nul)->Bits(), 42u);
    EXPECT_EQ(CodewordCount(Data(11, thirty)), 5u);
    EXPECT_EQ(CodewordCount(Data(11, tooMany)), 0u);
    EXPECT_EQ(CodewordCount(Data(0, Repeat("FF", 24))), 0u);
}
