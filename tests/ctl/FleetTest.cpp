#include "ctl/Site.h"

namespace {

const QByteArray headings = "type,digits,prefix,base_ident,max_ident,fleet_name,notes\n";
const QByteArray city = "units,2,0,2,71,City,\n";
const QByteArray groups = "groups,2,0,7000,7009,\"Groups, \"\"city\"\"\",\"two\nlines\"\n";
const QByteArray harbour = "units,3,1,1020,1089,Harbour,\n";

class Fleet : public Site {
protected:
    Fleet() { EXPECT_EQ(Create().code, 0); }

    CtlRun ImportRows(const QByteArray& rows, const QStringList& options = {}) const
    {
        return Import("fleet", headings + rows, options);
    }
};

TEST_F(Fleet, ImportsWhatItExportsByName)
{
    EXPECT_EQ(ImportRows(groups + city).out, "Imported 2 fleets: 2 new, 0 replaced, 0 removed\n");
    EXPECT_EQ(Exported("fleet"), headings + city + groups) << "by prefix and base ident";
    EXPECT_EQ(ImportRows(city + harbour).out, "Imported 2 fleets: 1 new, 1 replaced, 0 removed\n");
    EXPECT_EQ(Exported("fleet"), headings + city + groups + harbour);
    // The fleets change places; each row alone would overlap the other.
    EXPECT_EQ(ImportRows("units,2,0,2,71,Harbour,\nunits,3,1,1020,1089,City,\n", {"--replace"}).out,
              "Imported 2 fleets: 0 new, 2 replaced, 1 removed\n");
    EXPECT_EQ(Exported("fleet"), headings + "units,2,0,2,71,Harbour,\nunits,3,1,1020,1089,City,\n");

    ExpectFailure(Export("fleet"), "out.csv: the file exists already");
}

TEST_F(Fleet, ARefusedRowImportsNothing)
{
    ASSERT_EQ(ImportRows(city).code, 0);
    const std::pair<QByteArray, QByteArray> refused[] = {
        {"units,2,1,2,71,,\n", "line 3: Please enter the name of fleet."},
        {"units,3,1,2,72,Odd,\n", "line 3: Please enter correct fleet size"},
        {"units,3,0,70,79,Other,\n", "line 3: Fleet 200/2035 overlaps fleet 200/2001."},
        {harbour + "units,3,1,1020,1089,Haven,\n", "line 4: Fleet 201/2510 overlaps"},
        {harbour + "units,2,5,2,71,Harbour,\n", "line 4: the fleet name \"Harbour\" comes twice"},
        {"units,2,1,2,71," + QByteArray(65, 'n') + ",\n", "line 3: The name of a fleet can have up to 64"},
        {"units,2,1,2,71,N," + QByteArray(256, 'n') + "\n",
         "line 3: The comments of a fleet can have up to 255"},
    };
    for (const auto& [row, reason] : refused) {
        const CtlRun run = ImportRows("groups,2,9,7000,7009,Good,\n" + row);
        EXPECT_EQ(run.code, 1);
        EXPECT_TRUE(run.err.contains(reason)) << run.err.toStdString() << " lacks " << reason.toStdString();
        EXPECT_TRUE(run.err.contains("nothing was imported")) << run.err.toStdString();
        EXPECT_EQ(Exported("fleet"), headings + city);
    }
}

} // namespace
