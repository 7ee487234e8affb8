#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

constexpr int patience = 10000; // ms

} // namespace

// However the console ends, its simulated radio ends in good order: it takes its port away itself.
TEST(Demonstration, TheRadioEndsWithAConsoleThatIsKilled)
{
    const QTemporaryDir folder;
    const QFileInfo port(folder.filePath(QStringLiteral("radio")));
    const auto isThere = [&] { return !QFile::symLinkTarget(port.filePath()).isEmpty(); };
    QProcess console;
    console.start(QStringLiteral(CONSOLE_PROGRAM), {QStringLiteral("--demonstration"), folder.path()});
    ASSERT_TRUE(QTest::qWaitFor(isThere, patience));
    QFile children(QStringLiteral("/proc/%1/task/%1/children").arg(console.processId()));
    ASSERT_TRUE(children.open(QIODevice::ReadOnly));
    const QString radio = QStringLiteral("/proc/%1").arg(QString::fromLatin1(children.readAll()).trimmed());
    ASSERT_TRUE(QFileInfo::exists(radio)) << radio.toStdString();

    console.kill();
    ASSERT_TRUE(console.waitForFinished(patience));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !QFileInfo::exists(radio); }, patience));
    EXPECT_FALSE(isThere());
}
