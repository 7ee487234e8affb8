#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

constexpr int Patience = 10000; // ms

struct Call {
    QStringList arguments; // DIR is a folder that does not exist yet
    int code;
    QByteArray out; // what standard output has to contain; empty: nothing is required
    QByteArray err;
};

// What is wrong is said before anything is begun.
TEST(CommandLine, HelpAndWrongArguments)
{
    const QTemporaryDir folder;
    QFile script(folder.filePath(QStringLiteral("wrong.tour")));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("step start: the main window\n    sea winMain\n");
    script.close();
    const Call calls[] = {
        {{"--help"}, 0, "--script FILE", ""},
        {{"--nonsense", "-h"}, 0, "Exit codes", ""},
        {{"--version"}, 0, "VeltorKyn ", ""},
        {{"--nonsense"}, 2, "", "nonsense"},
        {{"nonsense"}, 2, "", "unknown argument: nonsense"},
        {{"--settings"}, 2, "", "settings"},
        {{"--settings="}, 2, "", "--settings needs a value"},
        {{"--settings=a.ini", "--tour", "DIR"}, 2, "", "--settings cannot be combined"},
        {{"--demonstration=DIR", "--tour=DIR"}, 2, "", "exclude each other"},
        {{"--script", "a.tour"}, 2, "", "--script needs --tour"},
        {{"--tour=DIR", "--script", script.fileName()},
         1,
         "",
         "wrong.tour:2: \"sea\" is not a word of the tour"},
    };
    for (const Call& call : calls) {
        QTemporaryDir place;
        const QString shown = call.arguments.join(QLatin1Char(' '));
        QStringList arguments = call.arguments;
        arguments.replaceInStrings(QStringLiteral("DIR"), place.filePath(QStringLiteral("new")));
        QProcess console;
        console.start(QStringLiteral(CONSOLE_PROGRAM), arguments);
        ASSERT_TRUE(console.waitForFinished(Patience)) << shown.toStdString();
        const QByteArray out = console.readAllStandardOutput();
        const QByteArray err = console.readAllStandardError();
        EXPECT_EQ(console.exitCode(), call.code) << shown.toStdString();
        EXPECT_TRUE(out.contains(call.out)) << shown.toStdString() << ": " << out.toStdString();
        EXPECT_TRUE(err.contains(call.err)) << shown.toStdString() << ": " << err.toStdString();
        EXPECT_TRUE(QDir(place.filePath(QStringLiteral("new"))).isEmpty()) << shown.toStdString();
    }
}

} // namespace
