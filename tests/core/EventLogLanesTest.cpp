// Log records on files that are slow, locked, gone or replaced, stored by lanes of their own.

#include "core/eventlog/EventLog.h"
#include "core/texts/StringSourceImpl.h"
#include "dao/Workspace.h"
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
    EXPECT_TRUE(QTest::qWaitFor([&] { return AllSafe(log, ids); }, 5000));

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
    {
        EventLog log(session, strings, folder.path(), Lane::Kind::OwnThread);
        Append(log, 1, 3);
    }
    ASSERT_TRUE(QFile::rename(File() + ".away", File()));
    EventLog log(session, strings, folder.path(), Lane::Kind::OwnThread);
    log.WriteWaiting();
    const QStringList ids = Append(log, 4, 4);
    EXPECT_TRUE(QTest::qWaitFor([&] { return AllSafe(log, ids) && log.Waiting() == 0; }, 10000));
    EXPECT_EQ(Stored(), Numbers(4));
}

} // namespace
