#include "AdminStack.h"

#include "admin/DirectoryModel.h"
#include "admin/frmAddressManager.h"
#include "core/desktop/ShowModal.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QListWidget>
#include <QSignalSpy>
#include <QTreeView>

using driver::Child;
using driver::Click;
using driver::Type;
using driver::WhenShown;

class DirectoryTest : public AdminTest {
protected:
    DirectoryTest()
    {
        Entry("Unit20", "200200120", 1, false);
        Entry("unit22", "200200122", 1, true);
        Entry("Patrol", "200200130", 1, false);
        Entry("Night", "200550091", 2, true);
        AddRow("dynamic_regroup", {{"group_id", 4}, {"member_id", 1}, {"pos", 3}});
        window.ReloadDir();
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void Entry(const char* callsign, const char* ident, int type, bool dynamic)
    {
        AddRow("address", {{"callsign", callsign},
                           {"IDENT", ident},
                           {"Type", type},
                           {"dynamic", dynamic},
                           {type == 1 ? "Name" : "default_pos", type == 1 ? QVariant("Car") : QVariant(16)}});
    }
    QStringList Listed() { return Lines(window, "lvDir"); }
    QStringList Stored()
    {
        return Rows("address", {"callsign", "IDENT", "dynamic", "note", "Type", "Name", "default_pos"});
    }
    void Key(const char* widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&Child<QWidget>(window, QLatin1String(widget)), key, modifiers);
    }
    // Opens the editor by a key of the list and works in it.
    void Edit(Qt::Key key, Qt::KeyboardModifiers modifiers, const std::function<void(QWidget&)>& act)
    {
        const WhenShown editor("frmAddressEditor", [&](QWidget& widget) {
            act(widget);
            EXPECT_FALSE(widget.isVisible());
            widget.close();
        });
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        Key("lvDir", key, modifiers);
    }
    static void Fill(QWidget& editor, const char* callsign, const char* ident, const char* name)
    {
        Type(editor, "txtCallsign", callsign);
        Type(editor, "txtIdent", ident);
        if (name)
            Type(editor, "txtName", name);
    }

    frmAddressManager window{Services()};
};

TEST_F(DirectoryTest, ListsSortsAndSearches)
{
    EXPECT_EQ(Listed(),
              QStringList({"Night|200550091", "Patrol|200200130", "Unit20|200200120", "unit22|200200122"}));
    auto& list = Child<QTreeView>(window, "lvDir");
    QStringList icons;
    for (int row = 0; row < 4; ++row) {
        icons.append(list.model()->index(row, 0).data(DirectoryModel::IconKeyRole).toString());
        EXPECT_FALSE(list.model()->index(row, 0).data(Qt::DecorationRole).value<QIcon>().isNull());
    }
    EXPECT_EQ(icons, QStringList({"talkgroup_dynamic", "individual", "individual", "individual_dynamic"}));
    EXPECT_EQ(list.model()->index(1, 0).data(DirectoryModel::TagRole), 3);

    Select(window, "lvDir", {2});
    const auto sortBy = [&](int column) {
        QTest::mouseClick(list.header()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          {list.header()->sectionViewportPosition(column) + 5, list.header()->height() / 2});
    };
    QSignalSpy resets(list.model(), &QAbstractItemModel::modelReset);
    sortBy(0); // the order that it has
    EXPECT_EQ(resets.count(), 0);
    sortBy(1);
    EXPECT_EQ(resets.count(), 1);
    EXPECT_EQ(Listed(),
              QStringList({"Unit20|200200120", "unit22|200200122", "Patrol|200200130", "Night|200550091"}));
    EXPECT_EQ(list.currentIndex().row(), 0); // still the same entry
    for (const auto& [lookFor, found] :
         {std::pair("UNIT", 2), std::pair("n?ght", 1), std::pair("%", 0), std::pair("", 4)}) {
        Type(window, "txtLookFor", lookFor);
        Key("txtLookFor", Qt::Key_Return);
        EXPECT_EQ(Listed().size(), found) << lookFor;
    }

    Type(window, "txtLookFor", "unit");
    Key("txtLookFor", Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(Listed().size(), 4) << "Shift+Enter does not search";

    session.onUse = [] { throw std::runtime_error("gone"); };
    prompt.ExpectQuestion(Text(2150), true);
    prompt.ExpectQuestion(Text(2150), false);
    Key("lvDir", Qt::Key_F5);
    EXPECT_EQ(Listed(), QStringList());
    session.onUse = nullptr;
}

TEST_F(DirectoryTest, AddsWhatIsValidAndRefusesTheRest)
{
    const QStringList before = Stored();
    Edit(Qt::Key_I, Qt::ControlModifier, [&](QWidget& editor) {
        EXPECT_EQ(editor.windowTitle(), Text(2131));
        EXPECT_FALSE(Child<QWidget>(editor, "lsPos").isVisible());
        const struct {
            const char *callsign, *ident, *name;
            QString warning;
            const char* focus;
        } refused[] = {
            {"9Car", "200200140", "Car", Text(2130), "txtCallsign"},
            {"", "200200140", "Car", Text(2130), "txtCallsign"},
            {"Car", "200200140", "7", Text(2138), "txtName"},
            {"Car", "abc", "Car", Text(5001).replace("#01", "a"), "txtIdent"},
            {"UNIT20", "200200140", "Car", Text(5145).replace("#02", "UNIT20"), nullptr},
            {"Car", "22", "Car", Text(5146).replace("#02", "200200122"), nullptr}, // as it is dialled in full
        };
        for (const auto& c : refused) {
            Fill(editor, c.callsign, c.ident, c.name);
            prompt.ExpectWarning(c.warning);
            Click(editor, "cmdUpdate");
            prompt.Finish();
            EXPECT_TRUE(editor.isVisible());
            if (c.focus) {
                EXPECT_EQ(editor.focusWidget()->objectName(), c.focus);
            }
        }
        EXPECT_EQ(Stored(), before);
        Fill(editor, "  Max 7 ", "40", " Wagen_7 ");
        Click(editor, "cmdUpdate");
    });
    EXPECT_EQ(Stored().mid(4), QStringList("Max 7|200200140|false|-|1|Wagen_7|-"));
    EXPECT_EQ(Listed().size(), 5);

    Edit(Qt::Key_G, Qt::ControlModifier, [&](QWidget& editor) {
        EXPECT_EQ(editor.windowTitle(), Text(2133));
        EXPECT_FALSE(Child<QWidget>(editor, "txtName").isVisible());
        Fill(editor, "x", "200550092", nullptr);
        Child<QLineEdit>(editor, "txtCallsign").setText("Жmega");
        Type(editor, "txtNote", "late shift");
        Click(editor, "chkDynamic");
        Child<QListWidget>(editor, "lsPos").setCurrentRow(15);
        prompt.ExpectWarning(Text(5605).replace("#01", "Ж")); // nothing that a radio could show
        Click(editor, "cmdUpdate");
    });
    EXPECT_TRUE(Stored().last().endsWith("|late shift|2|-|16")) << Stored().last().toStdString();

    QSignalSpy changed(&window, &frmAddressManager::DirectoryChanged);
    QObject::connect(&window, &frmAddressManager::DirectoryChanged, &window,
                     [this] { EXPECT_TRUE(window.isVisible()) << "the lists follow before it hides"; });
    Click(window, "cmdClose");
    EXPECT_FALSE(window.isVisible());
    window.show();
    Click(window, "cmdClose"); // nothing new
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(DirectoryTest, EditsAndProtectsWhatIsRegrouped)
{
    Select(window, "lvDir", {1});
    Edit(Qt::Key_Return, Qt::NoModifier, [&](QWidget& editor) {
        EXPECT_EQ(editor.windowTitle(), Text(2136));
        EXPECT_EQ(Shown(editor, "txtIdent"), "200200130");
        Type(editor, "txtNote", "x");
        Click(editor, "Command2"); // cancelled
    });
    EXPECT_EQ(Stored()[2], "Patrol|200200130|false|-|1|Car|-");

    Select(window, "lvDir", {0});
    Edit(Qt::Key_Return, Qt::NoModifier, [&](QWidget& editor) {
        EXPECT_EQ(editor.windowTitle(), Text(2137));
        EXPECT_EQ(Child<QListWidget>(editor, "lsPos").currentItem()->text(), "16");
        for (const char* key : {"txtCallsign", "txtIdent", "chkDynamic", "lsPos"})
            EXPECT_FALSE(Child<QWidget>(editor, key).isEnabled()) << key;
        Type(editor, "txtNote", "kept apart");
        Click(editor, "cmdUpdate");
    });
    EXPECT_EQ(Stored()[3], "Night|200550091|true|kept apart|2|-|16");
}

TEST_F(DirectoryTest, WhatAnotherConsoleDidMeanwhileIsSaidAndNotOverwritten)
{
    const auto other = database.Open();
    const auto change = [&](const char* field, const QVariant& value) {
        const auto rows = other->Database().OpenTable("address");
        rows->Seek(3);
        rows->Edit();
        rows->SetField(QLatin1String(field), value);
        rows->Update();
    };
    Select(window, "lvDir", {1});
    Edit(Qt::Key_Return, Qt::NoModifier, [&](QWidget& editor) {
        change("note", "theirs"); // no lock is in the way
        Type(editor, "txtName", "Mine");
        for (const bool reload : {false, true}) {
            prompt.ExpectQuestion(Text(5603), reload);
            Click(editor, "cmdUpdate");
            prompt.Finish();
            EXPECT_EQ(Shown(editor, "txtName"), reload ? "Car" : "Mine");
        }
        EXPECT_EQ(Shown(editor, "txtNote"), "theirs");
        const auto rows = other->Database().OpenTable("dynamic_regroup");
        rows->AddNew();
        rows->SetField("group_id", 4);
        rows->SetField("member_id", 3);
        rows->SetField("pos", 1);
        rows->Update();
        Type(editor, "txtCallsign", "Renamed");
        prompt.ExpectWarning(Text(5604));
        Click(editor, "cmdUpdate");
        EXPECT_EQ(Shown(editor, "txtCallsign"), "Patrol");
        EXPECT_FALSE(Child<QWidget>(editor, "txtCallsign").isEnabled());
        Type(editor, "txtName", "Both");
        Click(editor, "cmdUpdate");
    });
    EXPECT_EQ(Stored()[2], "Patrol|200200130|false|theirs|1|Both|-");

    const auto gone = other->Database().QueryDef("drop_address");
    gone->SetParameter("id", 2);
    gone->Execute();
    Select(window, "lvDir", {3});
    prompt.ExpectWarning(Text(2135));
    Key("lvDir", Qt::Key_Return);
}

TEST_F(DirectoryTest, DeletesAsConfirmedExceptWhatIsRegrouped)
{
    const auto question = [this](int id, const char* callsign) { return Text(id).replace("#01", callsign); };
    Key("lvDir", Qt::Key_Delete); // nothing selected
    Select(window, "lvDir", {1});
    prompt.ExpectConfirmation(question(2152, "Patrol"), false);
    Key("lvDir", Qt::Key_Delete);
    EXPECT_EQ(Listed().size(), 4);

    Select(window, "lvDir", {3, 2, 1});
    prompt.ExpectChoice(Text(2151), true);
    prompt.ExpectConfirmation(question(2152, "Patrol"), true);
    prompt.ExpectConfirmation(question(2152, "Unit20"), true);
    prompt.ExpectWarning(question(2153, "Unit20"));
    prompt.ExpectConfirmation(question(2152, "unit22"), false);
    Click(window, "Command4");
    EXPECT_EQ(Listed(), QStringList({"Night|200550091", "Unit20|200200120", "unit22|200200122"}));

    Entry("Zulu", "200200131", 1, false);
    Key("lvDir", Qt::Key_F5);
    Child<QTreeView>(window, "lvDir").selectAll();
    prompt.ExpectChoice(Text(2151), false);
    prompt.ExpectWarning(question(2153, "Night"));
    prompt.ExpectWarning(question(2153, "Unit20"));
    Key("lvDir", Qt::Key_Delete);
    EXPECT_EQ(Listed(), QStringList({"Night|200550091", "Unit20|200200120"}));

    QSignalSpy changed(&window, &frmAddressManager::DirectoryChanged);
    window.close();
    EXPECT_EQ(changed.count(), 1);
}
