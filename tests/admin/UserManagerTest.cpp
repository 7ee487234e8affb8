#include "AdminStack.h"

#include "admin/frmUserManager.h"
#include "core/session/AccountChanges.h"

#include <QComboBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeView>

using driver::Child;
using driver::Click;
using driver::Type;

class UserManagerTest : public AdminTest {
protected:
    void Open()
    {
        window = std::make_unique<frmUserManager>(Services());
        window->show();
    }
    void Enter(const QString& name, const QString& password, const QString& repeated, const QString& callsign,
               const QString& group)
    {
        Type(*window, "txtUserName", name);
        Type(*window, "txtPass_0", password);
        Type(*window, "txtPass_1", repeated);
        Type(*window, "txtCallsign", callsign);
        auto& groups = Child<QComboBox>(*window, "cmbGroup");
        groups.setCurrentIndex(groups.findText(group));
    }
    void Add(const QString& name, const QString& callsign, const QString& group)
    {
        Click(*window, "cmdNew");
        EXPECT_EQ(Shown(*window, "cmbGroup"), "") << "nobody becomes an administrator unasked";
        Enter(name, "pw", "pw", callsign, group);
        Click(*window, "cmdAddUser");
    }
    QStringList Users() { return Lines(*window, "lvUsers"); }
    bool ListShown() { return Child<QWidget>(*window, "picUserList").isVisible(); }
    void Sort(int column)
    {
        auto* header = Child<QTreeView>(*window, "lvUsers").header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                          {header->sectionViewportPosition(column) + 5, header->height() / 2});
    }

    std::unique_ptr<frmUserManager> window;
};

TEST_F(UserManagerTest, AccountsOfAnotherConsoleShowAndTheSelectionStays)
{
    Open();
    Add("Zoe", "Alpha", "Operators");
    auto& list = Child<QTreeView>(*window, "lvUsers");
    list.setCurrentIndex(list.model()->index(1, 0));
    const auto other = database.Open();
    AddAccount(*other, {"Mia", "PID", "pw", "Mike", "Operators", false});
    if (!TestServer::IsWanted())
        session.Changes().Tell(QString());
    EXPECT_TRUE(QTest::qWaitFor([&] { return Users().size() == 3; }, 5000));
    EXPECT_EQ(list.currentIndex().data().toString(), "Zoe");
    EXPECT_EQ(Shown(*window, "sbStatus"), Text(2266)) << "what was done stays told";

    // The list is read again while the question is open.
    AddAccount(*other, {"Ada", "PID2", "pw", "Alfa", "Operators", false});
    prompt.whileOpen = [&] {
        if (!TestServer::IsWanted())
            session.Changes().Tell(QString());
        EXPECT_TRUE(QTest::qWaitFor([&] { return Users().size() == 4; }, 5000));
    };
    prompt.ExpectConfirmation(Text(2261), true);
    Click(*window, "cmdDel");
    prompt.Finish();
    EXPECT_EQ(Rows("user_profile", {"UserName"}), QStringList({"admin", "Mia", "Ada"}));
    EXPECT_TRUE(Users().filter("Zoe").isEmpty());
    EXPECT_EQ(Users().size(), 3);
}

TEST_F(UserManagerTest, AccountsAreListedFoundAndSorted)
{
    Open();
    Add("Zoe", "Alpha", "Operators");
    Add("berta", "Zulu", "Admins");
    EXPECT_EQ(Users(),
              QStringList({"admin||no|Admins|yes", "berta|Zulu|no|Admins|no", "Zoe|Alpha|no|Operators|no"}));
    EXPECT_EQ(Shown(*window, "sbStatus"), Text(2266));
    Sort(2); // no order of its own
    EXPECT_EQ(Users().first(), "admin||no|Admins|yes");
    Sort(1);
    EXPECT_EQ(Users().last(), "berta|Zulu|no|Admins|no");
    Type(*window, "txtLookFor", "*ALPH?");
    QTest::keyClick(&Child<QWidget>(*window, "txtLookFor"), Qt::Key_Return);
    EXPECT_EQ(Users(), QStringList("Zoe|Alpha|no|Operators|no"));
    EXPECT_EQ(Shown(*window, "sbStatus"), "1 users found.");
    EXPECT_EQ(Child<QTreeView>(*window, "lvUsers").model()->index(0, 0).data(Qt::UserRole).toString(),
              "key2");
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(UserManagerTest, WhatCannotBeStoredIsSaidAndNothingChanges)
{
    Open();
    const QStringList before = Users();
    Click(*window, "cmdNew");
    struct Case {
        const char *name, *password, *repeated, *callsign, *group;
        int warning; // 0: an error from the database
    };
    const Case cases[] = {
        {"", "pw", "pw", "A", "Admins", 5602},         {"Zoe", "pw", "Pw", "A", "Admins", 5259},
        {"Zoe", "", "", "A", "Admins", 5258},          {"Zoe", "pw", "pw", "A", "", 5601},
        {"Zoe", "pw", "pw", "", "Admins", 2130},       {"Zoe", "pw", "pw", "9A", "Admins", 2130},
        {"ADMIN", "pw", "pw", "A", "Operators", 5119}, {" Zoe", "pw", "pw", "A", "Operators", 5116},
    };
    for (const Case& c : cases) {
        Enter(c.name, c.password, c.repeated, c.callsign, c.group);
        if (c.warning < 5100 || c.warning > 5199)
            prompt.ExpectWarning(Text(c.warning));
        else
            prompt.ExpectError(Text(c.warning).replace("#01", c.name));
        Click(*window, "cmdAddUser");
        prompt.Finish();
        EXPECT_FALSE(ListShown()) << c.name;
        EXPECT_EQ(Shown(*window, "txtCallsign"), c.callsign); // kept for correction
        EXPECT_EQ(Shown(*window, "txtPass_0").isEmpty(), c.warning == 5259 || c.warning == 5258);
    }
    EXPECT_EQ(Rows("user_profile", {"UserName"}), QStringList("admin"));
    EXPECT_EQ(session.Workspace().Users().Names(), QStringList("admin"));
    Click(*window, "cmdClearUserFields");
    EXPECT_EQ(Shown(*window, "txtCallsign"), "");
    Click(*window, "cmdCancelUser");
    EXPECT_EQ(Users(), before);
}

TEST_F(UserManagerTest, AccountsAreModifiedResetUnloggedAndDeleted)
{
    Open();
    Add("Zoe", "Alpha", "Operators");
    Select(*window, "lvUsers", {1});
    Click(*window, "cmdModify");
    EXPECT_TRUE(Child<QLineEdit>(*window, "txtUserName").isReadOnly());
    EXPECT_FALSE(Child<QWidget>(*window, "txtPass_0").isVisible());
    EXPECT_EQ(Shown(*window, "cmbGroup"), "Operators");
    Type(*window, "txtCallsign", "Night");
    Child<QComboBox>(*window, "cmbGroup").setCurrentText("Admins");
    Click(*window, "chkAllowDR");
    Click(*window, "cmdApply");
    EXPECT_EQ(Users().last(), "Zoe|Night|no|Admins|yes");
    EXPECT_EQ(Shown(*window, "sbStatus"), Text(2260));

    // The last administrator stays one, and can be edited otherwise.
    Select(*window, "lvUsers", {1});
    prompt.ExpectConfirmation(Text(2267), true);
    prompt.ExpectInfo(Text(2268));
    Click(*window, "cmdModify");
    Click(*window, "cmdResetPassword");
    prompt.Finish();
    EXPECT_EQ(database.Open("Zoe", "")->UserName(), "Zoe");
    Click(*window, "cmdCancelUser");
    Select(*window, "lvUsers", {0});
    Click(*window, "cmdModify");
    prompt.ExpectWarning(Text(5600));
    Click(*window, "cmdResetPassword");
    Click(*window, "cmdCancelUser");

    Select(*window, "lvUsers", {1});
    Click(*window, "cmdUnlog"); // not logged on: nothing is asked
    const auto row = session.Database().OpenTable("user_profile");
    row->Seek(2);
    row->Edit();
    row->SetField("logged_on", true);
    row->Update();
    Click(*window, "cmdFind");
    Select(*window, "lvUsers", {1});
    prompt.ExpectConfirmation(Text(2269), true);
    Click(*window, "cmdUnlog");
    EXPECT_EQ(Users().last(), "Zoe|Night|no|Admins|yes");
    EXPECT_EQ(Shown(*window, "sbStatus"), Text(2270));

    prompt.ExpectConfirmation(Text(2261), false);
    Click(*window, "cmdDel");
    EXPECT_EQ(Users().size(), 2);
    prompt.ExpectConfirmation(Text(2261), true);
    Click(*window, "cmdDel");
    EXPECT_EQ(Users(), QStringList("admin||no|Admins|yes"));
    EXPECT_EQ(Shown(*window, "sbStatus"), Text(2262));
    EXPECT_FALSE(Child<QAbstractButton>(*window, "cmdDel").isEnabled())
        << "the neighbour is not selected instead";
    EXPECT_EQ(session.Workspace().Users().Names(), QStringList("admin"));
    Select(*window, "lvUsers", {0});
    prompt.ExpectWarning(Text(5851)); // the own account, and no question before
    Click(*window, "cmdDel");
    EXPECT_EQ(Users(), QStringList("admin||no|Admins|yes"));
}
