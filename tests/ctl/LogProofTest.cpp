// What somebody without the key does to a log is told by "log verify", on files and on a server.

#include "core/base/AppPaths.h"
#include "core/eventlog/ConsoleName.h"
#include "core/eventlog/LogKey.h"
#include "core/eventlog/RecordStore.h"
#include "ctl/CtlRun.h"
#include "dao/Workspace.h"
#include "dao/base/FileAccess.h"
#include "dao/postgresql/ServerSetup.h"
#include "support/Files.h"
#include "support/TestServer.h"

#include <QDir>
#include <QTemporaryDir>
#include <QUuid>
#include <gtest/gtest.h>
#include <libpq-fe.h>
#include <sqlite3.h>

namespace {

class ServerLogProof : public testing::Test {
protected:
    // 5 records of before there were chains, and 15 with them, of which some are sent twice.
    void SetUp() override
    {
        qputenv("XDG_DATA_HOME", m_folder.filePath("data").toUtf8());
        if (TestServer::IsWanted())
            m_target = TestServer::Get().Target("proof");
        ASSERT_EQ(RunWithPasswords({"db", "create", m_target}).code, 0);
        dao::MakePrivateFolder(AppPaths::DataFolder());
        m_console = ConsoleName(AppPaths::DataFolder(), 1);
        Store(1, 5, false);
        Store(6, 10, true);
        Store(8, 20, true);
    }

    // Log records may be changed and taken out; "saved" has them as they were.
    void Loosen() const
    {
        Sql("ALTER TABLE event DISABLE TRIGGER USER",
            "DROP TRIGGER event_no_update; DROP TRIGGER event_no_delete");
        Sql("CREATE TABLE saved AS SELECT * FROM event");
    }

    void TearDown() override
    {
        if (TestServer::IsWanted())
            dao::postgresql::DropServerDatabase(dao::postgresql::ServerAddress::Parse(m_target));
    }

    static QString TextOf(int number)
    {
        switch (number) {
        case 7:
            return "a" + QString(QChar::Null) + "b";
        case 9:
            return QString(254, 'x') + QString::fromUtf8("😀😀");
        case 12:
            return "lone " + QString(QChar(0xd800)) + " half";
        default:
            return QString("text %1").arg(number);
        }
    }

    void Store(int first, int last, bool proof, const QString& target = {})
    {
        const auto workspace =
            dao::OpenWorkspace(dao::LocationOf(target.isEmpty() ? m_target : target), "admin", "secret");
        const QString id = workspace->Database().Id();
        RecordStore store(
            RecordStore::Opener(), [&]() -> dao::Workspace& { return *workspace; }, id, nullptr,
            proof ? std::make_unique<LogProof>(AppPaths::DataFolder(), id) : nullptr);
        QList<LogRecord> records;
        for (int i = first; i <= last; ++i)
            records.append(
                {.id = QUuid::createUuidV5(QUuid(), QString::number(i)).toString(QUuid::WithoutBraces),
                 .time = QDateTime::fromMSecsSinceEpoch(1700000000123 + i * 1000, Qt::UTC),
                 .type = 2,
                 .desc = TextOf(i),
                 .from = "Unit20",
                 .to = {},
                 .operatorName = "admin",
                 .console = m_console,
                 .fromNumber = "2020",
                 .way = MessageWay::In});
        while (!records.isEmpty()) {
            const RecordStore::Outcome outcome = store.Store(records);
            ASSERT_FALSE(outcome.failure);
            ASSERT_TRUE(outcome.unstorable.isEmpty()) << outcome.unstorable.first().toStdString();
            records.remove(0, outcome.stored);
        }
    }

    // As somebody who may do anything to the database.
    void Sql(const QString& text, const QString& onFiles = {}) const
    {
        if (TestServer::IsWanted()) {
            PGconn* server = PQconnectdb(m_target.toUtf8().constData());
            PGresult* result = PQexec(server, ("SET search_path = kyn; " + text).toUtf8().constData());
            EXPECT_EQ(PQresultStatus(result), PGRES_COMMAND_OK)
                << PQerrorMessage(server) << text.toStdString();
            PQclear(result);
            PQfinish(server);
            return;
        }
        sqlite3* file = nullptr;
        sqlite3_open(m_target.toUtf8().constData(), &file);
        char* message = nullptr;
        EXPECT_EQ(sqlite3_exec(file, (onFiles.isEmpty() ? text : onFiles).toUtf8().constData(), nullptr,
                               nullptr, &message),
                  SQLITE_OK)
            << message << text.toStdString();
        sqlite3_close(file);
    }

    // Somebody who has read how it is done makes all chains anew, with a key of his own.
    void ChainWithAnotherKey() const
    {
        const auto workspace = dao::OpenWorkspace(dao::LocationOf(m_target), "admin", "secret");
        const LogChain other(QByteArray(32, 'k'), workspace->Database().Id());
        QString previous;
        QString changes;
        for (dao::EventRecord& record :
             dao::EventTable::ReadChained(workspace->Database(), 5, 1000000, 1000)) {
            previous = other.Next(previous, record);
            changes +=
                QString("UPDATE event SET chain = '%1' WHERE event_id = %2;").arg(previous).arg(record.id);
        }
        Sql(changes);
    }

    CtlRun Verify(const QStringList& options = {}, const QString& target = {}) const
    {
        return RunWithPasswords(QStringList{"log", "verify", target.isEmpty() ? m_target : target} + options);
    }

    static void Expect(const CtlRun& run, const QStringList& words, int code, const std::string& what)
    {
        EXPECT_EQ(run.code, code) << what << '\n' << run.out.toStdString() << run.err.toStdString();
        for (const QString& word : words)
            EXPECT_TRUE(run.out.contains(word.toUtf8()))
                << what << " lacks \"" << word.toStdString() << "\":\n"
                << run.out.toStdString();
    }

    QTemporaryDir m_folder;
    QString m_target = m_folder.filePath("proof.kyndb");
    QString m_console;
};

TEST_F(ServerLogProof, TellsWhatWasDoneWithoutTheKey)
{
    const QString insert =
        "INSERT INTO event (event_id, time_stamp, event_type, \"desc\", console, console_number, "
        "chain) SELECT %1, time_stamp, event_type, 'put in', console, %2, chain FROM event WHERE "
        "event_id = (SELECT max(event_id) FROM event WHERE console_number = 10)";
    const QString swap =
        "UPDATE event SET event_id = -1 WHERE console_number = 10; "
        "UPDATE event SET event_id = -2 WHERE console_number = 11; "
        "UPDATE event SET event_id = (SELECT event_id FROM saved WHERE console_number = 11) WHERE "
        "event_id = -1; "
        "UPDATE event SET event_id = (SELECT event_id FROM saved WHERE console_number = 10) WHERE "
        "event_id = -2";
    struct Case {
        const char* what;
        QString sql;
        QStringList words;
        int code = 1;
    };
    const QString wrong = "  WRONG: 1 record ";
    const std::vector<Case> cases{
        {"nothing",
         {},
         {"20 records, up to number 20, chained from number 6 on", "5 records older than the chain",
          "The log is whole"},
         0},
        {"older records are not protected",
         "UPDATE event SET \"desc\" = 'x' WHERE console_number = 3",
         {"5 records older"},
         0},
        {"text",
         "UPDATE event SET \"desc\" = 'x' WHERE console_number = 10",
         {wrong + "changed, or put in without the key, first: number 10 (record ", "NOT whole"}},
        {"time",
         "UPDATE event SET time_stamp = (SELECT time_stamp FROM saved WHERE console_number = 1) WHERE "
         "console_number = 20",
         {wrong + "changed, or put in without the key, first: number 20"}},
        {"operator",
         "UPDATE event SET operator = 'Bo' WHERE console_number = 6",
         {wrong + "changed, or put in without the key, first: number 6"}},
        {"direction",
         "UPDATE event SET direction = 2 WHERE console_number = 19",
         {wrong + "changed, or put in without the key, first: number 19"}},
        {"deleted",
         "DELETE FROM event WHERE console_number IN (10, 11)",
         {"  WRONG: 2 records taken out, first: number 10 (before record ",
          wrong + "behind a gap that cannot be proved, first: number 12"}},
        {"first one deleted",
         "DELETE FROM event WHERE console_number = 6",
         {wrong + "taken out, first: number 6"}},
        {"put in with a number that is there",
         insert.arg(900).arg(10),
         {wrong + "put in, first: number 10 (record 900"}},
        {"put in with the next number",
         insert.arg(900).arg(21),
         {wrong + "changed, or put in without the key, first: number 21 (record 900"}},
        {"put in without a console",
         "INSERT INTO event (event_id, time_stamp, event_type) SELECT 900, time_stamp, 2 FROM event WHERE "
         "console_number = 1",
         {"WRONG: 1 record of no console"}},
        {"swapped", swap, {wrong + "out of order, first: number 10"}},
        {"cut off",
         "DELETE FROM event WHERE console_number > 15",
         {"had come to number 20, says the console itself", "cut off"}},
        {"end exchanged",
         "DELETE FROM event WHERE console_number = 20; " + insert.arg(900).arg(20),
         {"says the console itself", "another record has this number now"}},
        {"check values exchanged",
         "UPDATE event SET chain = 'AAAAAAAA' || substr(chain, 9) WHERE chain IS NOT NULL",
         {"  WRONG: 15 records with another key, first: number 6"}},
        {"chain taken away",
         "UPDATE event SET chain = NULL WHERE console_number = 10",
         {wrong + "whose chain was taken away, or put in without one, first: number 10"}},
        {"chains taken away from the beginning",
         "UPDATE event SET chain = NULL WHERE console_number < 13",
         {"12 records older", wrong + "changed, or put in without the key, first: number 13"}},
        {"a restore that nobody with a key has made",
         "DELETE FROM event WHERE console_number > 15; INSERT INTO event (event_id, time_stamp, event_type, "
         "\"desc\", console, console_number, chain) SELECT 900, time_stamp, 2, 'Restored from a backup: x', "
         "'a-b-0', 1, chain FROM saved WHERE console_number = 20",
         {"NOT PROVEN", "cut off"}},
    };
    Loosen();
    for (const Case& one : cases) {
        if (!one.sql.isEmpty())
            Sql(one.sql);
        Expect(Verify(), one.words, one.code, one.what);
        Sql("DELETE FROM event; INSERT INTO event SELECT * FROM saved");
    }
    ChainWithAnotherKey();
    Expect(Verify(), {"  WRONG: 15 records with another key, first: number 6"}, 1,
           "all chains of another key");
}

TEST_F(ServerLogProof, ReceiptBackupAndRestore)
{
    const QString receipt = m_folder.filePath("receipt.txt");
    ASSERT_EQ(RunWithPasswords({"log", "receipt", m_target, receipt}).code, 0);
    WriteFile(receipt, ReadFile(receipt).toUpper().replace(m_console.toUpper().toUtf8(),
                                                           m_console.toUtf8())); // typed by a person
    const QString backups = m_folder.filePath("backups");
    const CtlRun backup = RunWithPasswords({"db", "backup", m_target, backups});
    ASSERT_EQ(backup.code, 0) << backup.err.toStdString();
    Expect(Verify({"--receipt", receipt, "--backup", backups}), {"The log is whole"}, 0, "both agree");

    Loosen();
    // Whoever has the account's folder as well can do anything, but not elsewhere.
    const QDir data(AppPaths::DataFolder());
    const QString head = data.filePath(data.entryList({"*.head"}).value(0));
    const QByteArray kept = ReadFile(head);
    QFile::remove(head);
    Sql("DELETE FROM event WHERE console_number = 20");
    Expect(Verify(), {"The log is whole"}, 0, "nobody says how far it had come");
    Expect(Verify({"--receipt", receipt}), {"had come to number 20, says the receipt receipt.txt", "cut off"},
           1, "receipt");
    Expect(Verify({"--backup", backups}), {"had come to number 20, says the backup proof-", "cut off"}, 1,
           "backup");
    Sql("DELETE FROM event; INSERT INTO event SELECT * FROM saved");
    WriteFile(head, kept);

    Store(21, 23, true);
    const QString restored = m_folder.filePath("restored.kyndb");
    const QString generation =
        backups + '/' + QDir(backups).entryList(QDir::Dirs | QDir::NoDotAndDotDot).value(0);
    const CtlRun restore = RunWithPasswords({"db", "restore", generation, restored});
    ASSERT_EQ(restore.code, 0) << restore.err.toStdString();
    Expect(Verify({}, restored),
           {"had come to number 23, says the console itself", "not there since the restore",
            "the backup had come to number 20", "The log is whole"},
           0, "restored");
    Store(24, 24, true, restored); // number 21 there
    Expect(Verify({}, restored), {"before its numbers went down", "not there since the restore"}, 0,
           "goes on");

    // Another account has neither key nor heads.
    const QString key = m_folder.filePath("key");
    QFile::copy(LogKey::FileIn(AppPaths::DataFolder()), key);
    qputenv("XDG_DATA_HOME", m_folder.filePath("other").toUtf8());
    Expect(Verify(), {"NOT CHECKED: its key (", "Nothing could be checked but the numbers"}, 1,
           "without a key");
    Expect(Verify({"--key", key}), {"The log is whole"}, 0, "with the key of another account");
}

TEST_F(ServerLogProof, AKeyThatOthersMayReadProvesNothing)
{
    const QString key = LogKey::FileIn(AppPaths::DataFolder());
    EXPECT_EQ(static_cast<int>(QFile::permissions(key)) & 0x77, 0);
    QFile::setPermissions(key, QFile::permissions(key) | QFile::ReadGroup);
    Store(21, 22, true); // stored nevertheless
    Expect(Verify(), {"WRONG: 2 records whose chain was taken away, or put in without one, first: number 21"},
           1, "unchained");
    QFile::setPermissions(key, QFile::ReadOwner | QFile::WriteOwner);
    Store(23, 23, true);
    Expect(Verify(), {"23 records", "WRONG: 2 records whose chain"}, 1,
           "goes on behind the last one with a chain");
}

} // namespace
