// What is only so on a server: the rights of its roles, its going and coming, and news from other consoles.

#include "DaoFixture.h"
#include "dao/Maintenance.h"
#include "dao/base/TextIds.h"
#include "dao/base/TextMatch.h"
#include "dao/postgresql/ServerMaintenance.h"
#include "dao/postgresql/ServerSetup.h"
#include <QElapsedTimer>
#include <QTest>

using namespace dao;

class ServerTest : public DaoTest {
protected:
    void SetUp() override
    {
        if (!OnServer())
            GTEST_SKIP() << "needs a server";
        AddOperator("Olga");
        Execute("change_user_profile", {{"id", 2}, {"cs", "Desk"}, {"dr", true}});
        AddOperator("Ivan");
        AddAddress("Unit20", "20");
        Add("address", {"callsign", "IDENT", "Type", "default_pos"}, {{"Group1", "900", 2, 1}});
        Add("status", {"status_code", "in_desc"}, {{1, "before"}});
        Add("event", {"time_stamp", "event_type"}, {{m_now, 1}});
    }

    postgresql::ServerAddress Address() const
    {
        return postgresql::ServerAddress::Parse(m_location.database);
    }

    // A bare connection as an account: what its owner could do with psql.
    postgresql::ConnectionHandle Raw(const QString& user, const QString& password) const
    {
        const auto address = Address();
        return postgresql::Connect({address, address.Database().toUtf8(),
                                    postgresql::RoleName(address.Database(), user),
                                    postgresql::PasswordBytes(password)});
    }
    std::shared_ptr<postgresql::Connection> AsPostgres() const
    {
        return postgresql::ConnectAsServerAdministrator(Address());
    }
    QString Database() const { return Address().Database(); }
    // Lets what the server has sent arrive, until `condition` holds.
    static bool Comes(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 15000); }
};

// The state that a statement is refused with; empty when the server does it and how many rows it met
// otherwise.
static QString Try(PGconn* connection, QString sql, const QString& database)
{
    const postgresql::Result result(PQexec(connection, sql.replace("{db}", database).toUtf8().constData()));
    const QString state = QString::fromLatin1(PQresultErrorField(result.Handle(), PG_DIAG_SQLSTATE));
    return state.isEmpty() ? "done" : state;
}

TEST_F(ServerTest, EachRoleDoesItsOwnWorkAndNothingElse)
{
    struct Case {
        const char* sql;
        const char* regrouper;     // Olga, who may regroup
        const char* operatorOnly;  // Ivan, who may not
        const char* administrator; // Boss
    };
    const char* denied = "42501";
    const char* refused = "KYERR";
    const char* done = "done";
    const Case cases[] = {
        {"SELECT * FROM address, status, fleet, dynamic_regroup, kyn_registry", done, done, done},
        {"SELECT * FROM event", done, done, done},
        {"INSERT INTO event (time_stamp, event_type, record_id, console, operator, console_number, chain, "
         "from_number, to_number, direction) "
         "VALUES (now(), 1, gen_random_uuid(), 'desk 1', 'Olga', 1, 'ab', '2001', '2002', 1)",
         done, done, done},
        {"SELECT * FROM event_block, event_mark", done, done, done},
        {"UPDATE event_mark SET wanted = 128", done, done, done},
        {"UPDATE event_mark SET safe_id = 0", denied, denied, denied},
        {"INSERT INTO event_block VALUES (9, now(), now(), '')", denied, denied, denied},
        {"DELETE FROM event_block", denied, denied, denied},
        {"UPDATE address SET on_duty = true WHERE callsign = 'Unit20'", done, done, done},
        {"INSERT INTO dynamic_regroup VALUES (2, 1, 3) ON CONFLICT DO NOTHING", done, refused, done},
        {"UPDATE dynamic_regroup SET pos = 4 WHERE group_id = 2", done, refused, done},
        {"DELETE FROM dynamic_regroup", done, refused, done},
        {"INSERT INTO regroup_request (request_id, group_id, member_id, pos) "
         "VALUES (gen_random_uuid(), 2, 1, 3)",
         done, refused, done},
        {"INSERT INTO regroup_request (request_id, role_name, group_id, pos) "
         "VALUES (gen_random_uuid(), '{db}.ivan', 2, 3)",
         denied, denied, denied},
        {"UPDATE regroup_request SET time_stamp = now()", denied, denied, denied},
        {"DELETE FROM regroup_request WHERE role_name = '{db}.olga'", done, done, done},
        {"INSERT INTO regroup_request (request_id, group_id, pos) VALUES (gen_random_uuid(), 2, 3)", done,
         refused, done},
        {"DELETE FROM regroup_request", refused, refused, done},
        {"INSERT INTO attention (caller, kind, entry_id, since, last) VALUES ('c', 1, 'e', now(), now()) "
         "ON CONFLICT DO NOTHING",
         done, done, done},
        {"UPDATE attention SET taken_by = 'Olga'", done, done, done},
        {"DELETE FROM attention", done, done, done},
        {"INSERT INTO attention_act (act_id, entry_id, act, caller, kind, time_stamp) "
         "VALUES (gen_random_uuid(), 'e', 1, 'c', 1, now())",
         done, done, done},
        {"UPDATE attention_act SET operator = 'Eve'", denied, denied, denied},
        {"DELETE FROM attention_act", denied, denied, denied},
        {"INSERT INTO regroup_act (act_id, member_id, member, group_id, pos, time_stamp) "
         "VALUES (gen_random_uuid(), 1, 'a', 2, 3, now())",
         done, done, done},
        {"UPDATE regroup_act SET operator = 'Eve'", denied, denied, denied},
        {"DELETE FROM regroup_act", denied, denied, denied},
        {"UPDATE user_profile SET logged_on = true WHERE \"UserName\" = kyn_user()", done, done, done},

        {"UPDATE user_profile SET logged_on = true", refused, refused, done},
        {"UPDATE user_profile SET allow_dr = true WHERE \"UserName\" = kyn_user()", denied, denied, done},
        {"UPDATE user_profile SET callsign = 'X' WHERE \"UserName\" = kyn_user()", denied, denied, done},
        {"INSERT INTO user_profile (\"UserName\") VALUES ('x')", denied, denied, done},
        {"DELETE FROM user_profile WHERE \"UserName\" = 'x'", denied, denied, done},
        {"UPDATE address SET callsign = 'X' WHERE false", denied, denied, done},
        {"UPDATE address SET \"IDENT\" = 'X' WHERE false", denied, denied, done},
        {"INSERT INTO address (callsign, \"IDENT\", \"Type\") VALUES ('a', 'b', 1)", denied, denied, done},
        {"DELETE FROM address WHERE callsign = 'a'", denied, denied, done},
        {"UPDATE status SET in_desc = 'x'", denied, denied, done},
        {"INSERT INTO fleet VALUES ('f', 1, 2, 3, 4, 5)", denied, denied, done},
        {"DELETE FROM fleet", denied, denied, done},
        {"INSERT INTO kyn_registry VALUES ('k', 'v')", denied, denied, done},
        {"SELECT kyn_add_account('Eve', '', 'SCRAM-SHA-256$4096:YQ==$YQ==:YQ==')", refused, refused, done},
        {"SELECT kyn_join('Eve', 'Users')", refused, refused, done},
        {"SELECT kyn_leave('Boss', 'Admins')", refused, refused, refused}, // the last one stays
        {"SELECT kyn_drop_account('Eve')", refused, refused, done},
        {"SELECT kyn_set_password('Boss', 'SCRAM-SHA-256$4096:YQ==$YQ==:YQ==')", refused, refused, nullptr},
        {"SELECT kyn_add_group('Night')", refused, refused, done},

        // Nobody: the log is never changed, nothing is learnt of passwords, no role is made by other ways.
        {"UPDATE event SET \"desc\" = ''", denied, denied, denied},
        {"DELETE FROM event", denied, denied, denied},
        {"TRUNCATE event", denied, denied, denied},
        {"INSERT INTO event (event_id, time_stamp, event_type) VALUES (1, now(), 1)", denied, denied, denied},
        {"SELECT * FROM pg_authid", denied, denied, denied},
        {"SELECT * FROM pg_shadow", denied, denied, denied},
        {"SELECT kyn_set_password('Olga', 'in clear')", refused, refused, refused},
        {"CREATE ROLE eve", denied, denied, denied},
        {"CREATE ROLE eve SUPERUSER", denied, denied, denied},
        {"GRANT {db}_admins TO \"{db}.ivan\"", denied, denied, denied},
        {"GRANT {db}_owner TO \"{db}.boss\"", denied, denied, denied},
        {"GRANT pg_read_server_files TO \"{db}.boss\"", denied, denied, denied},
        {"SET ROLE {db}_owner", denied, denied, denied},
        {"SET SESSION AUTHORIZATION postgres", denied, denied, denied},
        {"ALTER ROLE \"{db}.boss\" CREATEROLE", denied, denied, denied},
        {"UPDATE account SET role_name = 'postgres'", denied, denied, denied},
        {"INSERT INTO membership VALUES (2, 'Admins')", denied, denied, denied},
        {"UPDATE stored_query SET sql = ''", denied, denied, denied},
        {"UPDATE file_info SET value = '9'", denied, denied, denied},
        {"UPDATE index_def SET field_no = 9", denied, denied, denied},
        {"CREATE TABLE kyn.t (a int)", denied, denied, denied},
        {"CREATE TEMP TABLE t (a int)", denied, denied, denied},
        {"CREATE TABLE public.t (a int)", denied, denied, denied},
        {"ALTER TABLE event DISABLE TRIGGER ALL", denied, denied, denied},
        {"DROP TABLE event", denied, denied, denied},
        {"CREATE OR REPLACE FUNCTION kyn.kyn_is_admin() RETURNS boolean LANGUAGE sql RETURN true", denied,
         denied, denied},
    };
    const auto regrouper = Raw("Olga", "pw");
    const auto operatorOnly = Raw("Ivan", "pw");
    const auto administrator = Raw("Boss", "secret");
    for (const Case& c : cases) {
        EXPECT_EQ(Try(regrouper.get(), c.sql, Database()), c.regrouper) << "Olga: " << c.sql;
        EXPECT_EQ(Try(operatorOnly.get(), c.sql, Database()), c.operatorOnly) << "Ivan: " << c.sql;
        if (c.administrator) {
            EXPECT_EQ(Try(administrator.get(), c.sql, Database()), c.administrator) << "Boss: " << c.sql;
        }
    }
    // A search path of their own lets them past no guard.
    Try(operatorOnly.get(), "SET search_path = public", Database());
    EXPECT_EQ(Try(operatorOnly.get(), "UPDATE kyn.user_profile SET logged_on = true", Database()), refused);
}

TEST_F(ServerTest, PasswordsNeverCrossTheWireInClear)
{
    const auto server = AsPostgres();
    server->Execute("ALTER SYSTEM SET log_statement = 'all'");
    server->Execute("SELECT pg_reload_conf()");
    m_workspace->Users().Item("Olga")->NewPassword("", "Geheimnis");
    Open("Olga", "Geheimnis")->Users().Item("Olga")->NewPassword("Geheimnis", "Geheimnis2");
    const QVariant stored =
        server->Value("SELECT rolpassword FROM pg_authid WHERE rolname = ?", {Database() + ".olga"});
    server->Execute("ALTER SYSTEM RESET log_statement");
    server->Execute("SELECT pg_reload_conf()");
    EXPECT_TRUE(stored.toString().startsWith("SCRAM-SHA-256$")) << stored.toString().toStdString();
    QFile log(TestServer::Get().SocketFolder() + "/log");
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    const QByteArray contents = log.readAll();
    EXPECT_TRUE(contents.contains("kyn_set_password")); // it was watched
    EXPECT_FALSE(contents.contains("Geheimnis"));
    // One who may choose the placeholder of an empty password would be let in without one.
    EXPECT_EQ(KindOf([&] {
                  Open("Olga", "Geheimnis2")
                      ->Users()
                      .Item("Olga")
                      ->NewPassword("Geheimnis2", postgresql::EmptyPassword);
              }),
              Kind::BadPassword);
}

TEST_F(ServerTest, NamesFoldAsEverywhereElse)
{
    QStringList characters, folded;
    for (char16_t c = 0x20; c < 0xD7FF; ++c)
        if (QChar(c).isLetter() || QChar(c).isMark()) {
            characters.append(QChar(c));
            folded.append(Fold(QChar(c)));
        }
    // What the program makes one the server makes one, so that a name typed anyhow finds its role.
    const auto server = AsPostgres();
    const QVariant different = server->Value(
        "SELECT string_agg(c, ' ') FROM unnest(string_to_array(?, '|'), string_to_array(?, '|')) "
        "AS t (c, f) WHERE kyn_fold(c) <> kyn_fold(f)",
        {characters.join('|'), folded.join('|')});
    EXPECT_FALSE(different.isValid()) << different.toString().toStdString();
    for (const QString& name : {QString("Boss"), QString("ÅNGSTRÖM"), QString(64, QChar(0x00DC))})
        EXPECT_EQ(server->Value("SELECT kyn_role_name(?)", {name}).toString().toUtf8(),
                  postgresql::RoleName(Database(), name));
    EXPECT_EQ(KindOf([&] { AddOperator(QString(64, QChar(0x00DC))); }), std::nullopt);
    EXPECT_EQ(Open(QString(64, QChar(0x00FC)), "pw")->UserName(), QString(64, QChar(0x00DC)));
}

TEST_F(ServerTest, TheEnvironmentChangesNeitherTimesNorTexts)
{
    const std::pair<const char*, const char*> variables[] = {
        {"PGTZ", "Asia/Tokyo"}, {"PGDATESTYLE", "German"}, {"PGCLIENTENCODING", "LATIN1"}};
    for (const auto& [name, value] : variables)
        qputenv(name, value);
    const auto olga = Open("Olga", "pw");
    for (const auto& [name, value] : variables)
        qunsetenv(name);
    const QString text = QStringLiteral("Über 😀");
    const auto records = olga->Database().OpenTable("event", true);
    records->AddNew();
    records->SetField("time_stamp", m_now);
    records->SetField("event_type", 2);
    records->SetField("desc", text);
    records->Update();
    for (Workspace* session : {olga.get(), m_workspace.get()})
        for (auto events = session->Database().OpenSnapshot("select * from event where event_type = 2");
             !events->Eof(); events->MoveNext()) {
            EXPECT_EQ(events->Field("desc").toString(), text);
            EXPECT_EQ(events->Field("time_stamp").toDateTime(), m_now);
        }
}

TEST_F(ServerTest, OtherSessionsAreToldWhatChanged)
{
    const auto olga = Open("Olga", "pw");
    QStringList told;
    olga->Watch({[&](const QString& table) { told.append(table); }, [](bool) {}});
    struct Case {
        std::function<void()> change;
        const char* table;
    };
    const Case cases[] = {
        {[&] { AddAddress("Unit21", "21"); }, "address"},
        {[&] {
             Execute("update_duty_status", {{"cs", "Unit21"}, {"ds", true}});
         },
         "address"},
        {[&] {
             Add("dynamic_regroup", {"group_id", "member_id", "pos"}, {{2, 1, 1}});
         },
         "dynamic_regroup"},
        {[&] { Add("status", {"status_code"}, {{5}}); }, "status"},
        {[&] { Add("kyn_registry", {"Key"}, {{"x"}}); }, "kyn_registry"},
        {[&] { m_workspace->Users().Item("Ivan")->Groups().Append("Operators"); }, "membership"},
    };
    for (const Case& c : cases) {
        told.clear();
        QElapsedTimer time;
        time.start();
        c.change();
        EXPECT_TRUE(Comes([&] { return told.contains(c.table); })) << c.table;
        EXPECT_LT(time.elapsed(), 1000) << c.table;
    }
    // Not of what it does itself or a session beside it does, and not of log records.
    told.clear();
    const auto beside = olga->Again()();
    for (Workspace* session : {olga.get(), beside.get()}) {
        const auto duty = session->Database().QueryDef("update_duty_status");
        duty->SetParameter("cs", "Unit21");
        duty->SetParameter("ds", session == olga.get());
        duty->Execute();
    }
    Add("event", {"time_stamp", "event_type"}, {{m_now, 1}});
    Add("status", {"status_code"}, {{6}});
    EXPECT_TRUE(Comes([&] { return !told.isEmpty(); }));
    EXPECT_EQ(told, QStringList("status"));
}

TEST_F(ServerTest, WhatIsReadAheadIsNeverOlderThanAChange)
{
    const auto olga = Open("Olga", "pw");
    const auto texts = [&] {
        QStringList read;
        for (auto stati = olga->Database().OpenSnapshot("status"); !stati->Eof(); stati->MoveNext())
            read.append(stati->Field("in_desc").toString());
        return read.join('|');
    };
    const auto change = [&](const QString& text) {
        const auto table = Db().OpenTable("status");
        table->Seek(1);
        table->Edit();
        table->SetField("in_desc", text);
        table->Update();
    };
    struct Case {
        const char* what;
        std::function<void()> between;
        QString text;
        int waits;
    };
    texts();
    const Case cases[] = {
        {"nothing", [] {}, "before", 0},
        {"its own change",
         [&] {
             const auto duty = olga->Database().QueryDef("update_duty_status");
             duty->SetParameter("cs", "Unit20");
             duty->SetParameter("ds", true);
             duty->Execute();
         },
         "before", 1},
        {"another's change, which the server tells with its next answer",
         [&] {
             change("after");
             olga->Users().Contains("Ivan");
         },
         "after", 1},
        {"a transaction", [&] { olga->BeginTrans(); }, "after", 1},
    };
    for (const Case& c : cases) {
        olga->Database().ReadAhead({{.source = "status"}});
        c.between();
        const int waits = olga->Waits();
        EXPECT_EQ(texts(), c.text) << c.what;
        EXPECT_EQ(olga->Waits() - waits, c.waits) << c.what;
    }
}

TEST_F(ServerTest, SessionsOutliveTheServersRestart)
{
    const auto table = Db().OpenTable("address");
    table->SetIndex("i_callsign");
    QList<bool> away;
    int unknown = 0;
    m_workspace->Watch({[&](const QString& name) { unknown += name.isEmpty() ? 1 : 0; },
                        [&](bool now) { away.append(now); }});
    const auto seek = [&] { table->Seek(QString("Unit20")); };
    const auto add = [&] { Add("status", {"status_code"}, {{9}}); };
    seek();

    TestServer::Get().StopAtOnce();
    EXPECT_EQ(KindOf(seek), Kind::ServerAway);
    EXPECT_EQ(KindOf(add), Kind::ServerAway);
    EXPECT_TRUE(Comes([&] { return away == QList<bool>{true}; }));
    QElapsedTimer time;
    time.start();
    for (int i = 0; i < 100; ++i)
        KindOf(seek);
    EXPECT_LT(time.elapsed(), 100); // it is not looked for each time
    TestServer::Get().Start();
    EXPECT_TRUE(Comes([&] { return away == QList<bool>({true, false}); }));
    EXPECT_EQ(unknown, 1); // whatever was changed meanwhile
    EXPECT_EQ(KindOf(seek), std::nullopt);
    EXPECT_FALSE(table->NoMatch());
    EXPECT_EQ(KindOf(add), std::nullopt);

    // A transaction is lost as a whole.
    m_workspace->BeginTrans();
    Add("status", {"status_code"}, {{10}});
    TestServer::Get().StopAtOnce();
    TestServer::Get().Start();
    const auto more = [&] { Add("status", {"status_code"}, {{11}}); };
    EXPECT_EQ(KindOf(more), Kind::ServerAway);
    EXPECT_EQ(KindOf(more), Kind::ServerAway); // not even when the server is back
    EXPECT_EQ(KindOf([&] { m_workspace->CommitTrans(); }), Kind::ServerAway);
    m_workspace->Rollback();
    EXPECT_EQ(Sql("select status_code from status order by 1", "status_code"), QStringList({"1", "9"}));
}

TEST_F(ServerTest, TheFirstHostThatAnswersIsTaken)
{
    const QString folder = TestServer::Get().SocketFolder();
    const auto open = [&](const QString& hosts) {
        return KindOf([&] {
            OpenWorkspace({QStringLiteral("postgresql:///%1?host=%2").arg(Database(), hosts), {}}, "Boss",
                          "secret", m_options);
        });
    };
    EXPECT_EQ(open("/nowhere," + folder), std::nullopt);
    EXPECT_EQ(open(folder + ",/nowhere"), std::nullopt);
    EXPECT_EQ(open("/nowhere,/elsewhere"), Kind::ServerAway);
    // A host that only answers is passed over, and this one is the only one.
    AsPostgres()->Execute("ALTER DATABASE " + Database() + " SET default_transaction_read_only = on");
    EXPECT_EQ(open(folder), Kind::ServerAway);
}

TEST_F(ServerTest, ServerThatLetsEverybodyInIsRefused)
{
    AsPostgres()->Execute("SELECT kyn_add_account('x', '', 'SCRAM-SHA-256$4096:YQ==$YQ==:YQ==')");
    QFile rules(TestServer::Get().SocketFolder() + "/data/pg_hba.conf");
    ASSERT_TRUE(rules.open(QIODevice::ReadWrite));
    const QByteArray before = rules.readAll();
    rules.seek(0);
    rules.write("local all all trust\n" + before);
    rules.flush();
    AsPostgres()->Execute("SELECT pg_reload_conf()");
    std::optional<Kind> kind;
    EXPECT_TRUE(
        Comes([&] { return (kind = KindOf([&] { Open("Boss", "wrong"); })) != Kind::WrongPassword; }));
    rules.resize(0);
    rules.seek(0);
    rules.write(before);
    rules.close();
    AsPostgres()->Execute("SELECT pg_reload_conf()");
    EXPECT_EQ(kind, Kind::ServerTrusts);
    EXPECT_TRUE(Comes([&] { return KindOf([&] { Open("Boss", "wrong"); }) == Kind::WrongPassword; }));
}

TEST_F(ServerTest, CheckFindsWhatIsWrong)
{
    const auto check = [&] {
        QList<int> ids;
        for (const Finding& finding : CheckDatabase(m_location))
            ids.append(finding.textId);
        return ids;
    };
    EXPECT_EQ(check(), QList<int>());
    struct Case {
        QString break_;
        QString mend;
        QList<int> found;
    };
    const QString olga = Database() + ".olga";
    const Case cases[] = {
        {"ALTER TABLE fleet RENAME TO f2", "ALTER TABLE f2 RENAME TO fleet", {DaoText::CheckTableMissing}},
        {"ALTER INDEX \"MemberPos\" RENAME TO m2",
         "ALTER INDEX m2 RENAME TO \"MemberPos\"",
         {DaoText::CheckIndexMissing}},
        {"ALTER TABLE event RENAME chain TO c2",
         "ALTER TABLE event RENAME c2 TO chain",
         {DaoText::CheckFieldMissing}},
        {"ALTER FUNCTION kyn_join RENAME TO j2",
         "ALTER FUNCTION j2 RENAME TO kyn_join",
         {DaoText::CheckFunctionMissing}},
        {"ALTER TRIGGER event_append_only ON event RENAME TO e2",
         "ALTER TRIGGER e2 ON event RENAME TO event_append_only",
         {DaoText::CheckAppendable}},
        {"UPDATE stored_query SET name = 'x' WHERE name = 'ungroup'",
         "UPDATE stored_query SET name = 'ungroup' WHERE name = 'x'",
         {DaoText::CheckQueryMissing}},
        {"UPDATE stored_query SET sql = 'nonsense ' || sql WHERE name = 'ungroup'",
         "UPDATE stored_query SET sql = substr(sql, 10) WHERE name = 'ungroup'",
         {DaoText::CheckQueryFails}},
        {"ALTER ROLE \"" + olga + "\" RENAME TO o2",
         "ALTER ROLE o2 RENAME TO \"" + olga + "\"",
         {DaoText::CheckRoleMissing}},
        {"REVOKE " + Database() + "_users FROM \"" + olga + "\"",
         "GRANT " + Database() + "_users TO \"" + olga + "\"",
         {DaoText::CheckMembership}},
        {"UPDATE user_profile SET \"UserName\" = 'x' WHERE \"UserName\" = 'Olga'",
         "UPDATE user_profile SET \"UserName\" = 'Olga' WHERE \"UserName\" = 'x'",
         {DaoText::CheckNoProfile, DaoText::CheckNoAccount}},
        {"UPDATE file_info SET value = '0' WHERE name = 'schema_version'",
         "UPDATE file_info SET value = '6' WHERE name = 'schema_version'",
         {DaoText::CheckServerOlder}},
    };
    for (const Case& c : cases) {
        AsPostgres()->Execute(c.break_);
        EXPECT_EQ(check(), c.found) << c.break_.toStdString();
        AsPostgres()->Execute(c.mend);
    }
    EXPECT_EQ(check(), QList<int>());
}

TEST_F(ServerTest, MigrationRunsTheMissingStepsOrNone)
{
    auto migrations = SchemaScripts("postgresql/");
    const int newest = migrations.last().version;
    migrations.append({newest + 1, "CREATE TABLE extra (a int); nonsense"});
    const auto migrate = [&] { postgresql::MigrateServerDatabase(Address(), migrations); };
    EXPECT_EQ(KindOf(migrate), Kind::MigrationFailed);
    EXPECT_EQ(KindOf([&] { Open(); }), std::nullopt);
    migrations.last().sql = "CREATE TABLE extra (a int); SELECT pg_terminate_backend(pg_backend_pid())";
    EXPECT_EQ(KindOf(migrate), Kind::MigrationFailed);
    EXPECT_EQ(KindOf([&] { Open(); }), std::nullopt);
    migrations.last().sql = "CREATE TABLE extra (a int); GRANT SELECT ON extra TO {users}";
    EXPECT_EQ(KindOf(migrate), std::nullopt);
    EXPECT_EQ(KindOf(migrate), std::nullopt); // there is nothing left to do
    EXPECT_EQ(AsPostgres()->Value("SELECT tableowner::text FROM pg_tables WHERE tablename='extra'"),
              Database() + "_owner");
    EXPECT_EQ(KindOf([&] { Open(); }), Kind::Newer); // for the program without this step
    AsPostgres()->Execute("UPDATE file_info SET value = '0' WHERE name = 'schema_version'");
    EXPECT_EQ(KindOf([&] { Open(); }), Kind::Older);
    // Where a database or its roles are, none is made.
    EXPECT_EQ(KindOf([&] { CreateDatabase(m_location, "Boss", "x"); }), Kind::FileExists);
}
