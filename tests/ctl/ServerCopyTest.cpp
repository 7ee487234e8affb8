// A database that moves to a server and back.

#include "ctl/CtlRun.h"
#include "dao/Backup.h"
#include "dao/Workspace.h"
#include "dao/postgresql/ServerSetup.h"
#include "support/QtPrinters.h"
#include "support/TestServer.h"

#include <QFile>
#include <QTemporaryDir>
#include <QUuid>
#include <gtest/gtest.h>

namespace {

class ServerCopy : public testing::Test {
protected:
    void SetUp() override
    {
        if (!TestServer::IsWanted())
            GTEST_SKIP() << "needs a server";
        m_server = TestServer::Get().Target("site");
        ASSERT_EQ(RunWithPasswords({"db", "create", m_file, "--admin", "Ada"}).code, 0);
        const QStringList bo{"user", "add", m_file, "Bo", "--as", "Ada", "--group", "Operators"};
        ASSERT_EQ(RunWithPasswords(bo, "secret\npw\n").code, 0);
        Fill();
    }

    void TearDown() override
    {
        if (!m_server.isEmpty())
            dao::postgresql::DropServerDatabase(dao::postgresql::ServerAddress::Parse(m_server));
    }

    void Fill() const
    {
        const auto workspace = dao::OpenWorkspace(dao::LocationOf(m_file), "Ada", "secret");
        const auto add = [&](const char* table, const QVariantMap& fields) {
            const auto records = workspace->Database().OpenTable(table);
            records->AddNew();
            for (auto field = fields.begin(); field != fields.end(); ++field)
                records->SetField(field.key(), field.value());
            records->Update();
        };
        for (int i = 1; i <= 120; ++i)
            add("address", {{"callsign", QString("Ünit%1").arg(i)},
                            {"IDENT", QString::number(i)},
                            {"Type", 1 + i % 2},
                            {"dynamic", i % 3 == 0},
                            {"note", i % 5 == 0 ? QVariant() : QVariant("a\nb")}});
        const auto drop = workspace->Database().QueryDef("drop_address");
        drop->SetParameter("id", 120); // an id that is not to come again
        drop->Execute();
        add("status", {{"status_code", 31}, {"in_desc", "Ω 😀"}});
        add("dynamic_regroup", {{"group_id", 1}, {"member_id", 2}, {"pos", 16}});
        add("fleet", {{"fleet_name", "Taxi"},
                      {"fleet_type", 1},
                      {"digits", 2},
                      {"prefix", 1},
                      {"base_ident", 2},
                      {"max_ident", 30}});
        add("kyn_registry", {{"Key", "ANN_FPP"}, {"Value", ""}});
        workspace->BeginTrans();
        for (int i = 0; i < 4500; ++i) { // more than a page
            QVariantMap fields{{"time_stamp", QDateTime::fromMSecsSinceEpoch(1700000000123 + i * 7, Qt::UTC)},
                               {"event_type", i % 4},
                               {"desc", QString("text %1").arg(i) + (i == 7 ? QChar::Null : QChar('.'))},
                               {"from_address", "A"}};
            if (i >= 100) // older ones have none of it
                fields.insert(
                    {{"record_id",
                      QUuid::createUuidV5(QUuid(), QString::number(i)).toString(QUuid::WithoutBraces)},
                     {"console", "desk 1"},
                     {"operator", "Ada"},
                     {"console_number", i},
                     {"chain", QString("link %1").arg(i)}});
            add("event", fields);
        }
        workspace->CommitTrans();
    }

    // Everything that callers can see, in one text.
    // A restore adds a record of its own to the log.
    static QString Contents(const QString& target, bool restored = false)
    {
        const auto workspace = dao::OpenWorkspace(dao::LocationOf(target), "Ada", "secret");
        QString contents = workspace->Database().Id() + '\n';
        for (const char* table :
             {"address", "status", "event", "dynamic_regroup", "fleet", "user_profile", "kyn_registry"}) {
            const auto records = workspace->Database().OpenTable(table);
            qsizetype last = contents.size();
            for (; !records->Eof(); records->MoveNext()) {
                last = contents.size();
                for (const QString& field : records->FieldNames()) {
                    const QVariant value = records->Field(field);
                    contents += value.isValid() ? value.toString() + (value.typeId() == QMetaType::QDateTime
                                                                          ? value.toTime().toString("zzz")
                                                                          : QString())
                                                : QString("null");
                    contents += '|';
                }
            }
            if (restored && QByteArrayView(table) == "event")
                contents.truncate(last);
        }
        for (const QString& user : workspace->Users().Names())
            contents += user + ':' + workspace->Users().Item(user)->Pid() + ':' +
                        workspace->Users().Item(user)->Groups().Names().join(',') + '\n';
        return contents + workspace->Groups().Names().join(',');
    }

    CtlRun Copy(const QString& from, const QString& to, const QByteArray& password = "secret\n") const
    {
        return RunWithPasswords({"db", "copy", from, to, "--as", "Ada"}, password);
    }

    static bool BoCanLogOn(const QString& target, const QString& password)
    {
        try {
            dao::OpenWorkspace(dao::LocationOf(target), "Bo", password);
            return true;
        } catch (const dao::Error& error) {
            EXPECT_EQ(error.kind, dao::Kind::WrongPassword) << error.what();
            return false;
        }
    }

    QTemporaryDir m_folder;
    const QString m_file = m_folder.filePath("site.kyndb");
    QString m_server;
};

TEST_F(ServerCopy, MovesEverythingToAServerAndBack)
{
    const CtlRun there = Copy(m_file, m_server);
    ASSERT_EQ(there.code, 0) << there.err.toStdString();
    EXPECT_TRUE(there.out.contains("event\t4500") &&
                there.out.contains("Need a new password from an administrator: Bo"))
        << there.out.toStdString();
    const QString contents = Contents(m_file).replace(QChar::Null, QChar(0x2400)); // no server holds it
    EXPECT_TRUE(Contents(m_server) == contents);
    EXPECT_EQ(RunCtl({"db", "check", m_server}).out, (m_server + ": no problems found\n").toUtf8());
    EXPECT_EQ(RunCtl({"db", "migrate", m_server}).code, 0);

    // Bo has no password until one is set.
    EXPECT_FALSE(BoCanLogOn(m_server, "pw") || BoCanLogOn(m_server, ""));
    const QStringList password{"user", "password", m_server, "Bo", "--as", "Ada"};
    EXPECT_EQ(RunWithPasswords(password, "secret\nnew\n").code, 0);
    EXPECT_TRUE(BoCanLogOn(m_server, "new"));
    EXPECT_TRUE(RunWithPasswords({"user", "list", m_server, "--as", "Ada"})
                    .out.contains("Bo\tBo\tOperators,Users\tno\tno"));

    const QString back = m_folder.filePath("back.kyndb");
    const CtlRun again = Copy(m_server, back);
    ASSERT_EQ(again.code, 0) << again.err.toStdString();
    EXPECT_TRUE(Contents(back) == contents);
    EXPECT_EQ(RunCtl({"db", "check", back}).code, 0);
    EXPECT_FALSE(BoCanLogOn(back, "new") || BoCanLogOn(back, ""));
    for (const QString& target : {m_server, back}) { // the dropped entry's id is not given again
        const auto workspace = dao::OpenWorkspace(dao::LocationOf(target), "Ada", "secret");
        const auto address = workspace->Database().OpenTable("address");
        address->AddNew();
        address->SetField("callsign", "Next");
        address->SetField("IDENT", "next");
        address->SetField("Type", 1);
        address->Update();
        address->SetIndex("i_callsign");
        address->Seek(QString("next"));
        EXPECT_EQ(address->Field("address_id").toInt(), 121);
    }
}

// A server is lost: what was backed up comes back on another, or in files.
TEST_F(ServerCopy, IsBackedUpAndRestored)
{
    ASSERT_EQ(Copy(m_file, m_server).code, 0);
    const QStringList password{"user", "password", m_server, "Bo", "--as", "Ada"};
    ASSERT_EQ(RunWithPasswords(password, "secret\nnew\n").code, 0);
    const QString contents = Contents(m_server);
    const QString backups = m_folder.filePath("backups");
    const CtlRun made = RunWithPasswords({"db", "backup", m_server, backups, "--as", "Ada"});
    ASSERT_EQ(made.code, 0) << made.err.toStdString();
    EXPECT_TRUE(made.out.contains("event\t4500\n") &&
                made.out.contains("restore to a server brings back: Bo\n"))
        << made.out.toStdString();
    const QString backup = dao::GenerationsIn(backups, dao::LocationOf(m_server)).value(0).path;
    dao::postgresql::DropServerDatabase(dao::postgresql::ServerAddress::Parse(m_server));

    const auto restore = [&](const QString& to, const QByteArray& secret = "secret\n") {
        return RunWithPasswords({"db", "restore", backup, to, "--as", "Ada"}, secret);
    };
    EXPECT_EQ(restore(m_server, "wrong\n").code, 1);
    const CtlRun restored = restore(m_server);
    ASSERT_EQ(restored.code, 0) << restored.err.toStdString();
    EXPECT_EQ(Contents(m_server, true), contents);
    EXPECT_TRUE(BoCanLogOn(m_server, "new"));
    EXPECT_EQ(RunCtl({"db", "check", m_server}).code, 0);
    ExpectFailure(restore(m_server), "already exists");
    const CtlRun recovered = RunWithPasswords({"user", "recover", m_server, "bo"}, "newer\n");
    EXPECT_EQ(recovered.code, 0) << recovered.err.toStdString();
    EXPECT_TRUE(!BoCanLogOn(m_server, "new") && BoCanLogOn(m_server, "newer"));

    const QString file = m_folder.filePath("restored.kyndb");
    ASSERT_EQ(restore(file).code, 0);
    EXPECT_EQ(Contents(file, true), contents);
    EXPECT_FALSE(BoCanLogOn(file, "new"));
}

TEST_F(ServerCopy, RefusedOnesLeaveNothing)
{
    EXPECT_EQ(Copy(m_file, m_folder.filePath("x.kyndb")).code, 2);
    EXPECT_EQ(Copy(m_file, m_server, "wrong\n").code, 1);
    EXPECT_EQ(Copy(m_file, TestServer::Get().Target("Big")).code, 1);
    EXPECT_EQ(Copy(m_file, m_server).code, 0); // nothing was in its way
    ExpectFailure(Copy(m_file, m_server), "already exists");
    EXPECT_EQ(Copy(m_server, m_file).code, 1);
    EXPECT_EQ(RunCtl({"db", "check", m_file}).code, 0);
    EXPECT_EQ(RunWithPasswords({"db", "create", "postgresql:///other?host=/nowhere"}, "x\n").code, 1);
}

} // namespace
