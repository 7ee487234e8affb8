// Where log records wait for their database.

#include "core/eventlog/EventSpool.h"
#include "core/texts/Errors.h"
#include "support/Files.h"
#include "support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

LogRecord Record(const QString& id)
{
    return {id, QDateTime::fromMSecsSinceEpoch(0, Qt::UTC), 2, "text " + id, "Car 1", "200"};
}

QStringList Ids(const EventSpool& spool)
{
    QStringList ids;
    for (const LogRecord& record : spool.Records())
        ids.append(record.id);
    return ids;
}

TEST(EventSpool, TakesOverWhatConsolesThatAreGoneHaveLeft)
{
    const QTemporaryDir folder;
    EventSpool first(folder.path(), "db");
    {
        EventSpool second(folder.path(), "db");
        EventSpool third(folder.path(), "db");
        first.Append({Record("1")});
        second.Append({Record("2")});
        third.Append({Record("3")});
    }
    // The process of this number runs, but is no console; and the computer has had another name.
    WriteFile(folder.filePath("log-db-2.waiting.lock"), "1\nveltorkyn\nelsewhere\n\n");
    EventSpool next(folder.path(), "db");
    EXPECT_EQ(Ids(next), QStringList({"2", "3"})) << "not those of a console that is there";
    next.Clear();
    EXPECT_EQ(Ids(first), QStringList("1"));
    EXPECT_EQ(QDir(folder.path()).entryList({"*.waiting"}), QStringList("log-db-1.waiting"));
}

TEST(EventSpool, ForgetsNothingThatItCannotClear)
{
    const QTemporaryDir folder;
    EventSpool spool(folder.path(), "db");
    spool.Append({Record("1")});
    const QString file = folder.filePath("log-db-1.waiting");
    ASSERT_TRUE(QFile::remove(file) && QDir().mkdir(file)); // a folder is no file to be removed
    EXPECT_THROW(spool.Clear(), Error);
    EXPECT_EQ(Ids(spool), QStringList("1"));
    ASSERT_TRUE(QDir().rmdir(file));
    spool.Clear();
    EXPECT_EQ(Ids(spool), QStringList());
}

// A record that nobody knows how to store is told of, and neither stored as another nor taken for done.
TEST(EventSpool, TakesNoRecordThatItDoesNotKnow)
{
    const QByteArray known[] = {
        R"({"id":"1","regroup":{"kind":4,"group":7,"pos":255}})",
        R"({"id":"1","time":"2026-01-01T12:00:00.000Z","attention":{"act":3,"kind":4,"messageType":3}})"};
    const std::pair<const char*, const char*> changes[] = {
        {"\"kind\":4", "\"kind\":5"},      {"\"kind\":4", "\"kind\":\"4\""},
        {"\"pos\":255", "\"pos\":256"},    {"\"act\":3", "\"act\":4"},
        {"\"act\":3", "\"act\":0"},        {"\"messageType\":3", "\"messageType\":-1"},
        {":{", ":{\"kind\":4},\"also\":{"}};
    for (const QByteArray& line : known) {
        const auto record = ParseLine(line);
        ASSERT_TRUE(record) << line.constData();
        EXPECT_EQ(LineOf(*ParseLine(LineOf(*record))), LineOf(*record));
        for (const auto& [from, to] : changes) {
            QByteArray changed = line;
            if (changed.replace(from, to) != line) {
                EXPECT_FALSE(ParseLine(changed)) << changed.constData();
            }
        }
    }
}

} // namespace
