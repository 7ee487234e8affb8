#include "core/texts/Validation.h"

#include <gtest/gtest.h>

namespace {

TEST(ValidationTest, CallsignsAndNames)
{
    const struct {
        QString text;
        bool callsign, name;
    } table[] = {
        {"", false, false},
        {"A", true, true},
        {"z9", true, true},
        {"9Z", false, false},
        {" A", false, false},
        {"_A", false, false},
        {"Car 12_b", true, true},
        {"Car-12", false, false},
        {"Car\t12", false, false},
        {"Car.", false, false},
        {QString(14, u'a'), true, true},
        {QString(15, u'a'), false, true},
        {QString(40, u'a'), false, true},
        {QString::fromUtf8("\xC3\x96rebro"), true, true},
        {QString::fromUtf8("Car\xD9\xA1"), false, false}, // a digit, but not an ASCII one
        {QString::fromUtf8("\xF0\x90\x90\x80"
                           "bc"),
         true, true}, // a letter of two code units
        {QString::fromUtf8("\xF0\x90\x90\x80").repeated(14), true, true},
        {QString::fromUtf8("a\xF0\x9F\x93\xBB"), false, false}, // a picture
        {QString(u'a') + QChar(0xD800), false, false},          // half a character
    };
    for (const auto& row : table) {
        EXPECT_EQ(IsValidCallsign(row.text), row.callsign) << row.text.toStdString();
        EXPECT_EQ(IsValidName(row.text), row.name) << row.text.toStdString();
    }
}

TEST(ValidationTest, FirstCharacterDecides)
{
    EXPECT_TRUE(IsLetter(QString::fromUtf8("\xF0\x90\x90\x80")));
    EXPECT_TRUE(IsLetter("a1"));
    EXPECT_FALSE(IsLetter("1a"));
    EXPECT_FALSE(IsLetter(""));
    EXPECT_TRUE(IsDigitText("1a"));
    EXPECT_FALSE(IsDigitText("a1"));
    EXPECT_FALSE(IsDigitText(""));
    EXPECT_FALSE(IsDigitText(QString::fromUtf8("\xD9\xA1")));
}

} // namespace
