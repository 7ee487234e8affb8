// Log records on files that are slow, locked, gone or replaced, stored by lanes of their own.

#include "core/eventlog/EventLog.h"
#include "core/texts/StringSourceImpl.h"
#include "dao/Workspace.h"
#include "dao/tables/RegroupActTable.h"
#include "support/Files.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <QFile>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

class EventLogLanes : public testing::Test {
protected:
    QStringList Append(EventLog& log, int first, int last) const
    {
        QStringList ids;
        for (int i = first; i <= last; ++i)
            ids.append(log.AppendLogRecord(time, EventType::Text, QString::number(i), "Car 1", "200"));
        return ids;
    }

    static bool AllSafe(const EventLog& log, const QStringList& ids)
    {
        return std::all_of(ids.begin(), ids.end(), [&](const QString& id) { return log.IsSafe(id); });
    }

    // What is stored, each description by its number.
    QStringList Stored() const
    {
        QStringList texts;
        const auto workspace = database.Open();
        const auto rows = workspace->Database().OpenSnapshot("select \"desc\" from event order by event_id");
        for (; !rows->Eof(); rows->MoveNext())
            texts.append(rows->Field("desc").toString());
        return texts;
    }

    static QStringList Numbers(int last)
    {
        QStringList numbers;
        for (int i = 1; i <= last; ++i)
            numbers.append(QString::number(i));
        return numbers;
    }

    QString File() const { return database.location.database; }

    const QDateTime time = QDateTime::currentDateTimeUtc();
    CStringSourceImpl strings{QStringList{}};
    TestDatabase database;
    TestSession session{database};
    QTemporaryDir folder;
};

TEST_F(EventLogLanes, StoreInOrderAndOutliveALockedFile)
{
    if (TestServer::IsWanted())
        GTEST_SKIP() << "files only";
    EventLog log(session, strings, folder.path(), Lane::Kind::OwnThread);
    QStringList told;
    QObject::connect(&log, &EventLog::Delayed, [&](const QString& text) { told.append(text); });
    QStringList ids = Append(log, 1, 50);
    EXPECT_FALSE(AllSafe(log, ids)) << "nobody has waited for it";
    EXPECT_TRUE(QTest::qWaitFor([&] { return AllSafe(log, ids) && log.Waiting() == 0; }, 5000));

    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(File().toUtf8().constData(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    ids = Append(log, 51, 70);
    EXPECT_TRUE(QTest::qWaitFor([&] { return AllSafe(log, ids); }, 3000)) << "in the spool file";
    EXPECT_TRUE(QTest::qWaitFor([&] { return !log.Cause().isEmpty(); }, 10000));
    EXPECT_EQ(told.size(), 1) << told.join(u'\n').toStdString();
    EXPECT_EQ(log.Waiting(), 20);
    EXPECT_EQ(log.WaitingRecords().size(), 20);
    sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(other);
    EXPECT_TRUE(QTest::qWaitFor([&] { return log.Waiting() == 0; }, 10000));
    EXPECT_EQ(Stored(), Numbers(70));
    EXPECT_EQ(log.Cause(), QString());
}

TEST_F(EventLogLanes, ReachTheirOwnDatabaseOnlyWhateverStandsInItsPlace)
{
    if (TestServer::IsWanted())
        GTEST_SKIP() << "files only";
    EventLog log(session, strings, folder.path(), Lane::Kind::OwnThread);
    QStringList ids = Append(log, 1, 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return AllSafe(log, ids); }, 5000));

    const TestDatabase stranger;
    const QString kept = File() + ".kept";
    ASSERT_TRUE(QFile::copy(File(), kept) && QFile::remove(File()));
    ids = Append(log, 2, 2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return AllSafe(log, ids) && !log.Cause().isEmpty(); }, 5000))
        << "deleted";
    ASSERT_TRUE(QFile::copy(stranger.location.database, File()));
    ids = Append(log, 3, 3);
    EXPECT_TRUE(QTest::qWaitFor([&] { return AllSafe(log, ids); }, 5000)) << "replaced";
    log.WriteWaiting();
    EXPECT_EQ(log.Waiting(), 2);
    ASSERT_TRUE(QFile::remove(File()) && QFile::rename(kept, File()));
    EXPECT_TRUE(QTest::qWaitFor([&] { return log.Waiting() == 0; }, 10000)) << log.Cause().toStdString();
    EXPECT_EQ(Stored(), Numbers(3));
}

TEST_F(EventLogLanes, WhatWaitedAtTheEndIsStoredAtTheNextLogon)
{
    if (TestServer::IsWanted())
        GTEST_SKIP() << "files only";
    ASSERT_TRUE(QFile::rename(File(), File() + ".away"));
    EventLog log(session, strings, folder.path(), Lane::Kind::OwnThread);
    Append(log, 1, 3);
    session.Logoff();
    EXPECT_EQ(log.Left(), 3);
    ASSERT_TRUE(QFile::rename(File() + ".away", File()));
    session.Logon(true, true);
    log.WriteWaiting();
    EXPECT_EQ(log.Left(), 0);
    const QStringList ids = Append(log, 4, 4);
    EXPECT_TRUE(QTest::qWaitFor([&] { return AllSafe(log, ids) && log.Waiting() == 0; }, 10000));
    EXPECT_EQ(Stored(), Numbers(4));
}

// Two consoles of one account, with records that come together and one that no database takes, and another
// operator after a restart: each console counts its own, in order and without a gap.
TEST_F(EventLogLanes, CountTheRecordsOfEachConsole)
{
    database.AddOperator("Anna", "pw");
    for (const char* operatorName : {TestDatabase::userName, "Anna"}) {
        if (operatorName != QLatin1String(TestDatabase::userName)) {
            session.Logoff();
            session.logonName = operatorName;
            session.logonPassword = "pw";
            session.Logon(true, true);
        }
        EventLog first(session, strings, folder.path(), Lane::Kind::OwnThread);
        TestSession otherSession(database);
        EventLog second(otherSession, strings, folder.path(), Lane::Kind::OwnThread);
        QStringList ids = Append(first, 1, 20);
        ids += first.AppendLogRecord({}, EventType::Text, "refused: no time", "Car 1", "200");
        ids += Append(first, 21, 30);
        EXPECT_TRUE(QTest::qWaitFor([&] { return AllSafe(first, ids); }, 10000)); // it has taken its number
        ids = Append(second, 1, 20);
        EXPECT_TRUE(QTest::qWaitFor([&] { return AllSafe(second, ids); }, 10000));
    }
    QHash<QString, int> counts;
    QStringList operators;
    const auto workspace = database.Open();
    const auto rows = workspace->Database().OpenSnapshot("select * from event order by event_id");
    for (; !rows->Eof(); rows->MoveNext()) {
        const QString console = rows->Field("console").toString();
        EXPECT_EQ(rows->Field("console_number").toInt(), ++counts[console]) << console.toStdString();
        if (counts[console] % 30 == 0)
            operators.append(rows->Field("operator").toString());
    }
    QList<int> numbers = counts.values();
    std::sort(numbers.begin(), numbers.end());
    EXPECT_EQ(numbers, QList<int>({40, 60}));
    EXPECT_EQ(operators, QStringList({TestDatabase::userName, "Anna", TestDatabase::userName}));
}

// A radio in a group and out of it while the file is locked, in turn with the records, left to the next logon
// and sent again: nothing is stored twice, over what somebody else has stored since.
TEST_F(EventLogLanes, StoreRegroupsInTurnAndOnce)
{
    if (TestServer::IsWanted())
        GTEST_SKIP() << "files only";
    const auto run = [&](const QString& sql) {
        sqlite3* other = nullptr;
        EXPECT_EQ(sqlite3_open(File().toUtf8().constData(), &other), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(other, sql.toUtf8().constData(), nullptr, nullptr, nullptr), SQLITE_OK);
        return other;
    };
    const auto add = [&](const char* query, std::initializer_list<std::pair<const char*, QVariant>> values) {
        const auto definition = session.Database().QueryDef(query);
        for (const auto& [name, value] : values)
            definition->SetParameter(name, value);
        definition->Execute();
    };
    for (const int id : {1, 2, 3}) {
        const auto rows = session.Database().OpenTable("address");
        rows->AddNew();
        rows->SetField("address_id", id);
        rows->SetField("callsign", QString("Entry%1").arg(id));
        rows->SetField("IDENT", QString::number(id));
        rows->SetField("Type", id == 3 ? 1 : 2);
        rows->Update();
    }
    session.Changes().TellOwn("address");
    EXPECT_EQ(session.Memory().Addresses().Size(), 3U);
    const auto groups = [&] {
        QStringList rows;
        const auto stored = session.Database().OpenSnapshot("dynamic_regroup");
        for (; !stored->Eof(); stored->MoveNext())
            rows.append(stored->Field("group_id").toString());
        return rows.join(' ');
    };
    for (const char* request : {"first", "second"})
        add("add_regroup_request", {{"id", request}, {"gi", 2}, {"mi", 3}, {"p", 4}});
    using Kind = RegroupChange::Kind;
    const RegroupChange entered{Kind::Entered, 1, 0, 3, 4, "first"};
    const RegroupChange moved{Kind::Moved, 2, 1, 3, 4, "second"};
    QByteArray left;
    {
        sqlite3* other = run("BEGIN EXCLUSIVE");
        EventLog log(session, strings, folder.path(), Lane::Kind::OwnThread);
        QStringList ids = Append(log, 1, 1);
        ids += log.AppendRegroup(time, entered);
        ids += log.AppendRegroup(time.addSecs(60), moved);
        ids += Append(log, 2, 2);
        EXPECT_TRUE(QTest::qWaitFor([&] { return AllSafe(log, ids); }, 3000)) << "in the spool file";
        session.Changes().Tell("dynamic_regroup"); // cannot be read now, and has to be read again later
        ASSERT_EQ(session.Memory().Regroupings().size(), 1U);
        EXPECT_EQ(session.Memory().Regroupings().front().groupId, 2);
        left = ReadFile(folder.filePath("log-%1-1.waiting").arg(session.Database().Id()));
        sqlite3_close(other);
    }
    for (int logon = 0; logon < 2; ++logon) {
        WriteFile(folder.filePath("log-%1-1.waiting").arg(session.Database().Id()), left);
        EventLog log(session, strings, folder.path(), Lane::Kind::OwnThread);
        QStringList refused;
        QObject::connect(&log, &EventLog::Refused,
                         [&](const QString&, const QString& text) { refused.append(text); });
        log.WriteWaiting();
        EXPECT_TRUE(QTest::qWaitFor([&] { return log.Waiting() == 0 && Stored() == Numbers(2); }, 10000));
        EXPECT_EQ(groups(), logon == 0 ? "2" : "1") << logon;
        EXPECT_TRUE(session.Database().OpenSnapshot("regroup_request")->Eof());
        QStringList acts; // who has done what: once, however often the file is read
        for (const auto& act : dao::RegroupActTable::Newest(session.Database(), 3, 10))
            acts.append(act.member + ' ' + act.oldGroup + '>' + act.group + ' ' + act.operatorName);
        EXPECT_EQ(acts.join(", ").toStdString(),
                  "Entry3 Entry1>Entry2 " + session.Workspace().UserName().toStdString() +
                      ", Entry3 >Entry1 " + session.Workspace().UserName().toStdString());
        if (logon == 1) { // a request that somebody has ended is a change that was stored
            log.AppendRegroup(time, {Kind::Moved, 2, 2, 3, 4, {}});
            EXPECT_TRUE(QTest::qWaitFor([&] { return !refused.isEmpty(); }, 5000));
            EXPECT_TRUE(refused.value(0).startsWith("The radio Entry3 holds the group Entry2 at position 4"));
        }
        const auto row = session.Database().OpenTable("dynamic_regroup"); // at another console
        row->Edit();
        row->SetField("group_id", 1);
        row->Update();
    }
}

} // namespace
