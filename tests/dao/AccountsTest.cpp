#include "DaoFixture.h"
#include <QFile>
#include <thread>

using namespace dao;

class AccountsTest : public DaoTest {
protected:
    std::optional<Kind> Logon(const QString& user, const QString& password)
    {
        return KindOf([&] { Open(user, password); });
    }
};

TEST_F(AccountsTest, FirstAdministratorIsInBothGroupsAndHasAProfile)
{
    EXPECT_EQ(m_workspace->UserName(), "Boss");
    EXPECT_EQ(m_workspace->Groups().Names(), QStringList({"Admins", "Operators", "Users"}));
    EXPECT_EQ(m_workspace->Users().Item("bOSS")->Groups().Names(), QStringList({"Admins", "Users"}));
    EXPECT_EQ(m_workspace->Users().Item("Boss")->Pid().size(), 20);
    EXPECT_EQ(Sql("user_profile", "UserName"), QStringList({"Boss"}));
}

TEST_F(AccountsTest, LogonChecksNameAndPassword)
{
    AddOperator("Ångström");
    struct Case {
        const char* user;
        const char* password;
        bool accepted;
    };
    const Case cases[] = {
        {"Boss", "secret", true},
        {"BOSS", "secret", true},
        {"ångSTRÖM", "pw", true},
        {"Boss", "Secret", false},
        {"Boss", "", false},
        {"Boss", "secret ", false},
        {"", "", false},
        {"Bos", "secret", false},
        {"Boss ", "secret", false},
        {"' OR 1=1 --", "", false},
        {"Ångström", "secret", false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Logon(c.user, c.password), c.accepted ? std::nullopt : std::optional(Kind::WrongPassword))
            << c.user << '/' << c.password;
    EXPECT_EQ(Open("ångström", "pw")->UserName(), "Ångström");
}

TEST_F(AccountsTest, OwnPasswordNeedsTheOldOneAndIsNeverEmpty)
{
    AddOperator();
    const auto workspace = Open("olga", "pw");
    const auto self = workspace->Users().Item("OLGA");
    EXPECT_EQ(KindOf([&] { self->NewPassword("wrong", "new"); }), Kind::WrongPassword);
    EXPECT_EQ(KindOf([&] { self->NewPassword("", "new"); }), Kind::WrongPassword);
    EXPECT_EQ(KindOf([&] { self->NewPassword("pw", ""); }), Kind::BadPassword);
    EXPECT_EQ(Logon("Olga", "pw"), std::nullopt);
    self->NewPassword("pw", "grün 🔑");
    EXPECT_EQ(Logon("Olga", "pw"), Kind::WrongPassword);
    EXPECT_EQ(Logon("Olga", QString::fromUtf8("gru\u0308n 🔑")), std::nullopt);
    // An administrator cannot lock himself out either.
    EXPECT_EQ(KindOf([&] { m_workspace->Users().Item("Boss")->NewPassword("", "x"); }), Kind::WrongPassword);
    EXPECT_EQ(KindOf([&] { m_workspace->Users().Item("Boss")->NewPassword("secret", ""); }),
              Kind::BadPassword);
}

TEST_F(AccountsTest, AdministratorResetsAnotherPasswordToAnEmptyOne)
{
    AddOperator();
    m_workspace->Users().Item("Olga")->NewPassword("", "");
    const auto workspace = Open("Olga", "");
    workspace->Users().Item("Olga")->NewPassword("", "mine");
    EXPECT_EQ(Logon("Olga", ""), Kind::WrongPassword);
    EXPECT_EQ(Logon("Olga", "mine"), std::nullopt);
}

TEST_F(AccountsTest, OperatorsChangeNoAccounts)
{
    AddOperator();
    const auto made = m_workspace->CreateUser("Ivan", "", "x");
    const auto workspace = Open("Olga", "pw");
    UserList& users = workspace->Users();
    const std::function<void()> forbidden[] = {
        [&] { workspace->CreateUser("X", "", "x"); },
        [&] { users.Delete("Boss"); },
        [&] { users.Delete("nobody"); },
        [&] { users.Item("Boss")->NewPassword("secret", "x"); },
        [&] { users.Item("Olga")->Groups().Append("Admins"); },
        [&] { users.Item("Boss")->Groups().Delete("Admins"); },
        [&] { workspace->Groups().Append("X"); },
        [&] { workspace->Groups().Delete("Users"); },
        [&] { users.Append(*made); },
    };
    for (std::size_t i = 0; i < std::size(forbidden); ++i)
        EXPECT_EQ(KindOf(forbidden[i]), Kind::NotPermitted) << i;
    EXPECT_EQ(users.Names(), QStringList({"Boss", "Olga"}));

    // Rights follow the groups at once.
    m_workspace->Users().Item("Olga")->Groups().Append("Admins");
    users.Append(*workspace->CreateUser("Zoe", "", "z"));
    m_workspace->Users().Item("Olga")->Groups().Delete("Admins");
    EXPECT_EQ(KindOf([&] { users.Delete("Zoe"); }), Kind::NotPermitted);
}

TEST_F(AccountsTest, MistakesAreNamed)
{
    AddOperator();
    UserList& users = m_workspace->Users();
    GroupList& groups = m_workspace->Groups();
    const auto append = [&](const QString& name) { users.Append(*m_workspace->CreateUser(name, "", "x")); };
    struct Case {
        std::function<void()> action;
        Kind kind;
    };
    const Case cases[] = {
        {[&] { append("OLGA"); }, Kind::UserExists},
        {[&] { append(""); }, Kind::BadUserName},
        {[&] { append(" x"); }, Kind::BadUserName},
        {[&] { append("a\nb"); }, Kind::BadUserName},
        {[&] { append(QString(65, 'x')); }, Kind::BadUserName},
        {[&] { m_workspace->CreateUser("X", "", ""); }, Kind::BadPassword},
        {[&] { users.Item("nobody"); }, Kind::NoSuchUser},
        {[&] { users.Delete("nobody"); }, Kind::NoSuchUser},
        {[&] { users.Append(*users.Item("Olga")); }, Kind::UserExists},
        {[&] { users.Delete("boss"); }, Kind::LastAdministrator},
        {[&] { users.Item("Boss")->Groups().Delete("Admins"); }, Kind::LastAdministrator},
        {[&] { users.Item("Olga")->Groups().Delete("Admins"); }, Kind::NotAMember},
        {[&] { users.Item("Olga")->Groups().Append("Users"); }, Kind::AlreadyMember},
        {[&] { users.Item("Olga")->Groups().Append("admins"); }, Kind::NoSuchGroup},
        {[&] { m_workspace->CreateUser("X", "", "x")->Groups().Append("Users"); }, Kind::NoSuchUser},
        {[&] { groups.Append("Users"); }, Kind::GroupExists},
        {[&] { groups.Delete("Admins"); }, Kind::NotPermitted},
        {[&] { groups.Delete("nonsense"); }, Kind::NoSuchGroup},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(KindOf(cases[i].action), cases[i].kind) << i;

    users.Item("Olga")->Groups().Append("Admins");
    users.Delete("Boss");                                          // there is another one now
    EXPECT_EQ(KindOf([&] { append("Zoe"); }), Kind::NotPermitted); // Boss is nobody now
    EXPECT_EQ(Logon("Boss", "secret"), Kind::WrongPassword);
    const auto olga = Open("Olga", "pw");
    EXPECT_EQ(olga->Users().Names(), QStringList({"Olga"}));
    olga->Users().Append(*olga->CreateUser("boss", "", "x")); // the name is free again
    olga->Users().Delete("Boss");
    olga->Groups().Append("Night");
    olga->Users().Item("Olga")->Groups().Append("Night");
    olga->Groups().Delete("Night");
    EXPECT_EQ(olga->Users().Item("Olga")->Groups().Names(), QStringList({"Admins", "Users"}));
}

// For a thread of its own: with the account's rights, with a password changed meanwhile, after the first
// session's end, and never on files that were put in the place of its own.
TEST_F(AccountsTest, SessionIsMadeAgainOnAnotherThread)
{
    AddOperator();
    auto first = Open("olga", "pw");
    const auto onThread = [again = first->Again()](const std::function<void(Workspace&)>& use) {
        std::optional<Kind> kind;
        std::thread([&] { kind = KindOf([&] { use(*again()->Again()()); }); }).join();
        return kind;
    };
    const auto addEvent = [this](Workspace& workspace) {
        EXPECT_EQ(workspace.UserName(), "Olga");
        const auto table = workspace.Database().OpenTable("event");
        table->AddNew();
        table->SetField("time_stamp", m_now);
        table->SetField("event_type", 1);
        table->Update();
    };
    EXPECT_EQ(onThread(addEvent), std::nullopt);
    EXPECT_EQ(onThread([](Workspace& workspace) { workspace.Users().Delete("Boss"); }), Kind::NotPermitted);
    first->Users().Item("Olga")->NewPassword("pw", "new");
    first.reset();
    EXPECT_EQ(onThread(addEvent), std::nullopt);
    EXPECT_EQ(Sql("select count(*) as n from event", "n"), QStringList({"2"}));
    if (OnServer())
        return;
    m_workspace.reset();
    ASSERT_TRUE(QFile::remove(m_location.database) && QFile::remove(m_location.workgroup));
    EXPECT_EQ(onThread(addEvent), Kind::NoSuchFile);
    CreateDatabase(m_location, "Olga", "new", PasswordCost::Lowest());
    EXPECT_EQ(onThread(addEvent), Kind::WorkgroupMismatch);
}
