#include "ctl/Site.h"
#include "support/Table.h"

namespace {

class Importing : public Site {
protected:
    void SetUp() override
    {
        ASSERT_EQ(Create().code, 0);
        const QByteArray plan = "type,digits,prefix,base_ident,max_ident,fleet_name,notes\n"
                                "units,2,0,2,71,City,\ngroups,2,0,7000,7009,Groups,\n";
        ASSERT_EQ(Import("fleet", plan).code, 0);
    }
};

const QByteArray Directory = "type,callsign,ident,name,note,dynamic,position\n"
                             "individual,Unit20,200200120,Patrol North,,yes,\n"
                             "individual,Ünit 22,200200122,Süd,\"a, \"\"b\"\"\nc\",no,\n"
                             "talkgroup,Night,200550091,,late,yes,16\n";

TEST_F(Importing, WhatWasExportedComesBackExactly)
{
    CtlRun run = Import("directory", Directory);
    EXPECT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_EQ(run.out, "Imported 3 lines\n");
    EXPECT_EQ(Exported("directory"), Directory);
    EXPECT_EQ(Import("directory", Directory).code, 0); // over itself
    EXPECT_EQ(Exported("directory"), Directory);
    EXPECT_EQ(Export("directory").code, 1) << "overwrites a file";

    // Two entries change places, by other columns' order; the third stays.
    run = Import("directory", "callsign,type,dynamic,position,note,ident,name\n"
                              "unit20,individual,yes,,,200200122,Patrol North\n"
                              "Ünit 22,individual,no,,,200200120,Süd\n");
    EXPECT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(Exported("directory").contains("individual,unit20,200200122,"));
    EXPECT_TRUE(Exported("directory").contains("talkgroup,Night,"));

    const QByteArray stati = "code,in,out,emergency\n0,,,no\n5,Arrived,\"Go, now\",yes\n31,Ende,Schluß,no\n";
    EXPECT_EQ(Import("status", stati).code, 0);
    EXPECT_EQ(Import("status", "code,in,out\n31,Ende,Schluß\n").code, 0);
    EXPECT_EQ(Exported("status"), stati);
}

TEST_F(Importing, EveryBadLineIsToldAndNothingIsStoredUnlessLeftOut)
{
    ASSERT_EQ(Import("directory", Directory).code, 0);
    const QByteArray head = "type,callsign,ident,name,note,dynamic,position\n";
    const QByteArray good = "individual,Car,23,Car,,no,\n";
    const auto bad = ReadTable("ctl.tsv", "Directory lines", 12);
    QByteArray all = head;
    for (const TableRow& row : bad)
        all += QByteArray::fromStdString(row.at(0));
    const QByteArray before = Exported("directory");
    CtlRun run = Import("directory", all);
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(Exported("directory"), before);
    for (const TableRow& row : bad)
        EXPECT_TRUE(run.err.contains(row.at(1).c_str())) << row.at(1) << " in " << run.err.toStdString();
    EXPECT_TRUE(run.err.contains("in.csv, line 2: type is")) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains("12 of 13 lines are bad, nothing was imported")) << run.err.toStdString();
    run = Import("directory", all, {"--skip-bad"});
    EXPECT_EQ(run.out, "Imported 1 lines, left out 12\n") << run.err.toStdString();
    EXPECT_EQ(Exported("directory").count('\n'), before.count('\n') + 1);

    for (const auto& [text, reason] : {std::pair<QByteArray, const char*>{"", "the file is empty"},
                                       {"callsign\n", "is missing"},
                                       {head.trimmed() + ",extra\n", "unknown column"},
                                       {head + "individual,\"A\n", "no closing quote"}}) {
        ExpectFailure(Import("directory", text, {"--skip-bad"}), reason);
    }
    run = Import("status",
                 "code,in,out\n32,a,b\n-1,a,b\nx,a,b\n3,a,b\n3,c,d\n4," + QByteArray(256, 'x') + ",\n");
    EXPECT_TRUE(run.err.contains("5 of 6 lines are bad")) << run.err.toStdString();
    EXPECT_EQ(Exported("status"), "code,in,out,emergency\n");
}

TEST_F(Importing, OperatorsExportButDoNotImport)
{
    ASSERT_EQ(RunWithPasswords({"user", "add", m_target, "Olga"}, "secret\npw\n").code, 0);
    const QString file = WriteFile(m_folder.filePath("in.csv"), "code,in,out\n1,a,b\n");
    ExpectFailure(RunWithPasswords({"status", "import", m_target, file, "--as", "Olga"}, "pw\n"),
                  "Only an administrator");
    const QString exported = m_folder.filePath("o.csv");
    EXPECT_EQ(RunWithPasswords({"status", "export", m_target, exported, "--as", "Olga"}, "pw\n").code, 0);
}

} // namespace
