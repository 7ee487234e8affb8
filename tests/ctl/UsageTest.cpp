#include "ctl/CtlRun.h"

#include <gtest/gtest.h>

namespace {

struct Call {
    QStringList arguments;
    int code;
    QByteArray out; // what standard output has to contain; empty: it has to be empty
    QByteArray err; // the same for standard error
};

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

TEST(Usage, HelpAndWrongArguments)
{
    const Call calls[] = {
        {{}, 2, "", "Usage: veltorkynctl COMMAND"},
        {{"--help"}, 0, "user password", ""},
        {{"db", "--help"}, 0, "db check", ""},
        {{"--version"}, 0, "veltorkynctl ", ""},
        {{"db"}, 2, "", "unknown command: db"},
        {{"db", "drop", "x"}, 2, "", "unknown command: db drop"},
        {{"db", "create", "--help"}, 0, "--password-stdin", ""},
        {{"db", "create"}, 2, "", "something is missing: db create TARGET"},
        {{"db", "check", "a", "b"}, 2, "", "too many arguments: b"},
        {{"db", "create", ""}, 2, "", "TARGET is empty"},
        {{"user", "add", "--help"}, 0, "--allow-regrouping", ""},
        {{"user", "add", "x.kyndb"}, 2, "", "something is missing"},
        {{"user", "add", "x.kyndb", "4711"}, 2, "", "Callsign must begin with a letter"},
        {{"dial", "--help"}, 0, "groupMaxIdent", ""},
        {{"dial", "--nonsense", "21"}, 2, "", "nonsense"},
        {{"dial", "--plan"}, 2, "", "plan"},
        {{"dial", "-21"}, 2, "", "Try: veltorkynctl dial --help"},
        {{"dial", "--plan", "/dev/zero", "21"}, 1, "", "/dev/zero: the file is larger than 16 MiB"},
        {{"dial", "--numbering", "mpt1343", "21"}, 2, "", "\"mpt1343\" is not known"},
    };
    for (const Call& call : calls) {
        const CtlRun run = RunCtl(call.arguments);
        const std::string shown = call.arguments.join(' ').toStdString();
        EXPECT_EQ(run.code, call.code) << shown;
        EXPECT_TRUE(call.out.isEmpty() ? run.out.isEmpty() : run.out.contains(call.out))
            << shown << ": " << run.out.toStdString();
        EXPECT_TRUE(call.err.isEmpty() ? run.err.isEmpty() : run.err.contains(call.err))
            << shown << ": " << run.err.toStdString();
    }
}

} // namespace
