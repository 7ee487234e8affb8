#include "core/texts/FormatMessage.h"

#include "support/QtPrinters.h"
#include <gtest/gtest.h>

namespace {

struct Case {
    QString text;
    QStringList values;
    QString expected;
};

class FormatMessageTest : public testing::TestWithParam<Case> {};

TEST_P(FormatMessageTest, FillsAndExpands)
{
    EXPECT_EQ(FormatMessage(GetParam().text, GetParam().values), GetParam().expected)
        << GetParam().text.toStdString();
}

const QStringList ten = {"1", "2", "3", "4", "5", "6", "7", "8", "9", "ten"};

const Case cases[] = {
    {"Error: #01. Can't initialize: #02.",
     {"Class not registered", "DbSession"},
     "Error: Class not registered. Can't initialize: DbSession."},
    {R"(#01\n#02)", {"a", "b"}, "a\r\nb"},
    {R"(a\\b)", {}, R"(a\b)"},
    {R"(a\tb)", {}, "a\tb"},
    {R"(a\qb)", {}, "ab"},
    {R"(a\N)", {}, "a"},
    {R"(lost\)", {}, "lost"},
    {R"(\\)", {}, R"(\)"},
    {R"(\\n)", {}, R"(\n)"},
    {R"(\#01)", {"a"}, "01"},
    {"#05", {"a", "b"}, "#05"},
    {"#0", {"a"}, "#0"},
    {"at the end #", {"a"}, "at the end #"},
    {"##01", {"a"}, "#a"},
    {"#7a", {"a"}, "#7a"},
    {"#-1 # 1 #1 ", {"a"}, "#-1 # 1 #1 "},
    {"#00#01", {"a"}, "#00a"},
    {"#10/#1", ten, "ten/#1"},
    {"#99", ten, "#99"},
    {"Units#01#02", {"a", "b"}, "Unitsab"},
    {"#02#01#02", {"a", "b"}, "bab"},
    {"#01", {R"(#02\n)", "b"}, R"(#02\n)"},
    {"#01", {}, "#01"},
    {"", {"a"}, ""},
    // An escape of a character beyond 16 bits takes the whole of it.
    {QString::fromUtf8("a\\\xF0\x9F\x93\xBB"
                       "b"),
     {},
     "ab"},
    // Digits of other scripts are not placeholders.
    {QString::fromUtf8("#\xD9\xA0\xD9\xA1"), {"a"}, QString::fromUtf8("#\xD9\xA0\xD9\xA1")},
};

INSTANTIATE_TEST_SUITE_P(Table, FormatMessageTest, testing::ValuesIn(cases));

} // namespace
