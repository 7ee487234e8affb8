#include "core/texts/Validation.h"

#include "support/Table.h"

namespace {

// What it is valid as, text.
TEST(ValidationTest, CallsignsAndNames)
{
    for (const TableRow& row : ReadTable("core.tsv", "Callsigns and names", 18)) {
        const QString text = QString::fromStdString(row.at(1));
        EXPECT_EQ(IsValidCallsign(text), row.at(0) == "callsign, name") << row.at(1);
        EXPECT_EQ(IsValidName(text), row.at(0) != "-") << row.at(1);
    }
    const QString halfACharacter = QString(u'a') + QChar(0xD800);
    EXPECT_FALSE(IsValidCallsign(halfACharacter) || IsValidName(halfACharacter));
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
