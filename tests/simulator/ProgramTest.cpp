#include "simulator/program/Program.h"
#include "map27/link/Framing.h"
#include "map27/terminal/Terminal.h"
#include "simulator/program/FileDescriptor.h"
#include "simulator/script/ScenarioReader.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <array>

using map27::Milliseconds;

namespace {

constexpr int patience = 10000; // milliseconds

// The program under test with its commands on a pipe.
class RunningProgram {
public:
    explicit RunningProgram(sim::Options options)
    {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0)
            throw std::runtime_error("no pipe");
        m_commandsOut = sim::FileDescriptor(ends[0]);
        m_commandsIn = sim::FileDescriptor(ends[1]);
        options.scenario = "tour";
        program = std::make_unique<sim::Program>(
            options, sim::Program::Console{[this](const std::string& text) { answers += text; },
                                           [this](const std::string& line) { log += line + '\n'; }});
        program->ReadCommands(m_commandsOut.Get());
    }

    void Type(const std::string& text)
    {
        EXPECT_EQ(::write(m_commandsIn.Get(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    void EndCommands() { m_commandsIn.Close(); }

    std::string answers;
    std::string log;

private:
    sim::FileDescriptor m_commandsOut;
    sim::FileDescriptor m_commandsIn;

public:
    std::unique_ptr<sim::Program> program;
};

// A console on a file descriptor, with the system's clock.
class PtyConsole {
public:
    // Changes no settings of the terminal: the program is to have it in raw mode.
    explicit PtyConsole(const QString& path)
        : m_port(::open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
        EXPECT_TRUE(m_port.IsOpen()) << path.toStdString();
        m_clock.start();
        Take(m_terminal.Start(Now()));
    }

    // Runs the event loop until the condition holds. False when that takes too long.
    template <typename Condition> bool Until(Condition condition)
    {
        QElapsedTimer waited;
        waited.start();
        while (!condition()) {
            if (waited.elapsed() > patience)
                return false;
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 2);
            Take(m_terminal.Feed(Read(), Now()));
            Take(m_terminal.OnTime(Now()));
        }
        return true;
    }

    bool UntilReady()
    {
        return Until([this] { return m_terminal.IsLinkReady() && m_terminal.Numbering(); });
    }

    bool SendsStatus(map27::Address to)
    {
        delivered = 0;
        Take(m_terminal.SendStatus(to, 5, Now()).output);
        return Until([this] { return delivered > 0; });
    }

    map27::Octets Read()
    {
        map27::Octets octets(4096);
        const ssize_t count = ::read(m_port.Get(), octets.data(), octets.size());
        octets.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return octets;
    }

    int delivered = 0;
    std::vector<int> statuses;

private:
    map27::TimePoint Now() const { return map27::TimePoint(Milliseconds(m_clock.elapsed())); }

    void Take(const map27::TerminalOutput& output)
    {
        for (const map27::Octets& frame : output.frames)
            EXPECT_EQ(::write(m_port.Get(), frame.data(), frame.size()), static_cast<ssize_t>(frame.size()));
        for (const auto& event : output.events) {
            const auto* progress = std::get_if<map27::MessageProgress>(&event);
            if (progress && progress->code == 192)
                ++delivered;
            if (const auto* status = std::get_if<map27::StatusReceived>(&event))
                statuses.push_back(status->status);
        }
    }

    sim::FileDescriptor m_port;
    QElapsedTimer m_clock;
    map27::Terminal m_terminal;
};

template <typename Condition> bool Wait(Condition condition)
{
    QElapsedTimer waited;
    waited.start();
    while (!condition() && waited.elapsed() < patience)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 10);
    return condition();
}

bool Has(const std::string& text, const char* part)
{
    return text.find(part) != std::string::npos;
}

sim::Options PtyOptions(const QTemporaryDir& folder, unsigned speed)
{
    sim::Options options;
    options.ptyLink = folder.filePath("radio");
    options.trace = folder.filePath("trace");
    options.simulation.bitsPerSecond = speed;
    return options;
}

} // namespace

TEST(Program, AConsoleOnThePtyComesGoesAndComesAgain)
{
    const QTemporaryDir folder;
    ASSERT_TRUE(QFile::link("/nowhere", folder.filePath("radio"))); // left over from before
    RunningProgram running(PtyOptions(folder, 9600));
    EXPECT_EQ(running.program->PortName(), folder.filePath("radio"));
    {
        PtyConsole console(folder.filePath("radio"));
        ASSERT_TRUE(console.UntilReady()) << running.log;
        // Idents with a flow control, a line end and an interrupt character, none of which a raw line may
        // touch.
        running.Type("behave Unit20 answers 0\nstatus 0/4371 17\nstatus 0/3338 13\nstatus 0/772 26\n");
        EXPECT_TRUE(console.Until([&] { return console.statuses.size() == 3; }));
        EXPECT_EQ(console.statuses, (std::vector{17, 13, 26}));
        EXPECT_TRUE(console.SendsStatus({0, 2}));

        // Not read any more when the console leaves.
        running.Type("status Unit22 1\n");
        ASSERT_TRUE(Wait([&] { return running.answers == "ok\nok\nok\nok\nok\n"; })) << running.answers;
    }
    ASSERT_TRUE(Wait([&] { return Has(running.log, "console gone"); })) << running.log;
    {
        PtyConsole console(folder.filePath("radio"));
        ASSERT_TRUE(console.UntilReady()) << running.log;
        EXPECT_TRUE(console.SendsStatus({0, 2}));
        // Only what it has not acknowledged before, and that once.
        EXPECT_TRUE(console.Until([&] { return !console.statuses.empty(); }));
        EXPECT_EQ(console.statuses, std::vector{1});
    }
    running.program.reset();
    EXPECT_FALSE(QFile::symLinkTarget(folder.filePath("radio")).size());
}

TEST(Program, TraceLinesDecodeToTheFramesOnTheWire)
{
    const QTemporaryDir folder;
    QFile trace(folder.filePath("trace"));
    ASSERT_TRUE(trace.open(QIODevice::WriteOnly) && trace.write("{\"ms\":1}\n") == 9); // an earlier run
    trace.close();
    RunningProgram running(PtyOptions(folder, 0));
    PtyConsole console(folder.filePath("radio"));
    ASSERT_TRUE(console.UntilReady()) << running.log;
    ASSERT_TRUE(console.SendsStatus({0, 2}));

    ASSERT_TRUE(trace.open(QIODevice::ReadOnly));
    EXPECT_EQ(trace.readLine(), "{\"ms\":1}\n") << "stays";
    std::vector<std::string> story;
    qint64 last = 0;
    while (!trace.atEnd()) {
        const QJsonObject line = QJsonDocument::fromJson(trace.readLine()).object();
        EXPECT_GE(line["ms"].toInteger(), last);
        last = line["ms"].toInteger();
        if (!line.contains("frame"))
            continue;
        const QByteArray wire = QByteArray::fromHex(line["frame"].toString().toLatin1());
        map27::FrameDecoder decoder;
        const auto bodies = decoder.Feed(map27::Octets(wire.begin(), wire.end()));
        ASSERT_EQ(bodies.size(), 1U) << line["frame"].toString().toStdString();
        const map27::Octets message(bodies[0].begin() + 4, bodies[0].end());
        if (!message.empty())
            story.push_back(line["dir"].toString().toStdString() + ' ' + map27::ToHex(message));
    }
    const auto begin = std::ranges::find(story, "D>R B0 00");
    ASSERT_NE(begin, story.end());
    EXPECT_EQ(*(begin + 1), "R>D B0 00 00 03 00 00 00 00 B8 00 80 FE");
    const auto sent = std::find(begin, story.end(), "D>R 80 00 00 02 00 05");
    EXPECT_NE(std::find(sent, story.end(), "R>D C0 00 00 02 00 00"), story.end());
}

TEST(Program, ATraceIsMadeForItsOwnerAlone)
{
    const QTemporaryDir folder;
    const RunningProgram running(PtyOptions(folder, 0));
    EXPECT_FALSE(QFile::permissions(folder.filePath("trace")) &
                 (QFileDevice::ReadGroup | QFileDevice::ReadOther));
}

TEST(Program, ThePtyReplacesNothingButALink)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("radio"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("precious") == 8);
    file.close();
    EXPECT_THROW(RunningProgram{PtyOptions(folder, 0)}, sim::PortError);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "precious");
}

TEST(Program, ATraceThatCannotBeWrittenIsAnError)
{
    const QTemporaryDir folder;
    sim::Options options = PtyOptions(folder, 0);
    options.trace = folder.path() + "/none/trace";
    EXPECT_THROW(RunningProgram{options}, std::runtime_error);
    EXPECT_FALSE(QFile::symLinkTarget(folder.filePath("radio")).size());
}

TEST(Program, OneConsoleAtATimeOverTcp)
{
    sim::Options options;
    options.listenHost = "127.0.0.1";
    options.simulation.bitsPerSecond = 0;
    RunningProgram running(options);
    const QStringList name = running.program->PortName().split(':');
    const quint16 port = name.last().toUShort();
    ASSERT_GT(port, 0);

    QTcpSocket first;
    first.connectToHost(name.first(), port);
    ASSERT_TRUE(Wait([&] { return first.bytesAvailable() >= 11; }));
    EXPECT_TRUE(first.readAll().startsWith(QByteArray::fromHex("161002010E")));
    QTcpSocket second;
    second.connectToHost(name.first(), port);
    ASSERT_TRUE(Wait([&] { return second.state() == QAbstractSocket::UnconnectedState; }));
    EXPECT_EQ(second.bytesAvailable(), 0);

    first.disconnectFromHost();
    ASSERT_TRUE(Wait([&] { return Has(running.log, "console gone"); }));
    second.connectToHost(name.first(), port);
    EXPECT_TRUE(Wait([&] { return second.bytesAvailable() >= 11; }));

    sim::Options taken = options;
    taken.listenPort = port;
    EXPECT_THROW(RunningProgram{taken}, sim::PortError);
}

TEST(Program, CommandsAreTakenLineByLine)
{
    const QTemporaryDir folder;
    RunningProgram running(PtyOptions(folder, 0));
    running.Type("\n# a remark\nfie");
    running.Type("ld 9\r\n" + std::string(5000, 'x') + "\nfield 300\nhang");
    running.Type("up");
    running.EndCommands();
    EXPECT_TRUE(Wait([&] { return Has(running.answers, "no call"); }));
    EXPECT_EQ(running.answers,
              "ok\nerror the line is too long\n"
              "error the field strength must be 0 to 255, not \"300\"\nerror there is no call\n");
}
