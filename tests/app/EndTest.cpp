#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <gtest/gtest.h>

// Told by the system to end, the console stores its place and ends in good order. The signal may come at any
// time: here it comes while the console starts.
TEST(End, ASignalEndsTheConsoleInGoodOrder)
{
    constexpr int Limit = 5000; // ms
    for (const int number : {SIGTERM, SIGHUP, SIGINT}) {
        SCOPED_TRACE(number);
        const QTemporaryDir folder;
        const QString settings = folder.filePath(QStringLiteral("end.ini"));
        QProcess console;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* home : {"XDG_DATA_HOME", "XDG_STATE_HOME"})
            environment.insert(QLatin1String(home), folder.path());
        console.setProcessEnvironment(environment);
        console.start(QStringLiteral(CONSOLE_PROGRAM), {QStringLiteral("-session"), QStringLiteral("1"),
                                                        QStringLiteral("--settings"), settings});
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return QFile::exists(settings + QStringLiteral(".lock")); }, 2 * Limit));
        ::kill(static_cast<pid_t>(console.processId()), number);
        ASSERT_TRUE(console.waitForFinished(Limit));
        EXPECT_EQ(console.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(console.exitCode(), 0);
        QFile stored(settings);
        ASSERT_TRUE(stored.open(QIODevice::ReadOnly));
        EXPECT_TRUE(stored.readAll().contains("[winMain]"));
    }
}
