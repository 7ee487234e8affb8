// What a console keeps of the log records that it has stored.

#include "core/eventlog/EventLog.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSourceImpl.h"
#include "core/texts/TextIds.h"
#include "support/Files.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <QDir>
#include <QLocale>
#include <QUuid>
#include <gtest/gtest.h>

namespace {

QDateTime Minute(int minute)
{
    return QDateTime::fromMSecsSinceEpoch(60000LL * minute, Qt::UTC);
}

LogRecord Record(int number)
{
    return {QUuid::createUuidV5(QUuid(), QString::number(number)).toString(QUuid::WithoutBraces),
            Minute(number),
            2,
            QString("text %1\n\"ä\"").arg(number),
            "Car 1",
            "200"};
}

QList<LogRecord> Records(int first, int last)
{
    QList<LogRecord> records;
    for (int number = first; number <= last; ++number)
        records.append(Record(number));
    return records;
}

QStringList Ids(const QList<LogRecord>& records)
{
    QStringList ids;
    for (const LogRecord& record : records)
        ids.append(record.id);
    return ids;
}

TEST(StoredRecords, AreTheLastOnesAndLeaveMarksOfOlderOnes)
{
    const QTemporaryDir folder;
    for (int run = 0; run < 5; ++run) { // each goes on where the last one has ended
        StoredRecords stored(folder.path(), "db", 10);
        if (run == 0)
            stored.AddOlder({Record(0).id, Minute(0)});
        stored.SetServer(QString("server %1").arg(run));
        for (int number = 9 * run + 1; number <= 9 * run + 9; ++number)
            stored.Add({Record(number)});
    }
    const StoredRecords stored(folder.path(), "db", 10);
    EXPECT_EQ(stored.Server(), "server 4");
    const StoredRecords::Content content = stored.Read();
    EXPECT_EQ(Ids(content.records), Ids(Records(31, 45)));
    EXPECT_EQ(content.records.last().desc, Record(45).desc);
    ASSERT_EQ(content.older.size(), 4);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(content.older[i].recordId, Record(10 * i).id) << i;
    EXPECT_EQ(content.older[3].time, Minute(30));
    const QFile::Permissions others =
        QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    for (const QString& file : QDir(folder.path()).entryList({"*.stored", "*.old"}))
        EXPECT_EQ(QFile::permissions(folder.filePath(file)) & others, QFile::Permissions())
            << file.toStdString();
}

TEST(StoredRecords, SurviveBeingCutAnywhere)
{
    const QTemporaryDir folder;
    {
        StoredRecords stored(folder.path(), "db");
        stored.SetServer("server");
        stored.Add(Records(1, 3));
    }
    const QString file = folder.filePath("log-db-1.stored");
    const QByteArray whole = ReadFile(file);
    for (qsizetype length = 0; length <= whole.size(); ++length) {
        WriteFile(file, whole.left(length) + (length % 2 ? QByteArray(16, '\0') : QByteArray()));
        StoredRecords stored(folder.path(), "db");
        stored.Add(Records(4, 4));
        const qsizetype wholeLines = whole.left(length).count('\n');
        const QStringList ids = Ids(stored.Read().records);
        ASSERT_EQ(ids.last(), Record(4).id) << length;
        ASSERT_GE(ids.size(), wholeLines) << "of which the first is the server's; cut at " << length;
        ASSERT_EQ(ids, Ids(Records(1, static_cast<int>(ids.size()) - 1) + Records(4, 4))) << length;
    }
}

// On a server that has taken over: what it has of the records kept here decides what is sent and said.
TEST(ServerStoredRecords, ThatAreMissingAreSentAgainAndOlderOnesAreSpokenOf)
{
    if (!TestServer::IsWanted())
        GTEST_SKIP() << "needs a server";
    struct Case {
        QList<int> older; // numbers of records; the server has 1, 2 and 3
        QList<int> kept;
        const char* said; // without the first sentence
    };
    const Case cases[] = {
        {{}, {2, 3}, nullptr},
        {{1}, {2, 3, 4, 5}, "2"},
        {{1}, {5, 6}, "2"}, // 1 was the last before them
        {{}, {5}, "1"},     // there was none before
        {{1, 3, 7, 8}, {9, 10}, "2 from 3 to 9"},
        {{7}, {9}, "1 to 9"},
    };
    const QLocale locale;
    const auto shown = [&](int minute) {
        const QDateTime time = Minute(minute).toLocalTime();
        return locale.toString(time.date(), QLocale::ShortFormat) + time.toString(" HH:mm:ss");
    };
    CStringSourceImpl strings{QStringList{}};
    for (const Case& one : cases) {
        const TestDatabase database;
        TestSession session(database);
        const QTemporaryDir folder;
        const QString id = session.Database().Id();
        RecordStore store(
            {}, [&]() -> dao::Workspace& { return session.Workspace(); }, id);
        for (const LogRecord& record : Records(1, 3))
            store.Store({record});
        {
            StoredRecords stored(folder.path(), id);
            stored.SetServer("another");
            for (const int number : one.older)
                stored.AddOlder({Record(number).id, Minute(number)});
            for (const int number : one.kept)
                stored.Add({Record(number)});
        }
        QStringList told;
        EventLog log(session, strings, folder.path(), Lane::Kind::OwnThread);
        QObject::connect(&log, &EventLog::StoredAgain, [&](const QString& text) { told.append(text); });
        const QString last = log.AppendLogRecord(Minute(99), EventType::Text, "last", "Car 1", "200");
        ASSERT_TRUE(QTest::qWaitFor([&] { return log.IsSafe(last); }, 5000));
        QList<LogRecord> expected = Records(1, 3);
        for (const int number : one.kept)
            if (number > 3)
                expected.append(Record(number));
        QStringList texts;
        const auto rows = session.Database().OpenSnapshot("select \"desc\" from event order by event_id");
        for (; !rows->Eof(); rows->MoveNext())
            texts.append(rows->Field("desc").toString());
        ASSERT_EQ(texts.size(), expected.size() + 1) << one.said;
        for (qsizetype i = 0; i < expected.size(); ++i)
            EXPECT_EQ(texts[i], expected[i].desc) << one.said;
        EXPECT_EQ(texts.last(), "last");
        EXPECT_EQ(told.size(), one.said ? 1 : 0);
        if (!one.said)
            continue;
        const QStringList words = QString(one.said).split(' ');
        QString text = FormatMessage(strings, CoreText::ServerChanged, {words[0]});
        if (words.size() == 5)
            text += ' ' + FormatMessage(strings, CoreText::OlderMissingFrom,
                                        {shown(words[2].toInt()), shown(words[4].toInt())});
        else if (words.size() == 3)
            text += ' ' + FormatMessage(strings, CoreText::OlderMissing, {shown(words[2].toInt())});
        EXPECT_EQ(told.value(0), text);
    }
}

} // namespace
