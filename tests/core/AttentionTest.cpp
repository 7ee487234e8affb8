// What waits for a person, at two consoles of one database.

#include "core/attention/AttentionBook.h"
#include "core/eventlog/EventLog.h"
#include "core/texts/StringSourceImpl.h"
#include "support/FakeClock.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <QTest>
#include <gtest/gtest.h>

namespace {

using Entry = dao::AttentionRecord;
using Kind = Entry::Kind;

struct Desk {
    Desk(const TestDatabase& database, const IStringSource& strings, const QString& user) : session(database)
    {
        if (user != TestDatabase::userName) {
            session.Logoff();
            session.logonName = session.logonPassword = user;
            session.Logon(true, true);
        }
        log = std::make_unique<EventLog>(session, strings, folder.path());
        book = std::make_unique<AttentionBook>(session, *log, clock, strings);
        QObject::connect(book.get(), &AttentionBook::Overruled, [this](const QString& text) { told = text; });
    }

    void Hear(const QString& caller, Kind kind = Kind::Emergency)
    {
        book->Hear({.caller = caller, .kind = kind, .what = QStringLiteral("call"), .callBack = caller});
    }
    // As the desk sees it now: caller, how often, and who has it.
    QStringList Look()
    {
        session.Changes().MayHaveChanged();
        QCoreApplication::processEvents();
        QStringList texts;
        for (const Entry& entry : book->Entries())
            texts.append(QStringLiteral("%1 %2 %3%4")
                             .arg(entry.caller)
                             .arg(entry.times)
                             .arg(entry.takenBy, entry.takenAway ? QStringLiteral(" away") : QString())
                             .trimmed());
        return texts;
    }
    Entry First() const { return book->Entries().front(); }

    QTemporaryDir folder;
    FakeClock clock;
    TestSession session;
    std::unique_ptr<EventLog> log;
    std::unique_ptr<AttentionBook> book;
    QString told;
};

class AttentionTest : public testing::Test {
protected:
    // Steps of both clocks.
    void Pass(int seconds)
    {
        for (Desk* desk : {&one, &other})
            desk->clock.Step(std::chrono::seconds(seconds));
    }
    void ExpectBoth(const QStringList& entries)
    {
        (void)QTest::qWaitFor([&] { return one.Look() == entries && other.Look() == entries; }, 1000);
        EXPECT_EQ(one.Look(), entries);
        EXPECT_EQ(other.Look(), entries);
    }

    CStringSourceImpl source{QStringList{}};
    const IStringSource& strings = source.CreateStringSource("CKYN");
    TestDatabase database;
    const bool added = (database.AddOperator("olga", "olga"), true);
    Desk one{database, strings, TestDatabase::userName};
    Desk other{database, strings, "olga"};
};

TEST_F(AttentionTest, OneEntryForACallerAndKindUntilItIsDone)
{
    one.Hear("Unit20");
    other.Hear("Unit20"); // the same call at the other radio
    one.Hear("Unit20", Kind::MissedCall);
    ExpectBoth({"Unit20 1", "Unit20 1"});
    Pass(10);
    other.Hear("Unit20");
    one.Hear("Unit22", Kind::Failed);
    ExpectBoth({"Unit20 2", "Unit20 1", "Unit22 1"});
    other.book->Take(other.First()); // what is taken stands behind what is not
    ExpectBoth({"Unit20 1", "Unit22 1", "Unit20 2 olga"});
    Pass(10);
    one.Hear("Unit20");
    ExpectBoth({"Unit20 3", "Unit20 1", "Unit22 1"});
    one.book->Finish(one.First());
    ExpectBoth({"Unit20 1", "Unit22 1"});

    const auto workspace = database.Open();
    const auto acts = workspace->Database().OpenSnapshot(
        "select act, operator from attention_act where kind = 1 order by time_stamp, act, operator");
    QString life;
    for (; !acts->Eof(); acts->MoveNext())
        life += acts->Field("act").toString() + acts->Field("operator").toString() + u' ';
    EXPECT_EQ(life, "1admin 1olga 1olga 2olga 1admin 3admin ") << "all of it is kept";
}

TEST_F(AttentionTest, OfTwoWhoTakeAnEntryTheEarlierHasItAndTheOtherIsTold)
{
    one.Hear("Unit20");
    ExpectBoth({"Unit20 1"});
    const Entry seen = one.First();
    other.clock.Step(std::chrono::seconds(2));
    other.book->Take(seen); // stored first
    EXPECT_EQ(other.First().takenBy, "olga");
    one.book->Take(seen); // but this was earlier
    ExpectBoth({"Unit20 1 admin"});
    EXPECT_TRUE(other.told.contains("admin")) << other.told.toStdString();
    EXPECT_TRUE(one.told.isEmpty());
}

TEST_F(AttentionTest, NobodyEndsWhatHeHasNotSeen)
{
    one.Hear("Unit20");
    const Entry seen = one.First();
    Pass(10);
    other.Hear("Unit20");
    one.book->Finish(seen);
    ExpectBoth({"Unit20 2"});
    one.book->Take(seen);
    ExpectBoth({"Unit20 2"});
}

TEST_F(AttentionTest, OutlivesTheLogoff)
{
    one.Hear("Unit20");
    ExpectBoth({"Unit20 1"});
    one.session.Logoff();
    EXPECT_EQ(one.book->Entries().size(), 1U) << "still to be seen";
    other.book->Finish(other.First());
    other.Hear("Unit22");
    bool found = false;
    QObject::connect(one.book.get(), &AttentionBook::FoundOpen, [&] { found = true; });
    one.session.Logon(true, true);
    EXPECT_TRUE(found);
    ExpectBoth({"Unit22 1"});
}

// Both consoles heard the call while the server was away, and both operators took it.
TEST_F(AttentionTest, ServerAwayBothTakeIt)
{
    if (!TestServer::IsWanted())
        GTEST_SKIP() << "needs a server";
    TestServer::Get().StopAtOnce();
    one.Hear("Unit20");
    other.Hear("Unit20");
    Pass(3);
    other.book->Take(other.First());
    Pass(1);
    one.book->Take(one.First());
    EXPECT_EQ(one.First().takenBy, "admin");
    EXPECT_TRUE(one.First().takenAway);
    TestServer::Get().Start();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return one.log->WaitingActs().isEmpty() && other.log->WaitingActs().isEmpty(); }, 10000));
    ExpectBoth({"Unit20 1 olga away"});
    EXPECT_TRUE(one.told.contains("olga")) << one.told.toStdString();
}

} // namespace
