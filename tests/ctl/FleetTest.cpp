#include "ctl/CtlRun.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

const QByteArray headings = "type,digits,prefix,base_ident,max_ident,fleet_name,notes\n";
const QByteArray city = "units,2,0,2,71,City,\n";
const QByteArray groups = "groups,2,0,7000,7009,\"Groups, \"\"city\"\"\",\"two\nlines\"\n";
const QByteArray harbour = "units,3,1,1020,1089,Harbour,\n";

class Fleet : public testing::Test {
protected:
    Fleet() { EXPECT_EQ(RunCtl({"db", "create", m_target, "--password-stdin"}, "secret\n").code, 0); }

    CtlRun Import(const QByteArray& rows, const QStringList& options = {}) const
    {
        const QString file = WriteFile(m_folder.path(), "plan.csv", headings + rows);
        return RunCtl(QStringList{"fleet", "import", m_target, file, "--password-stdin"} + options,
                      "secret\n");
    }

    QByteArray Exported() const
    {
        const QString path = m_folder.filePath("out.csv");
        QFile::remove(path);
        EXPECT_EQ(RunCtl({"fleet", "export", m_target, path, "--password-stdin"}, "secret\n").code, 0);
        EXPECT_EQ(static_cast<int>(QFile::permissions(path)) & 0x77, 0); // its owner's alone
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    QTemporaryDir m_folder;
    const QString m_target = m_folder.filePath("site.kyndb");
};

TEST_F(Fleet, ImportsWhatItExportsByName)
{
    EXPECT_EQ(Import(groups + city).out, "Imported 2 fleets: 2 new, 0 replaced, 0 removed\n");
    EXPECT_EQ(Exported(), headings + city + groups) << "by prefix and base ident";
    EXPECT_EQ(Import(city + harbour).out, "Imported 2 fleets: 1 new, 1 replaced, 0 removed\n");
    EXPECT_EQ(Exported(), headings + city + groups + harbour);
    // The fleets change places; each row alone would overlap the other.
    EXPECT_EQ(Import("units,2,0,2,71,Harbour,\nunits,3,1,1020,1089,City,\n", {"--replace"}).out,
              "Imported 2 fleets: 0 new, 2 replaced, 1 removed\n");
    EXPECT_EQ(Exported(), headings + "units,2,0,2,71,Harbour,\nunits,3,1,1020,1089,City,\n");

    const CtlRun again =
        RunCtl({"fleet", "export", m_target, m_folder.filePath("out.csv"), "--password-stdin"}, "secret\n");
    EXPECT_EQ(again.code, 1) << "an existing file is not overwritten";
    EXPECT_TRUE(again.err.contains("out.csv: the file exists already")) << again.err.toStdString();
}

TEST_F(Fleet, ARefusedRowImportsNothing)
{
    ASSERT_EQ(Import(city).code, 0);
    const std::pair<QByteArray, QByteArray> refused[] = {
        {"units,2,1,2,71,,\n", "line 3: Please enter the name of fleet."},
        {"units,3,1,2,72,Odd,\n", "line 3: Please enter correct fleet size"},
        {"units,3,0,70,79,Other,\n", "line 3: Fleet 200/2035 overlaps fleet 200/2001."},
        {harbour.chopped(1) + "x\n" + harbour, "line 4: Fleet 201/2510 overlaps"},
        {harbour + "units,2,5,2,71,Harbour,\n", "line 4: the fleet name \"Harbour\" comes twice"},
        {"units,2,1,2,71," + QByteArray(65, 'n') + ",\n", "line 3: The name of a fleet can have up to 64"},
        {"units,2,1,2,71,N," + QByteArray(256, 'n') + "\n",
         "line 3: The comments of a fleet can have up to 255"},
    };
    for (const auto& [row, reason] : refused) {
        const CtlRun run = Import("groups,2,9,7000,7009,Good,\n" + row);
        EXPECT_EQ(run.code, 1) << row.toStdString();
        EXPECT_TRUE(run.err.contains(reason)) << run.err.toStdString() << " lacks " << reason.toStdString();
        EXPECT_EQ(Exported(), headings + city);
    }
}

} // namespace
