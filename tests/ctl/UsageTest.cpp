#include "ctl/CtlRun.h"
#include "support/Table.h"

namespace {

TEST(Usage, HelpNamesServersWhereverATargetMayBeOne)
{
    for (const char* command :
         {"db create", "db check", "db migrate", "user add", "user list", "user password", "directory export",
          "directory import", "status export", "status import", "fleet export", "fleet import"}) {
        const CtlRun run = RunCtl(QString(command).split(' ') + QStringList("--help"));
        EXPECT_TRUE(run.out.contains("postgresql://")) << command;
        for (const QByteArray& line : run.out.split('\n'))
            EXPECT_TRUE(line.size() <= 100 || line.startsWith("Usage: ")) << line.toStdString();
    }
}

// Arguments, exit code, what standard output and standard error contain; empty: they are empty.
TEST(Usage, HelpAndWrongArguments)
{
    for (const TableRow& row : ReadTable("ctl.tsv", "Usage", 33)) {
        const QString arguments = QString::fromStdString(row.at(0));
        const CtlRun run = RunCtl(arguments.isEmpty() ? QStringList() : arguments.split(' '));
        EXPECT_EQ(run.code, std::stoi(row.at(1))) << row.at(0);
        for (const auto& [said, expected] : {std::pair(run.out, row.at(2)), std::pair(run.err, row.at(3))})
            EXPECT_TRUE(expected.empty() ? said.isEmpty() : said.contains(expected.c_str()))
                << row.at(0) << ": " << said.toStdString() << " lacks " << expected;
    }
}

} // namespace
