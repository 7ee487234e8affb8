#include "dao/Transaction.h"
#include "DaoFixture.h"
#include "dao/sqlite/Session.h"
#include <QFileInfo>
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace dao;

class TransactionTest : public DaoTest {
protected:
    // An account with its profile: a change of both files.
    static void AddBoth(Workspace& workspace, const QString& name)
    {
        const auto table = workspace.Database().OpenTable("user_profile");
        table->AddNew();
        table->SetField("UserName", name);
        table->Update();
        const auto user = workspace.CreateUser(name, "PID", "pw");
        workspace.Users().Append(*user);
        user->Groups().Append(UsersGroupName);
    }

    QStringList Profiles() { return Sql("select \"UserName\" from user_profile order by 1", "UserName"); }
};

TEST_F(TransactionTest, CoverBothFiles)
{
    m_workspace->BeginTrans();
    AddBoth(*m_workspace, "Ann");
    EXPECT_EQ(KindOf([&] { m_workspace->BeginTrans(); }), Kind::InTransaction);
    m_workspace->Rollback();
    EXPECT_EQ(m_workspace->Users().Names(), QStringList({"Boss"}));
    EXPECT_EQ(Profiles(), QStringList({"Boss"}));
    EXPECT_EQ(KindOf([&] { m_workspace->Rollback(); }), Kind::NoTransaction);
    EXPECT_EQ(KindOf([&] { m_workspace->CommitTrans(); }), Kind::NoTransaction);

    m_workspace->BeginTrans();
    AddBoth(*m_workspace, "Ann");
    const auto before = Open();
    EXPECT_EQ(before->Users().Names(), QStringList({"Boss"})); // not yet for others
    m_workspace->CommitTrans();
    EXPECT_EQ(before->Users().Names(), QStringList({"Ann", "Boss"}));

    m_workspace->BeginTrans();
    AddBoth(*m_workspace, "Bob");
    m_workspace->Close(); // undoes
    m_workspace = Open();
    EXPECT_EQ(m_workspace->Users().Names(), QStringList({"Ann", "Boss"}));
    EXPECT_EQ(Profiles(), QStringList({"Ann", "Boss"}));
}

TEST_F(TransactionTest, FailedStepLeavesTheTransactionToItsOwner)
{
    AddOperator();
    m_workspace->BeginTrans();
    const auto profiles = Db().OpenTable("user_profile");
    profiles->AddNew();
    profiles->SetField("UserName", "Olga");
    profiles->Update();
    EXPECT_EQ(KindOf([&] { m_workspace->Users().Append(*m_workspace->CreateUser("OLGA", "", "x")); }),
              Kind::UserExists);
    EXPECT_EQ(KindOf([&] { m_workspace->Users().Delete("Boss"); }),
              Kind::LastAdministrator); // a step of several changes
    EXPECT_EQ(Profiles(), QStringList({"Boss", "Olga", "Olga"}));
    m_workspace->Rollback();
    EXPECT_EQ(Profiles(), QStringList({"Boss", "Olga"}));
}

TEST_F(TransactionTest, TwoWorkspacesShareTheFiles)
{
    const auto other = Open();
    m_workspace->BeginTrans();
    Add("status", {"status_code"}, {{1}});
    const auto add = [&] {
        const auto table = other->Database().OpenTable("status", true);
        table->AddNew();
        table->SetField("status_code", 2);
        table->Update();
    };
    EXPECT_TRUE(other->Database().OpenSnapshot("status")->Eof()); // reading goes on
    EXPECT_EQ(KindOf(add), Kind::Locked);
    EXPECT_EQ(KindOf([&] { other->BeginTrans(); }), Kind::Locked);
    EXPECT_EQ(KindOf([&] { other->Groups().Append("Night"); }), Kind::Locked); // the workgroup file as well
    const auto readingUsers = other->Database().OpenSnapshot("user_profile");
    if (!OnServer()) {
        EXPECT_EQ(KindOf([&] { m_workspace->CommitTrans(); }), Kind::Locked); // a reader is in the way
    }
    readingUsers->Close();
    m_workspace->CommitTrans(); // it was still open
    add();
    EXPECT_EQ(Sql("status", "status_code"), QStringList({"1", "2"}));
}

TEST_F(TransactionTest, EverythingIsClosedWithTheWorkspace)
{
    Add("status", {"status_code"}, {{1}});
    const auto table = Db().OpenTable("status");
    const auto snapshot = Db().OpenSnapshot("status");
    const auto query = Db().QueryDef("dynamic_members");
    const auto user = m_workspace->Users().Item("Boss");
    m_workspace->Close();
    for (const std::function<void()>& use :
         {std::function<void()>([&] { table->MoveFirst(); }),
          std::function<void()>([&] { snapshot->Field("in_desc"); }),
          std::function<void()>([&] { snapshot->Eof(); }),
          std::function<void()>([&] { query->OpenSnapshot(); }),
          std::function<void()>([&] { Db().OpenTable("status"); }),
          std::function<void()>([&] { m_workspace->BeginTrans(); }),
          std::function<void()>([&] { m_workspace->CommitTrans(); }),
          std::function<void()>([&] { m_workspace->Users().Names(); }),
          std::function<void()>([&] { user->NewPassword("secret", "x"); })})
        EXPECT_EQ(KindOf(use), Kind::Closed);
    table->Close();
    m_workspace.reset();
    EXPECT_EQ(KindOf([&] { query->Execute(); }), Kind::Closed);
}

// The engine may undo the whole transaction by itself when the disk is full; what follows must not be stored
// alone.
TEST_F(TransactionTest, FullDiskLosesTheTransactionAsAWhole)
{
    m_workspace->Close();
    const auto connection = sqlite::OpenFiles(m_location, m_options);
    const auto database = std::make_shared<Database>(connection);
    connection->Execute("PRAGMA main.max_page_count=200");
    const auto event = database->OpenTable("event", true);
    const auto add = [&] {
        event->AddNew();
        event->SetField("time_stamp", m_now);
        event->SetField("event_type", 2);
        event->SetField("desc", QString(200, 'x'));
        event->Update();
    };
    connection->Begin();
    std::optional<Kind> failed;
    for (int i = 0; i < 10000 && !failed; ++i)
        failed = KindOf(add);
    EXPECT_EQ(failed, Kind::DiskFull);
    connection->Execute("PRAGMA main.max_page_count=10000");
    KindOf(add);
    connection->Rollback();
    EXPECT_EQ(connection->Value("select count(*) from event"), 0);

    connection->Begin();
    connection->Execute("ROLLBACK"); // as the engine would
    EXPECT_EQ(KindOf(add), Kind::Engine);
    EXPECT_EQ(KindOf([&] { connection->Commit(); }), Kind::Engine);
    connection->Rollback();
    add();
    EXPECT_EQ(connection->Value("select count(*) from event"), 1);
}

// The child is killed with both files half-written: its changes outgrow the engine's page cache, so that they
// are on disk before the commit.
TEST_F(TransactionTest, KilledProcessLeavesNothingHalfDone)
{
    Add("status", {"status_code", "in_desc"}, {{1, "before"}});
    m_workspace->Close();
    const qint64 sizeBefore = QFileInfo(m_location.database).size();
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
        const auto workspace = Open();
        workspace->BeginTrans();
        AddBoth(*workspace, "Ann");
        const auto status = workspace->Database().OpenTable("status");
        status->Seek(1);
        status->Edit();
        status->SetField("in_desc", "after");
        status->Update();
        const auto event = workspace->Database().OpenTable("event", true);
        for (int i = 0; i < 20000; ++i) {
            event->AddNew();
            event->SetField("time_stamp", m_now.addSecs((i * 7919) % 20000));
            event->SetField("event_type", 2);
            event->SetField("desc", QString(200, 'x'));
            event->Update();
        }
        [[maybe_unused]] const auto written = write(ready[1], "x", 1);
        pause();
        _exit(0);
    }
    char byte = 0;
    close(ready[1]);
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    close(ready[0]);
    if (!OnServer()) {
        EXPECT_GT(QFileInfo(m_location.database).size(), sizeBefore + 1000000); // there is something to undo
    }
    kill(child, SIGKILL);
    int state = 0;
    ASSERT_EQ(waitpid(child, &state, 0), child);

    m_workspace = Open();
    EXPECT_EQ(Sql("status", "in_desc"), QStringList({"before"}));
    EXPECT_EQ(Sql("select count(*) as c from event", "c"), QStringList({"0"}));
    EXPECT_EQ(m_workspace->Users().Names(), QStringList({"Boss"}));
    EXPECT_EQ(Profiles(), QStringList({"Boss"}));
}

TEST_F(TransactionTest, ChangesSentTogetherAreStoredTogetherOrNotAtAll)
{
    const auto add = [&](int code) { Add("status", {"status_code"}, {{code}}); };
    add(5);
    struct Case {
        const char* what;
        std::function<void()> act;
        std::optional<Kind> failure;
        QStringList stored;
    };
    const Case cases[] = {
        {"nothing", [] {}, {}, {"5"}},
        {"a duplicate among others",
         [&] {
             add(6);
             add(5);
             add(7);
         },
         Kind::DuplicateKey,
         {"5"}},
        {"after an answer",
         [&] {
             add(6);
             EXPECT_EQ(Execute("drop_address", {{"id", 1}}), 0);
             add(5);
         },
         Kind::DuplicateKey,
         {"5"}},
        {"all well",
         [&] {
             add(6);
             m_workspace->Groups().Append("Night");
             add(7);
         },
         {},
         {"5", "6", "7"}},
    };
    for (const Case& c : cases) {
        const auto run = [&] {
            Transaction transaction(*m_workspace, Transaction::Changes::Together);
            c.act();
            transaction.Commit();
        };
        EXPECT_EQ(KindOf(run), c.failure) << c.what;
        EXPECT_EQ(Sql("select status_code from status order by 1", "status_code"), c.stored) << c.what;
    }
    EXPECT_TRUE(m_workspace->Groups().Contains("Night"));
    // Whose key it was is told whenever the server says so.
    EXPECT_EQ(ValuesOf([&] {
                  Transaction transaction(*m_workspace, Transaction::Changes::Together);
                  add(7);
                  transaction.Commit();
              }),
              QStringList({"PrimaryKey", "7"}));
    // A lock held elsewhere.
    const auto other = Open();
    other->BeginTrans();
    EXPECT_EQ(KindOf([&] {
                  Transaction transaction(*m_workspace, Transaction::Changes::Together);
                  add(8);
                  transaction.Commit();
              }),
              Kind::Locked);
    other->Rollback();
    EXPECT_EQ(KindOf([&] { add(8); }), std::nullopt);
}
