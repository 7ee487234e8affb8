// Log records while a standby takes the place of its server.

#include "core/eventlog/ChainCheck.h"
#include "core/eventlog/EventLog.h"
#include "core/eventlog/LogHeads.h"
#include "core/eventlog/LogKey.h"
#include "core/texts/StringSourceImpl.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <QProcess>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

// A server and its standby, gone with this process.
class Pair {
public:
    explicit Pair(const QStringList& options)
    {
        Do(QStringList{"start", "--quick", "--while", QString::number(QCoreApplication::applicationPid())} +
           options);
        m_address = Do({"address", "--postgres"});
    }
    ~Pair() { Do({"stop"}); }

    QString Do(const QStringList& command)
    {
        QProcess script;
        script.start(TEST_DATA_DIR "/../../scripts/standby", QStringList{m_folder} + command);
        script.waitForFinished(60000);
        if (script.exitCode() != 0)
            throw std::runtime_error(script.readAllStandardError().toStdString());
        return QString::fromUtf8(script.readAllStandardOutput()).trimmed();
    }
    const QString& Address() const { return m_address; }

private:
    // Not in a private folder, which the user postgres could not enter.
    QString m_folder =
        QStringLiteral("%1/kynpair%2").arg(QDir::tempPath()).arg(QCoreApplication::applicationPid());
    QString m_address;
};

// What an operator has on his desk, without the windows.
class Desk {
public:
    explicit Desk(const TestDatabase& database) : m_database(database) { Begin(); }

    // Ends the console, and begins it again.
    void End() { m_log.reset(), m_session.reset(); }
    void Begin()
    {
        m_session = std::make_unique<TestSession>(m_database);
        m_log = std::make_unique<EventLog>(*m_session, m_strings, m_folder.path(), Lane::Kind::OwnThread);
        QObject::connect(m_log.get(), &EventLog::StoredAgain,
                         [this](const QString& text) { told.append(text); });
        m_log->WriteWaiting();
    }
    void Append(int records)
    {
        for (int i = 0; i < records; ++i) {
            m_sent.append(QString::number(m_sent.size()));
            m_ids.append(m_log->AppendLogRecord(QDateTime::currentDateTimeUtc(), EventType::Text,
                                                m_sent.last(), "Car 1", "200"));
            QCoreApplication::processEvents();
        }
    }
    bool StoreAll()
    {
        return QTest::qWaitFor(
            [&] {
                return m_log->Waiting() == 0 &&
                       std::all_of(m_ids.begin(), m_ids.end(), [&](auto& id) { return m_log->IsSafe(id); });
            },
            60000);
    }
    // What the log has of it, in the order of its storing; asked by the operator's own session.
    QStringList Stored(const QString& field = "desc")
    {
        QStringList texts;
        const auto rows = m_session->Database().OpenSnapshot(
            QString("select \"%1\" from event order by event_id").arg(field));
        for (; !rows->Eof(); rows->MoveNext())
            texts.append(rows->Field(field).toString());
        return texts;
    }
    // The log proves itself, and every head that the console has kept is in it.
    bool IsProved()
    {
        const QString id = m_session->Database().Id();
        QList<ChainCheck::Promise> promises;
        for (const LogHeads::Kept& kept : LogHeads::Read(m_folder.path(), id))
            promises.append({kept.head, {}});
        ChainCheck check({LogChain(LogKey::Own(m_folder.path()), id)}, {}, promises);
        for (const dao::EventRecord& record :
             dao::EventTable::ReadChained(m_session->Database(), 0, 1000000, 100000))
            check.Take(record);
        check.End();
        return check.IsWhole() && !promises.isEmpty() && check.Consoles().value(0).isOurs;
    }
    const QStringList& Sent() const { return m_sent; }
    bool IsAway() const { return m_session->Changes().IsAway(); }

    QStringList told;

private:
    const TestDatabase& m_database;
    CStringSourceImpl m_strings{QStringList{}};
    QTemporaryDir m_folder;
    std::unique_ptr<TestSession> m_session;
    std::unique_ptr<EventLog> m_log;
    QStringList m_sent;
    QStringList m_ids;
};

class ServerStandbyTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!TestServer::IsWanted())
            GTEST_SKIP() << "needs a server";
    }
};

TEST_F(ServerStandbyTest, SynchronousTakesOverInTheMiddleOfAStorm)
{
    Pair pair({"--synchronous"});
    const TestDatabase database(pair.Address());
    Desk desk(database);
    desk.Append(300);
    pair.Do({"kill-primary"});
    desk.Append(100);
    pair.Do({"promote"});
    desk.Append(100);
    EXPECT_TRUE(desk.StoreAll());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !desk.IsAway(); }, 10000)) << "without a second logon";
    EXPECT_EQ(desk.Stored(), desk.Sent());
    EXPECT_EQ(desk.told, QStringList()) << "nothing was missing";
    EXPECT_TRUE(desk.IsProved());
}

TEST_F(ServerStandbyTest, AsynchronousGetsWhatItHadMissed)
{
    Pair pair({});
    const TestDatabase database(pair.Address());
    Desk desk(database);
    desk.Append(20);
    ASSERT_TRUE(desk.StoreAll());
    pair.Do({"pause"});
    desk.Append(50);
    ASSERT_TRUE(desk.StoreAll());
    pair.Do({"kill-primary"});
    pair.Do({"promote"});
    // Nothing new has to come first.
    EXPECT_TRUE(QTest::qWaitFor([&] { return !desk.told.isEmpty(); }, 20000));
    desk.Append(5);
    EXPECT_TRUE(desk.StoreAll());
    EXPECT_EQ(desk.Stored(), desk.Sent());
    EXPECT_EQ(desk.Stored("console_number").first(), "1");
    EXPECT_EQ(desk.Stored("console_number").last(), "75") << "they have their numbers again";
    EXPECT_TRUE(desk.IsProved()) << "and their chains";
    EXPECT_EQ(desk.told.size(), 1);
    EXPECT_TRUE(desk.told.value(0).endsWith(": 50")) << desk.told.value(0).toStdString();
}

TEST_F(ServerStandbyTest, IsNoticedByAConsoleThatWasNotRunning)
{
    Pair pair({});
    const TestDatabase database(pair.Address());
    Desk desk(database);
    pair.Do({"pause"});
    desk.Append(3);
    ASSERT_TRUE(desk.StoreAll());
    desk.End();
    pair.Do({"kill-primary"});
    pair.Do({"promote"});
    desk.Begin();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !desk.told.isEmpty(); }, 20000));
    EXPECT_EQ(desk.Stored(), desk.Sent());
    desk.End();
    desk.Begin();
    desk.Append(1);
    EXPECT_TRUE(desk.StoreAll());
    EXPECT_EQ(desk.told.size(), 1) << "it is the same server";
}

} // namespace
