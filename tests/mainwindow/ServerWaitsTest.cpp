// How often what a person asks for waits for the server.

#include "MainWindowStack.h"
#include "admin/frmAddressManager.h"
#include "admin/frmStatusEditor.h"
#include "admin/frmUserManager.h"
#include "core/session/Registry.h"
#include "mainwindow/talkgroups/RegroupRequests.h"
#include "mainwindow/talkgroups/RegroupStore.h"
#include "support/DialogDriver.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTreeView>

using driver::Child;
using driver::Click;
using driver::Type;
using driver::WhenShown;

namespace {

class ServerWaits : public testing::Test {
protected:
    int Waits() { return stack.session.Workspace().Waits(); }
    void Press(const char* list, Qt::Key key) { QTest::keyClick(&stack.Find<QTreeView>(list), key); }
    void Expect(const char* what, int most, const std::function<void()>& act)
    {
        const int before = Waits();
        act();
        QCoreApplication::processEvents();
        const int waits = Waits() - before;
        RecordProperty(what, waits);
        EXPECT_LE(waits, most) << what;
    }
    void AddEntry(frmAddressManager& directory)
    {
        const WhenShown editor("frmAddressEditor", [](QWidget& widget) {
            Type(widget, "txtCallsign", "Unit40");
            Type(widget, "txtIdent", "200200140");
            Type(widget, "txtName", "Car");
            Click(widget, "cmdUpdate");
        });
        Click(directory, "Command1");
    }
    // Counts what is stored apart from what is read for the editor.
    int ChangeEntry(frmAddressManager& directory)
    {
        int opened = 0;
        const WhenShown editor("frmAddressEditor", [&](QWidget& widget) {
            opened = Waits();
            Type(widget, "txtName", "Bus");
            Click(widget, "cmdUpdate");
        });
        auto& list = Child<QTreeView>(directory, "lvDir");
        list.setCurrentIndex(list.model()->index(1, 0));
        Click(directory, "cmdEdit");
        QCoreApplication::processEvents();
        return opened;
    }

    OpenStack stack;
};

TEST_F(ServerWaits, AreThreeAtMostForWhatAPersonAsksFor)
{
    if (!TestServer::IsWanted())
        GTEST_SKIP() << "needs a server";
    constexpr int most = 3;
    constexpr int changing = most + 1; // to find out whether somebody else was faster
    stack.Trigger("miLogOnLogOff");
    QCoreApplication::processEvents();
    ASSERT_TRUE(stack.Window().LoggedOn());
    RecordProperty("logon", Waits());
    EXPECT_LE(Waits(), most) << "logon";

    Expect("F5 individuals", most, [&] { Press("lvIndividuals", Qt::Key_F5); });
    Expect("F5 talkgroups", most, [&] { Press("tvGroups", Qt::Key_F5); });
    Expect("F5 log", most, [&] { Press("lvLog", Qt::Key_F5); });
    Expect("search", most, [&] {
        stack.Address().setEditText("Unit2?");
        stack.Click("cmdSearchAddress");
    });

    const AdminServices admin{stack.session, stack.prompt, stack.executive, stack.strings};
    frmAddressManager directory(admin);
    Expect("directory window", most, [&] {
        directory.ReloadDir();
        directory.show();
    });
    Expect("search in the directory", most, [&] {
        Type(directory, "txtLookFor", "unit");
        QTest::keyClick(&Child<QLineEdit>(directory, "txtLookFor"), Qt::Key_Return);
    });
    Expect("add an entry", changing, [&] { AddEntry(directory); });
    EXPECT_EQ(stack.session.Memory().Addresses().CallsignOf("200200140"), "Unit40");
    const int before = Waits();
    const int opened = ChangeEntry(directory);
    EXPECT_LE(opened - before, most) << "open an entry";
    EXPECT_LE(Waits() - opened, changing) << "change an entry";
    RecordProperty("open an entry", opened - before);
    RecordProperty("change an entry", Waits() - opened);

    std::unique_ptr<frmStatusEditor> stati;
    Expect("status window", most, [&] { stati = std::make_unique<frmStatusEditor>(admin); });
    QObject::connect(stati.get(), &frmStatusEditor::StatiChanged, &stack.Window(), &winMain::LoadStati);
    stati->show();
    for (const int code : {5, 9}) { // one that is there, one that is new
        Child<QComboBox>(*stati, "cmbEditStatus").setCurrentIndex(code);
        Type(*stati, "txtEditInDesc", "Here");
        Expect(code == 5 ? "change a status" : "add a status", changing, [&] { Click(*stati, "Command3"); });
    }
    Expect("duty codes", most, [&] { Click(*stati, "cmdApplyDuty"); });
    EXPECT_EQ(RegistryGet(stack.session, "radio_onduty", "none"), "1");

    std::unique_ptr<frmUserManager> users;
    Expect("user window", most, [&] { users = std::make_unique<frmUserManager>(admin); });
    users->show();
    Expect("details of a user", most, [&] { Click(*users, "cmdNew"); });
    Type(*users, "txtUserName", "Zoe");
    Type(*users, "txtPass_0", "pw");
    Type(*users, "txtPass_1", "pw");
    Type(*users, "txtCallsign", "Alpha");
    auto& groups = Child<QComboBox>(*users, "cmbGroup");
    groups.setCurrentIndex(groups.findText("Operators"));
    Expect("add a user", most, [&] { Click(*users, "cmdAddUser"); });
    EXPECT_TRUE(stack.session.Workspace().Users().IsMember("Zoe", "Operators"));
    Child<QTreeView>(*users, "lvUsers")
        .setCurrentIndex(Child<QTreeView>(*users, "lvUsers").model()->index(1, 0));
    Click(*users, "cmdModify");
    groups.setCurrentIndex(groups.findText("Admins"));
    Expect("change a user", changing, [&] { Click(*users, "cmdApply"); });
    EXPECT_TRUE(stack.session.Workspace().Users().IsMember("Zoe", "Admins"));

    RegroupStore store(stack.session, stack.eventLog,
                       stack.clock); // nobody waits for what the radio confirms
    Expect("regroup command", most, [&] {
        store.RequireRight();
        store.Open({.groupId = 1, .memberId = 2, .pos = 3});
    });
}

} // namespace
