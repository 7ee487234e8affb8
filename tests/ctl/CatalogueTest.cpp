#include "ctl/CtlRun.h"
#include "support/Files.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

const QString folder = QStringLiteral(TEST_DATA_DIR "/../../src/resources/catalogue/satellites");

TEST(CatalogueCheck, EveryLanguageIsComplete)
{
    const QFileInfoList files = QDir(folder).entryInfoList({"*.CResourceStrs"});
    ASSERT_FALSE(files.isEmpty());
    for (const QFileInfo& file : files) {
        const CtlRun run = RunCtl({"catalogue", "check", file.filePath()});
        EXPECT_EQ(run.code, 0) << run.err.toStdString();
        EXPECT_TRUE(run.out.contains(": complete, ")) << run.out.toStdString();
    }
}

TEST(CatalogueCheck, NamesWhatATranslationLacks)
{
    const QByteArray whole = ReadFile(folder + "/CKYNPL7.CResourceStrs");
    const struct {
        QByteArray text;
        QByteArray instead;
        QByteArray said;
    } cases[] = {
        {"2006 \"Vollbild\"\n", "", "2006 is missing: \"Full Screen\""},
        {"2006 \"Vollbild\"\n", "2006 \"\"\n", "2006 is empty"},
        {"2006 \"Vollbild\"\n", "2006 \"Vollbild \"\n", "2006 needs the same blanks"},
        {"2006 \"Vollbild\"\n", "2006 \"Voll\\nbild\"\n", "2006 needs the same escapes"},
        {"2006 \"Vollbild\"\n", "2006 \"Vollbild #01\"\n", "2006 needs the placeholders"},
        {"2006 \"Vollbild\"\n", "2006 \"Vollbild\"\n2256 \"Benutzer\"\n", "2256 must not be translated"},
        {"2006 \"Vollbild\"\n", "2006 \"Vollbild\"\n99999 \"Mehr\"\n", "99999 is not a text of this program"},
        {"2006 \"Vollbild\"\n", "2006 \"Vollbild\n", "the text is not in double quotes"},
    };
    const QTemporaryDir scratch;
    for (const auto& test : cases) {
        ASSERT_TRUE(whole.contains(test.text));
        const QString file =
            WriteFile(scratch.filePath("spoiled"), QByteArray(whole).replace(test.text, test.instead));
        const CtlRun run = RunCtl({"catalogue", "check", file});
        EXPECT_EQ(run.code, 1);
        EXPECT_TRUE(run.err.contains(test.said))
            << run.err.toStdString() << " lacks " << test.said.toStdString();
        EXPECT_TRUE(run.out.isEmpty());
    }
}

} // namespace
