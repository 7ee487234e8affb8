// Every problem of a port is one clear sentence.

#include "core/texts/StringSourceImpl.h"
#include "radio/line/PortHolder.h"
#include "radio/line/RadioPort.h"
#include "radio/line/SerialRadioPort.h"
#include "support/OtherUser.h"
#include "support/QtPrinters.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSerialPort>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>
#include <pty.h>
#include <utility>

namespace {

class Ports : public testing::Test {
protected:
    void SetUp() override
    {
        char name[128];
        ASSERT_EQ(openpty(&m_master, &m_slave, name, nullptr, nullptr), 0);
        pty = QString::fromLatin1(name);
    }
    void TearDown() override
    {
        PullOut();
        ::close(m_slave);
    }

    // The device goes: its pseudo terminal loses the other end.
    void PullOut()
    {
        if (m_master >= 0)
            ::close(std::exchange(m_master, -1));
    }

    // Empty when it opens.
    QString Problem(const QString& name)
    {
        QString text;
        bool over = false;
        const auto port = MakeRadioPort(name, 9600);
        QObject::connect(port.get(), &RadioPort::Opened, port.get(), [&] { over = true; });
        QObject::connect(port.get(), &RadioPort::Failed, port.get(), [&](const PortProblem& problem) {
            over = true;
            text = PortProblemText(problem, m_strings);
        });
        port->Open();
        EXPECT_TRUE(over || QTest::qWaitFor([&] { return over; }));
        return text;
    }

    QString pty;

private:
    int m_master = -1;
    int m_slave = -1;
    CStringSourceImpl m_source{QStringList{}};

protected:
    const IStringSource& m_strings = m_source.CreateStringSource(QStringLiteral("CKYN"));
};

TEST_F(Ports, APseudoTerminalOpensWithoutModemLines)
{
    EXPECT_EQ(Problem(pty), QString());
    EXPECT_EQ(Problem(pty), QString()) << "opened again after it was closed";
}

TEST_F(Ports, ProblemsInPlainWords)
{
    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("plain"));
    QFile plain(file);
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const QString closed = QStringLiteral("tcp://127.0.0.1:%1").arg(server.serverPort());
    server.close();

    const std::pair<QString, QString> cases[] = {
        {QStringLiteral("COM87"),
         QStringLiteral("Port COM87 does not exist. Check the cable and the port in the settings.")},
        {QStringLiteral("ttyNothing"),
         QStringLiteral("Port ttyNothing does not exist. Check the cable and the port in the settings.")},
        {file, QStringLiteral("%1 is not a serial port.").arg(file)},
        {QStringLiteral("tcp://127.0.0.1"),
         QStringLiteral("tcp://127.0.0.1 is not a valid address. Write it as tcp://host:port.")},
        {closed,
         QStringLiteral("Nothing answers at %1. Check that the device is switched on and the port number is "
                        "right.")
             .arg(closed)},
        {QStringLiteral("tcp://no-such-host.invalid:4001"),
         QStringLiteral("Host no-such-host.invalid is not known.")},
    };
    for (const auto& [name, sentence] : cases)
        EXPECT_EQ(Problem(name), sentence);
}

TEST_F(Ports, Busy)
{
    QSerialPort other(pty);
    ASSERT_TRUE(other.open(QIODevice::ReadWrite));
    EXPECT_EQ(Problem(pty),
              QStringLiteral("Port %1 is in use by another program. Close that program or select "
                             "another port.")
                  .arg(pty));
}

TEST_F(Ports, WhoHoldsIt)
{
    EXPECT_EQ(HolderOfPort(pty), QString()) << "this program does not name itself";
    QProcess other;
    other.setStandardInputFile(pty);
    other.start(QStringLiteral("sleep"), {QStringLiteral("60")});
    ASSERT_TRUE(other.waitForStarted());
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return HolderOfPort(pty) == QStringLiteral("sleep (process %1)").arg(other.processId());
    })) << HolderOfPort(pty).toStdString();
    other.kill();
    other.waitForFinished();
}

// Pseudo terminals as adapters with serial numbers.
struct FakeAdapters : SerialAdapters {
    QString IdentityOf(const QString& device) const override { return plugged.key(device); }
    QString DeviceOf(const QString& identity) const override { return plugged.value(identity); }
    QMap<QString, QString> plugged; // device by serial number
};

TEST_F(Ports, AnAdapterIsFoundAgainUnderAnotherName)
{
    const auto adapters = std::make_shared<FakeAdapters>();
    adapters->plugged[QStringLiteral("A100")] = pty;
    SerialRadioPort port(pty, 9600, adapters);
    QString failure;
    QByteArray heard;
    QObject::connect(&port, &RadioPort::Failed, &port,
                     [&](const PortProblem& problem) { failure = PortProblemText(problem, m_strings); });
    QObject::connect(&port, &RadioPort::Received, &port, [&](const QByteArray& octets) { heard += octets; });
    port.Open();

    PullOut();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !failure.isEmpty(); }));
    EXPECT_FALSE(port.IsOpen());

    int master = -1;
    int slave = -1;
    char other[128];
    ASSERT_EQ(openpty(&master, &slave, other, nullptr, nullptr), 0);
    adapters->plugged[QStringLiteral("A100")] = QString::fromLatin1(other);
    port.Open();
    ASSERT_TRUE(port.IsOpen());
    ASSERT_EQ(::write(master, "here", 4), 4);
    EXPECT_TRUE(QTest::qWaitFor([&] { return heard == "here"; }));
    port.Close();
    ::close(master);
    ::close(slave);
}

TEST_F(Ports, NotPermittedNamesTheGroup)
{
    ASSERT_EQ(::chmod(pty.toLatin1().constData(), 0620), 0);
    const QString group = QFileInfo(pty).group();
    EXPECT_TRUE(AsNobody([&] {
        const QString problem = Problem(pty);
        return problem.startsWith(QStringLiteral("You are not permitted to use port %1.").arg(pty)) &&
               problem.contains(QStringLiteral("add you to the group %1.").arg(group));
    }));
}

TEST_F(Ports, ALockThatADeadProgramLeftIsToldAsWhatItIs)
{
    QProcess dead;
    dead.start(QStringLiteral("true"), QStringList());
    const qint64 process = dead.processId();
    ASSERT_TRUE(dead.waitForFinished());
    ASSERT_EQ(::chmod(pty.toLatin1().constData(), 0666), 0);
    QFile lock(QStringLiteral("/run/lock/LCK..") + pty.mid(5).replace(QLatin1Char('/'), QLatin1Char('_')));
    ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
    lock.write(QByteArray::number(process) + "\nveltorkyn\n");
    lock.close();
    EXPECT_TRUE(AsNobody([&] {
        const QString problem = Problem(pty);
        return problem.contains(QStringLiteral("Process %1,").arg(process)) &&
               problem.endsWith(QStringLiteral("sudo rm /var/lock/%1").arg(QFileInfo(lock).fileName()));
    }));
    lock.remove();
}

TEST(PortNames, ComNumbersAndDevices)
{
    const std::pair<const char*, const char*> cases[] = {
        {"COM1", "/dev/ttyS0"},
        {"com2", "/dev/ttyS1"},
        {"COM10", "/dev/ttyS9"},
        {"ttyUSB0", "/dev/ttyUSB0"},
        {"/dev/serial/x", "/dev/serial/x"},
        {"COM0", "/dev/COM0"},
    };
    for (const auto& [name, device] : cases)
        EXPECT_EQ(SerialRadioPort::DevicePath(QString::fromLatin1(name)), QString::fromLatin1(device));
}

} // namespace
