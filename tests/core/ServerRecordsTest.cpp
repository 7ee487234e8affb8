// Log records while the database's server comes and goes.

#include "core/eventlog/EventLog.h"
#include "core/texts/StringSourceImpl.h"
#include "support/ConsoleLoad.h"
#include "support/Files.h"
#include "support/QtPrinters.h"

#include <QFileInfo>
#include <gtest/gtest.h>
#include <sys/wait.h>

namespace {

class ServerRecordsTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!TestServer::IsWanted())
            GTEST_SKIP() << "needs a server";
        session = std::make_unique<TestSession>(database);
    }

    // The stored descriptions in the order of their storing.
    QStringList Stored()
    {
        QStringList texts;
        const auto workspace = database.Open();
        const auto rows = workspace->Database().OpenSnapshot("select \"desc\" from event order by event_id");
        for (; !rows->Eof(); rows->MoveNext())
            texts.append(rows->Field("desc").toString());
        return texts;
    }

    // Whether an operator would be warned.
    static bool Warns(EventLog& log, const QString& desc)
    {
        bool warned = false;
        const auto told = QObject::connect(&log, &EventLog::Delayed, [&] { warned = true; });
        log.AppendLogRecord(QDateTime::currentDateTimeUtc(), EventType::Text, desc, "Car 1", "200");
        QObject::disconnect(told);
        return warned;
    }

    QString SpoolFile() const { return folder.filePath("log-%1-1.waiting").arg(session->Database().Id()); }

    CStringSourceImpl strings{QStringList{}};
    QTemporaryDir folder;
    TestDatabase database;
    std::unique_ptr<TestSession> session;
};

TEST_F(ServerRecordsTest, WaitForTheServerInOrderAndAreStoredOnce)
{
    auto log = std::make_unique<EventLog>(*session, strings, folder.path());
    QList<int> waiting;
    QObject::connect(log.get(), &EventLog::WaitingChanged, [&](int records) { waiting.append(records); });
    EXPECT_FALSE(Warns(*log, "1"));
    TestServer::Get().StopAtOnce();
    EXPECT_TRUE(Warns(*log, "2"));
    EXPECT_FALSE(Warns(*log, "3")) << "once for each cause";
    EXPECT_EQ(waiting.last(), 2);
    const auto rights = QFileInfo(SpoolFile()).permissions();
    EXPECT_EQ(rights & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
              QFile::Permissions());

    // The program ends and starts again meanwhile; a line was half written when it did.
    log = std::make_unique<EventLog>(*session, strings, folder.path());
    QFile spool(SpoolFile());
    ASSERT_TRUE(spool.open(QIODevice::Append));
    spool.write("\n{\"id\":\"x\",\"ti");
    spool.close();
    log = std::make_unique<EventLog>(*session, strings, folder.path());
    EXPECT_TRUE(Warns(*log, "4"));
    EXPECT_EQ(log->Waiting(), 3);

    const QByteArray kept = ReadFile(SpoolFile());
    TestServer::Get().Start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return log->Waiting() == 0; }, 20000)); // without a hand
    EXPECT_FALSE(Warns(*log, "5"));
    EXPECT_EQ(Stored(), QStringList({"1", "2", "3", "4", "5"}));
    EXPECT_FALSE(QFile::exists(SpoolFile()));

    // Killed after the server had stored them and before the file was gone: sent again, stored once.
    log.reset();
    WriteFile(SpoolFile(), kept);
    log = std::make_unique<EventLog>(*session, strings, folder.path());
    log->WriteWaiting();
    EXPECT_TRUE(QTest::qWaitFor([&] { return log->Waiting() == 0; }, 20000));
    EXPECT_EQ(Stored(), QStringList({"1", "2", "3", "4", "5"}));
}

TEST_F(ServerRecordsTest, OfOneDatabaseNeverReachAnother)
{
    EventLog log(*session, strings, folder.path());
    TestServer::Get().StopAtOnce();
    EXPECT_TRUE(Warns(log, "mine"));
    TestServer::Get().Start();
    TestDatabase other;
    TestSession otherSession(other);
    EventLog otherLog(otherSession, strings, folder.path());
    otherLog.WriteWaiting();
    EXPECT_EQ(otherLog.Waiting(), 0);
    EXPECT_FALSE(Warns(otherLog, "theirs"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return log.Waiting() == 0; }, 20000));
    EXPECT_EQ(Stored(), QStringList({"mine"}));
}

TEST_F(ServerRecordsTest, WithACharacterThatNoServerHoldsAreStored)
{
    EventLog log(*session, strings, folder.path());
    EXPECT_FALSE(Warns(log, QString("fill") + QChar::Null + "ed"));
    EXPECT_EQ(Stored(), QStringList(QString("fill") + QChar(0x2400) + "ed"));
}

// Four consoles, each a process, while the server crashes and comes back.
TEST_F(ServerRecordsTest, OfManyConsolesOutliveACrashOfTheServer)
{
    constexpr int consoles = 4;
    session.reset(); // the children would read from its connection as well
    ConsoleLoad::Prepare(database);
    std::vector<pid_t> children;
    for (int number = 0; number < consoles; ++number)
        children.push_back(ConsoleLoad::Start(database, number, folder.path(), 1000000, 30,
                                              std::chrono::milliseconds(2000)));
    QTest::qWait(700);
    TestServer::Get().StopAtOnce();
    QTest::qWait(300);
    TestServer::Get().Start();
    for (const pid_t child : children)
        waitpid(child, nullptr, 0);

    QStringList sent;
    int counted = 0, doubtful = 0;
    for (int number = 0; number < consoles; ++number) {
        const ConsoleLoad::Report report = ConsoleLoad::ReadReport(folder.path(), number);
        EXPECT_EQ(report.errors, QStringList()) << number;
        EXPECT_GT(report.records.size(), 50);
        sent += report.records;
        counted += report.counted;
        doubtful += report.doubtful;
    }
    QStringList stored = Stored();
    stored.sort();
    sent.sort();
    EXPECT_TRUE(stored == sent) << stored.size() << " stored, " << sent.size() << " sent";
    const auto workspace = database.Open();
    const auto address = workspace->Database().OpenTable("address");
    address->SetIndex("i_callsign");
    address->Seek(QString("Counter"));
    const int value = address->Field("note").toInt();
    EXPECT_GT(counted, 0);
    EXPECT_GE(value, counted); // no update is lost
    EXPECT_LE(value, counted + doubtful);
}

} // namespace
