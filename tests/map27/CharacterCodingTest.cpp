#include "map27/codec/CharacterCoding.h"
#include "map27/Script.h"

#include <gtest/gtest.h>

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

TEST(CharacterCoding, Decoding)
{
    struct Case {
        int coding;
        const char* octets;
        const char* text;
    };
    const Case cases[] = {
        {11, "41 42 43", "ABC"},
        {11, "49 3A 30 31 32 33 34 35 36 37 00 00", "I:01234567"}, // NUL filling: exactly 10 are left
        {11, "41 20 42 20 20", "A B"},
        {11, "41 00 20 00 20", "A"},
        {11, "41 00 42", "A B"},
        {11, "C1 42",
         "\xEF\xBF\xBD"
         "B"},
        {11, "0D 0A 41", "\r\nA"},
        {11, "20 00", ""},
        {15, "81 8E E1 E3 00", "üÄßπ"},
        {15, "B0 DB F8 FF", "░█°\xC2\xA0"},
        {1, "31 32 2A 23 00 00 00", "12*#"},
        {9, "01 02 0B 0C 00 0F 0F", "12*#0"}, // a zero is a digit, the NULL digit is filling
        {9, "0A 01",
         "\xEF\xBF\xBD"
         "1"},
        {2, "41 42 0E 31 0F 43 20 20", "AB1C"},
        {10, "03 19 1B 17 1F 0E 04 00", "AB1C"},
        {10, "1B 04 0D 3F 1F", " \xEF\xBF\xBD\xEF\xBF\xBD"},
        {8, "A5 F8 00", "A5F800"}, // nothing is taken from a bit string
        {0, "12 34", "1234"},
        {14, "41 42", "4142"}, // no coding that has a meaning
        {3, "", ""},
    };
    for (const Case& test : cases)
        EXPECT_EQ(DecodeText(Data(test.coding, test.octets)), test.text)
            << test.coding << ": " << test.octets;
}

TEST(CharacterCoding, Encoding)
{
    struct Case {
        std::string text;
        TextCoding coding;
        std::string result;
    };
    const auto seven = TextCoding::SevenBit;
    const auto eight = TextCoding::EightBit;
    const Case cases[] = {
        {"HELLO", seven, "SST 5 48 45 4C"},
        {std::string(25, 'A'), seven, "SST 25 41 41 41"},
        {std::string(26, 'A'), seven, "MST 26 41 41 41"},
        {std::string(100, 'A'), seven, "MST 100 41 41 41"},
        {std::string(101, 'A'), seven, "101 of 100"},
        {Repeat("ä", 22), eight, "SST 22 84 84 84"}, // counted in characters, not in octets of UTF-8
        {Repeat("ä", 23), eight, "MST 23 84 84 84"},
        {Repeat("ä", 88), eight, "MST 88 84 84 84"},
        {Repeat("ä", 89), eight, "89 of 88"},
        {"üÄß", eight, "SST 3 81 8E E1"},
        {"Tür", seven, "no ü at 1"},
        {"5 €", eight, "no € at 2"},
        {"☺", eight, "no ☺ at 0"},
        {"A😀", eight, "no 😀 at 1"},
        {std::string("A\0B", 3), seven, std::string("no \0 at 1", 9)},
        {"", seven, "empty"},
        {"AB\xFF", eight, "not UTF-8 at 2"},
        {"\xC0\x80", eight, "not UTF-8 at 0"},     // overlong
        {"\xED\xA0\x80", eight, "not UTF-8 at 0"}, // surrogate
        {"\xF4\x90\x80\x80", eight, "not UTF-8 at 0"},
        {"A\xE2\x82", eight, "not UTF-8 at 1"}, // cut off
        {"A\r\nB\x7F", seven, "SST 5 41 0D 0A"},
    };
    for (const Case& test : cases)
        EXPECT_EQ(Encode(test.text, test.coding), test.result) << test.text;
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
    struct Case {
        int coding;
        const char* octets;
        DataSize size;
        PadStyle style;
        std::size_t length; // 0: refused
        int pad;
    };
    const auto sst = DataSize::Short;
    const auto mst = DataSize::Medium;
    const std::string thirty = Repeat("41", 30);
    const std::string hundred = Repeat("41", 100);
    const std::string tooMany = Repeat("41", 101);
    const Case cases[] = {
        {11, "41", sst, PadStyle::Nul, 5, 0x00},
        {11, "41 42 43 44 45", sst, PadStyle::Nul, 5, 0x45},
        {11, "41 42 43 44 45 46", sst, PadStyle::Blank, 12, 0x20},
        {11, thirty.c_str(), sst, PadStyle::Nul, 0, 0},
        {11, thirty.c_str(), mst, PadStyle::Nul, 30, 0x41},
        {11, "41", mst, PadStyle::Nul, 30, 0x00},
        {11, hundred.c_str(), mst, PadStyle::Nul, 100, 0x41},
        {11, tooMany.c_str(), mst, PadStyle::Nul, 0, 0},
        {15, "41 42 43 44 45 46", sst, PadStyle::NullDigit, 11, 0x00},
        {1, "31", sst, PadStyle::NullDigit, 10, 0x00},
        {1, "31", sst, PadStyle::Blank, 10, 0x00},
        {9, "01", sst, PadStyle::Nul, 10, 0x0F},
        {10, "01", sst, PadStyle::Blank, 8, 0x04},
        {2, "41", sst, PadStyle::Blank, 8, 0x20},
        {8, "FF", sst, PadStyle::Blank, 6, 0x00}, // 42 bits
        {0, "FF", sst, PadStyle::Nul, 6, 0x00},   // 46 bits
        {0, "FF", mst, PadStyle::Nul, 0, 0},
        {14, "41", sst, PadStyle::Nul, 0, 0},
    };
    for (const Case& test : cases) {
        const auto padded = PadToCodewords(Data(test.coding, test.octets), test.size, test.style);
        ASSERT_EQ(padded.has_value(), test.length != 0) << test.coding << ' ' << test.octets;
        if (!padded)
            continue;
        EXPECT_EQ(padded->octets.size(), test.length) << test.coding << ' ' << test.octets;
        EXPECT_EQ(padded->octets.back(), test.pad) << test.coding << ' ' << test.octets;
        // What the terminal makes of it is what was sent.
        if (IsCharacterCoding(padded->coding)) {
            EXPECT_EQ(DecodeText(*padded), DecodeText(Data(test.coding, test.octets)));
        }
    }
    EXPECT_EQ(PadToCodewords(Data(8, "FF"), sst, PadStyle::Nul)->Bits(), 42u);
    EXPECT_EQ(CodewordCount(Data(11, thirty)), 5u);
    EXPECT_EQ(CodewordCount(Data(11, tooMany)), 0u);
    EXPECT_EQ(CodewordCount(Data(0, Repeat("FF", 24))), 0u);
}
