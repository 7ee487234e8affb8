#include "core/texts/StringSourceImpl.h"

#include "core/texts/CatalogueFile.h"
#include "core/texts/Errors.h"
#include "core/texts/LangId.h"
#include "support/Files.h"
#include "support/QtPrinters.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

constexpr int alreadyRunning = 2057;
constexpr int exitQuestion = 2020;
constexpr int UsersGroupName = 2256;
const QString builtInText = "Radio dispatcher is already running.";

class StringSourceTest : public testing::Test {
protected:
    QString Text(quint16 langId, int id = alreadyRunning)
    {
        CStringSourceImpl source({user.path(), system.path(), "/nonexistent"});
        source.SetLangID(langId);
        return source.CreateStringSource("ckyn").LoadString(id);
    }

    ~StringSourceTest() override { QLocale::setDefault(QLocale::system()); }

    QTemporaryDir user, system;
};

TEST_F(StringSourceTest, VariantOfTheLanguageComesFirstThenTheLanguageThenTheBuiltInTexts)
{
    WriteFile(system.filePath("CKYNSL407.CResourceStrs"), "2057 \"SL407\"\n");
    WriteFile(user.filePath("CKYNPL7.CResourceStrs"), "2057 \"PL7\"\n");
    WriteFile(user.filePath("CKYNSLC07.CResourceStrs"), "2057 \"SLC07\"\n");

    EXPECT_EQ(Text(0x0407), "SL407"); // although only in a less important folder
    EXPECT_EQ(Text(0x0c07), "SLC07");
    EXPECT_EQ(Text(0x0807), "PL7");
    EXPECT_EQ(Text(0x0409), builtInText);
}

TEST_F(StringSourceTest, TheUsersFolderGoesBeforeTheSystems)
{
    WriteFile(system.filePath("CKYNPL9.CResourceStrs"), "2057 \"system\"\n");
    WriteFile(user.filePath("CKYNPL9.CResourceStrs"), "2057 \"user\"\n");

    EXPECT_EQ(Text(0x0409), "user");
}

TEST_F(StringSourceTest, WhatASatelliteLacksComesFromTheBuiltInTexts)
{
    WriteFile(user.filePath("CKYNSL407.CResourceStrs"), "2057 \"L\xC3\xA4uft schon.\"\n2256 \"Benutzer\"\n");

    EXPECT_EQ(Text(0x0407), QString::fromUtf8("L\xC3\xA4uft schon."));
    EXPECT_EQ(Text(0x0407, exitQuestion), "Do you want to exit?");
    EXPECT_EQ(Text(0x0407, UsersGroupName), "Users") << "a name in the database, never translated";
}

TEST_F(StringSourceTest, BrokenSatellitesArePassedOver)
{
    WriteFile(user.filePath("CKYNSL407.CResourceStrs"), "2057 \"good\"\n2058 without quotes\n");
    WriteFile(user.filePath("CKYNPL7.CResourceStrs"), "2057 \"good\"\n2058 \"\xFF\"\n");
    EXPECT_EQ(Text(0x0407), builtInText);

    WriteFile(system.filePath("CKYNPL7.CResourceStrs"), "2057 \"whole\"\n");
    EXPECT_EQ(Text(0x0407), "whole");
}

TEST_F(StringSourceTest, AnUnknownIdIsAnErrorThatNamesIt)
{
    const CStringSourceImpl source{QStringList()};
    try {
        source.LoadString(999999);
        FAIL();
    } catch (const Error& error) {
        EXPECT_TRUE(error.Description().contains("999999")) << error.what();
    }
}

TEST_F(StringSourceTest, SettingTheLanguageDecidesHowNumbersAreShown)
{
    CStringSourceImpl source{QStringList()};
    source.SetLangID(0x0407);
    EXPECT_EQ(source.LangID(), 0x0407);
    EXPECT_EQ(QLocale().toString(1.5), "1,5");
}

TEST(CatalogueFileTest, TakesTextLiterally)
{
    const Catalogue catalogue =
        ParseCatalogue("\xEF\xBB\xBF; a comment \"1\"\n\n  12   \"a \\n \"b\" ; c \"\r\n13 \"\"", "test");
    EXPECT_EQ(catalogue, (Catalogue{{12, "a \\n \"b\" ; c "}, {13, ""}}));
}

TEST(CatalogueFileTest, RefusesWhatItCannotRead)
{
    for (const char* line : {"12", "12 text", "12 \"open", "\"text\"", "x \"text\"", "0 \"text\"",
                             "-3 \"text\"", "12 \"text\" more", "1 \"a\"\n1 \"b\"", "1 \"\xE4\""})
        EXPECT_THROW(ParseCatalogue(line, "test"), Error) << line;
}

TEST(LangIdTest, MapsLocales)
{
    const struct {
        const char* locale;
        quint16 langId;
    } table[] = {{"en_US", 0x0409}, {"en_GB", 0x0809}, {"en_DK", 0x0409}, {"de_DE", 0x0407},
                 {"de_AT", 0x0c07}, {"de_CH", 0x0807}, {"fr_BE", 0x080c}, {"es_ES", 0x0c0a},
                 {"de_BE", 0x0407}, {"nb_NO", 0x0414}, {"nn_NO", 0x0814}, {"C", 0x0409},
                 {"zu_ZA", 0x0409}};
    for (const auto& row : table)
        EXPECT_EQ(LangIdOf(QLocale(row.locale)), row.langId) << row.locale;
    for (const char* name : {"en_GB", "de_AT", "pt_BR", "nb_NO", "sv_FI"})
        EXPECT_EQ(LocaleOf(LangIdOf(QLocale(name))), QLocale(name)) << name;
    EXPECT_EQ(LocaleOf(0x0007).language(), QLocale::German);
}

} // namespace
