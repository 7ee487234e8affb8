#include "AdminStack.h"

#include "admin/frmStatusEditor.h"
#include "core/session/Registry.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QSignalSpy>
#include <QTreeView>

#include <functional>

using driver::Child;
using driver::Click;
using driver::Type;

class StatusEditorTest : public AdminTest {
protected:
    StatusEditorTest()
    {
        AddRow("status", {{"status_code", 5}, {"in_desc", "Arrived"}, {"out_desc", "Proceed"}});
        AddRow("status", {{"status_code", 7}, {"in_desc", "Busy"}});
        window = std::make_unique<frmStatusEditor>(Services());
        window->show();
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    void Choose(int code) { Child<QComboBox>(*window, "cmbEditStatus").setCurrentIndex(code); }
    void Key(const char* widget, Qt::Key key)
    {
        QTest::keyClick(&Child<QWidget>(*window, QLatin1String(widget)), key);
    }
    QStringList Stored() { return Rows("status", {"status_code", "in_desc", "out_desc"}); }
    QString Texts() { return Shown(*window, "txtEditInDesc") + "|" + Shown(*window, "txtEditOutDesc"); }
    QStringList Listed() { return Lines(*window, "lvStati"); }

    std::unique_ptr<frmStatusEditor> window;
};

TEST_F(StatusEditorTest, MessagesAreShownSetAndDeleted)
{
    QSignalSpy changed(window.get(), &frmStatusEditor::StatiChanged);
    EXPECT_EQ(Listed(), QStringList({"5|Arrived|Proceed", "7|Busy|"}));
    for (const char* name : {"Command3", "txtEditInDesc", "txtEditOutDesc"})
        EXPECT_FALSE(Child<QWidget>(*window, name).isEnabled()) << "no code chosen";
    Select(*window, "lvStati", {1});
    EXPECT_EQ(Shown(*window, "cmbEditStatus"), "7");
    EXPECT_EQ(Texts(), "Busy|");
    Key("lvStati", Qt::Key_Return);
    EXPECT_TRUE(Child<QWidget>(*window, "txtEditInDesc").hasFocus());
    Type(*window, "txtEditOutDesc", "Wait");
    Key("txtEditOutDesc", Qt::Key_Return);
    EXPECT_EQ(Stored(), QStringList({"5|Arrived|Proceed", "7|Busy|Wait"}));

    Key("txtEditInDesc", Qt::Key_Insert);
    EXPECT_EQ(Shown(*window, "cmbEditStatus"), "");
    EXPECT_EQ(Texts(), "|");
    Choose(31);
    Type(*window, "txtEditInDesc", "Off");
    Click(*window, "Command3");
    EXPECT_EQ(Listed(), QStringList({"5|Arrived|Proceed", "7|Busy|Wait", "31|Off|"}));
    EXPECT_EQ(changed.count(), 2);

    Type(*window, "txtEditInDesc", QString(256, 'x')); // more than the field holds
    prompt.ExpectWarning(Text(5137).replace("#01", "in_desc"));
    Click(*window, "Command3");
    EXPECT_EQ(Stored().last(), "31|Off|");

    Select(*window, "lvStati", {0});
    prompt.ExpectQuestion(Text(2251), false);
    Click(*window, "Command5");
    prompt.ExpectQuestion(Text(2251), true);
    Key("lvStati", Qt::Key_Delete);
    EXPECT_EQ(Stored(), QStringList({"7|Busy|Wait", "31|Off|"}));
    EXPECT_EQ(Shown(*window, "cmbEditStatus"), "");
    EXPECT_EQ(changed.count(), 3);
}

TEST_F(StatusEditorTest, WhatAnotherConsoleDidMeanwhileIsNotOverwritten)
{
    const auto other = database.Open();
    const auto rows = other->Database().OpenTable("status");
    for (const int code : {5, 9}) { // one changed, one added
        Choose(code);
        Type(*window, "txtEditOutDesc", "mine");
        rows->Seek(code);
        if (rows->NoMatch()) {
            rows->AddNew();
            rows->SetField("status_code", code);
        } else {
            rows->Edit();
        }
        rows->SetField("in_desc", "theirs");
        rows->Update();
        prompt.ExpectQuestion(Text(5606), true);
        Click(*window, "Command3");
        prompt.Finish();
        EXPECT_TRUE(Texts().startsWith("theirs|")) << code;
        Type(*window, "txtEditOutDesc", "both");
        Click(*window, "Command3");
    }
    EXPECT_EQ(Stored(), QStringList({"5|theirs|both", "7|Busy|-", "9|theirs|both"}));

    // Choosing the code again, in the box or in the list, shows what is stored now.
    auto& codes = Child<QComboBox>(*window, "cmbEditStatus");
    auto& list = Child<QTreeView>(*window, "lvStati");
    const auto chooseAgain = {
        std::function<void()>([&] {
            codes.showPopup();
            QTest::keyClick(codes.view(), Qt::Key_Return);
        }),
        std::function<void()>([&] {
            QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier,
                              list.visualRect(list.model()->index(2, 0)).center());
        }),
    };
    for (const auto& choose : chooseAgain) {
        Type(*window, "txtEditInDesc", "mine");
        QCoreApplication::processEvents();
        choose();
        EXPECT_EQ(Texts(), "theirs|both");
    }
}

TEST_F(StatusEditorTest, DutyCodesDifferAndSurvive)
{
    EXPECT_EQ(Shown(*window, "cmbOnDuty") + Shown(*window, "cmbOffDuty"), "12");
    const auto stored = [this] {
        return RegistryGet(session, "on_off_duty", "-") + RegistryGet(session, "radio_onduty", "-") +
               RegistryGet(session, "radio_offduty", "-");
    };
    Click(*window, "chkOnOffDuty");
    Child<QComboBox>(*window, "cmbOnDuty").setCurrentIndex(2);
    prompt.ExpectWarning(Text(2250));
    Click(*window, "cmdApplyDuty");
    EXPECT_EQ(stored(), "---");
    Child<QComboBox>(*window, "cmbOnDuty").setCurrentIndex(31);
    Click(*window, "cmdApplyDuty");
    EXPECT_EQ(stored(), "1312");
    window = std::make_unique<frmStatusEditor>(Services());
    EXPECT_EQ(Shown(*window, "cmbOnDuty"), "31");
    window->show();
    const auto other = database.Open();
    other->BeginTrans(); // keeps this console from writing
    // A server is named without the role.
    prompt.ExpectWarning(Text(5107).replace("#01", session.DatabaseFile().remove("postgres@")));
    Click(*window, "cmdApplyDuty");
}
