// What the send pane lets through, and how it is worked with keys alone.

#include "MainWindowStack.h"

#include <QComboBox>
#include <QLineEdit>
#include <QToolButton>

namespace {

struct SendCase {
    const char* name;
    const char* type; // selector button
    QString address;
    QString message;
    QStringList operations; // empty: refused
    const char* focus;      // on refusal
    int warning = 0;
};

const QString Long(100, QLatin1Char('x'));

const SendCase Cases[] = {
    {"Chosen", "status", "Unit20", "05 - Proceed", {"SendStatusMessage 0 2 5"}, ""},
    {"Highest", "status", "Unit20", "31", {"SendStatusMessage 0 2 31"}, ""},
    {"OneDigit", "status", "Unit20", "7", {"SendStatusMessage 0 2 7"}, ""},
    {"Zero", "status", " 22 ", "00 - x", {"SendStatusMessage 0 4 0"}, ""},
    {"TooHigh", "status", "Unit20", "32", {}, "cmbStatusMessage"},
    {"Negative", "status", "Unit20", "-1", {}, "cmbStatusMessage"},
    {"Letters", "status", "Unit20", "AB", {}, "cmbStatusMessage"},
    {"NoStatus", "status", "Unit20", "", {}, "cmbStatusMessage"},
    {"NoAddress", "status", " ; ;", "05", {}, "cmbAddress"},
    {"NoAddressBeforeBadStatus", "status", "", "AB", {}, "cmbAddress"},
    {"TwoAddresses", "status", "Unit20;Unit22", "05", {}, "", 2001},
    {"TwoAddressesAfterBadStatus", "status", "Unit20;Unit22", "AB", {}, "cmbStatusMessage"},
    {"OneAddressAmongSeparators", "status", ";Unit20;", "05", {"SendStatusMessage 0 2 5"}, ""},
    {"Text", "text", "Unit20", "  on my way ", {"SendTextMessage 0 2 on my way off"}, ""},
    {"LongestText", "text", "Unit20", " " + Long + " ", {"SendTextMessage 0 2 " + Long + " off"}, ""},
    {"TextTooLong", "text", "Unit20", Long + "x", {}, "cmbTextMessage"},
    {"BlankText", "text", "Unit20", "   ", {}, "cmbTextMessage"},
    {"Call", "call", "Unit20", "", {"MakeCall 0 2 off off off"}, ""},
    {"CallToTwo", "call", "Unit20;Unit22", "", {}, "", 2001},
};

TEST(SendPane, SendsWhatIsValidAndRefusesTheRest)
{
    LoggedOnStack stack;
    for (const SendCase& c : Cases) {
        SCOPED_TRACE(c.name);
        stack.beeper.beeps = 0;
        stack.Click((std::string("tbMessageSelector_") + c.type).c_str());
        stack.Address().setEditText(c.address);
        const char* box = std::string(c.type) == "text" ? "cmbTextMessage" : "cmbStatusMessage";
        stack.Find<QComboBox>(box).setEditText(c.message);
        stack.Find<QWidget>("cmdSend").setFocus();
        if (c.warning != 0)
            stack.prompt.ExpectWarning(stack.Text(c.warning));
        stack.Click("cmdSend");
        stack.prompt.Finish();

        EXPECT_EQ(stack.control->TakeOperations(), c.operations);
        EXPECT_EQ(stack.beeper.beeps, c.operations.isEmpty() && c.warning == 0 ? 1 : 0);
        if (c.focus[0] != '\0') {
            EXPECT_EQ(stack.Window().focusWidget(), &stack.Find<QWidget>(c.focus));
        }
        EXPECT_EQ(stack.Address().currentText(), c.address) << "the pane keeps its contents";
        EXPECT_EQ(stack.Find<QComboBox>(box).currentText(), c.message);
        stack.executive.ResetTran();
        stack.control->TakeOperations();
    }
}

struct MenuCase {
    const char* item;
    const char* operation;
};

TEST(SendPane, MenuCommandsPrepareEveryKindOfCall)
{
    constexpr MenuCase MenuCases[] = {
        {"miSendCall", "MakeCall 0 2 off off on"},      {"miSendEmrgCall", "MakeCall 0 2 on off on"},
        {"miSendPriorCall", "MakeCall 0 2 off on on"},  {"miSendBcast", "MakeCall 0 2 off off off"},
        {"miSendEmrgBcast", "MakeCall 0 2 on off off"}, {"miSendPriorBcast", "MakeCall 0 2 off on off"},
    };
    LoggedOnStack stack;
    stack.Address().setEditText(QStringLiteral("Unit20"));
    for (const MenuCase& c : MenuCases) {
        stack.Trigger(c.item);
        EXPECT_EQ(stack.control->TakeOperations(), QStringList()) << "the menu only prepares";
        stack.Click("cmdSend");
        EXPECT_EQ(stack.control->TakeOperations(), QStringList({QLatin1String(c.operation)})) << c.item;
        stack.executive.ResetTran();
        stack.control->TakeOperations();
    }
}

TEST(SendPane, EmergencyAndPriorityExcludeEachOther)
{
    LoggedOnStack stack;
    stack.Trigger("miSendCall");
    const auto pressed = [&](const char* name) { return stack.Find<QToolButton>(name).isChecked(); };
    const auto expect = [&](bool emergency, bool priority) {
        EXPECT_EQ(pressed("tbCallOptions_emergency"), emergency);
        EXPECT_EQ(pressed("tbCallOptions_priority"), priority);
        EXPECT_TRUE(pressed("tbCallOptions_dialog"));
    };
    stack.Click("tbCallOptions_emergency");
    expect(true, false);
    stack.Click("tbCallOptions_priority");
    expect(false, true);
    stack.Click("tbCallOptions_emergency");
    expect(true, false);
    stack.Click("tbCallOptions_emergency");
    expect(false, false);
}

struct TypeCase {
    const char* type;
    QStringList shown;
    const char* focusWithAddress;
};

TEST(SendPane, EachMessageTypeShowsItsOwnControls)
{
    const TypeCase TypeCases[] = {
        {"text", {"cmbTextMessage", "tbSdmOptions"}, "cmbTextMessage"},
        {"call", {"tbCallOptions"}, "cmbAddress"},
        {"status", {"cmbStatusMessage"}, "cmbStatusMessage"},
    };
    LoggedOnStack stack;
    EXPECT_TRUE(stack.Find<QToolButton>("tbMessageSelector_status").isChecked());
    EXPECT_TRUE(stack.Find<QToolButton>("tbSdmOptions_seven").isChecked());
    for (const TypeCase& c : TypeCases) {
        stack.Address().setEditText(QStringLiteral(" "));
        stack.Click((std::string("tbMessageSelector_") + c.type).c_str());
        EXPECT_EQ(stack.Window().focusWidget(), &stack.Address()) << c.type;
        stack.Address().setEditText(QStringLiteral("Unit20"));
        stack.Click((std::string("tbMessageSelector_") + c.type).c_str());
        EXPECT_EQ(stack.Window().focusWidget(), &stack.Find<QWidget>(c.focusWithAddress));
        EXPECT_TRUE(
            stack.Find<QToolButton>((std::string("tbMessageSelector_") + c.type).c_str()).isChecked());
        for (const char* name : {"cmbTextMessage", "cmbStatusMessage", "tbSdmOptions", "tbCallOptions"}) {
            const bool shown = c.shown.contains(QLatin1String(name));
            EXPECT_EQ(stack.Find<QWidget>(name).isVisible(), shown) << c.type << " " << name;
            EXPECT_EQ(stack.Find<QWidget>(name).isEnabled(), shown) << c.type << " " << name;
        }
    }
}

TEST(SendPane, AStatusIsSentWithKeysAlone)
{
    LoggedOnStack stack;
    QTest::keyClick(&stack.Window(), Qt::Key_T, Qt::AltModifier); // the label of the address box
    ASSERT_EQ(stack.Window().focusWidget(), &stack.Address());
    QTest::keyClicks(stack.Window().focusWidget(), QStringLiteral("Unit20"));
    QTest::keyClick(stack.Window().focusWidget(), Qt::Key_Tab);
    QTest::keyClick(stack.Window().focusWidget(), Qt::Key_Down);
    EXPECT_EQ(stack.Find<QComboBox>("cmbStatusMessage").currentText(), QStringLiteral("05 - Proceed"));
    QTest::keyClick(stack.Window().focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(stack.Window().focusWidget()->objectName(), QStringLiteral("cmdSend"));
    QTest::keyClick(stack.Window().focusWidget(), Qt::Key_Return);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList({QStringLiteral("SendStatusMessage 0 2 5")}));
}

TEST(SendPane, EnterSendsFromEveryBoxButNotWithModifiers)
{
    LoggedOnStack stack;
    stack.Address().setEditText(QStringLiteral("Unit20"));
    stack.Find<QComboBox>("cmbStatusMessage").setEditText(QStringLiteral("31"));
    for (const char* name : {"cmbAddress", "cmbStatusMessage"}) {
        auto* box = stack.Find<QComboBox>(name).lineEdit();
        for (const Qt::KeyboardModifier modifier : {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier})
            QTest::keyClick(box, Qt::Key_Return, modifier);
        EXPECT_EQ(stack.control->TakeOperations(), QStringList());
        QTest::keyClick(box, Qt::Key_Enter, Qt::KeypadModifier);
        EXPECT_EQ(stack.control->TakeOperations(), QStringList({QStringLiteral("SendStatusMessage 0 2 31")}))
            << name;
        stack.executive.ResetTran();
        stack.control->TakeOperations();
    }
    EXPECT_EQ(stack.Address().count(), 0) << "the address box keeps no entries";
    EXPECT_EQ(stack.Find<QComboBox>("cmbStatusMessage").count(), 2);
}

TEST(SendPane, AltSevenAndEightChooseTheEncodingFromAnywhere)
{
    LoggedOnStack stack;
    const auto eight = [&] { return stack.Find<QToolButton>("tbSdmOptions_eight").isChecked(); };
    QTest::keyClick(stack.Address().lineEdit(), Qt::Key_8, Qt::AltModifier);
    EXPECT_TRUE(eight());
    stack.Click("tbMessageSelector_text");
    stack.Address().setEditText(QStringLiteral("Unit20"));
    stack.Find<QComboBox>("cmbTextMessage").setEditText(QStringLiteral("ä"));
    stack.Click("cmdSend");
    EXPECT_EQ(stack.control->TakeOperations(), QStringList({QStringLiteral("SendTextMessage 0 2 ä on")}));
    QTest::keyClick(&stack.Find<QWidget>("lvLog"), Qt::Key_7, Qt::AltModifier);
    EXPECT_FALSE(eight());
    EXPECT_EQ(stack.Address().currentText(), QStringLiteral("Unit20"));
}

TEST(SendPane, SendsNothingWhileNobodyIsLoggedOn)
{
    OpenStack stack;
    stack.Address().setEditText(QStringLiteral("Unit20"));
    QTest::keyClick(stack.Address().lineEdit(), Qt::Key_Return);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList());
    EXPECT_EQ(stack.beeper.beeps, 0);
}

TEST(SendPane, StatiThatCannotBeReadLeaveAnEmptyList)
{
    LoggedOnStack stack;
    EXPECT_EQ(stack.statusTexts.StatusInText(7), QStringLiteral("07 - Busy"));
    stack.session.onUse = [] { throw Error(ErrorCode::General, QStringLiteral("gone")); };
    stack.Window().LoadStati();
    stack.session.onUse = nullptr;
    EXPECT_EQ(stack.Find<QComboBox>("cmbStatusMessage").count(), 0);
    EXPECT_EQ(stack.statusTexts.StatusInText(7), QStringLiteral("Status 7 in."));
}

TEST(SendPane, BoxesFollowTheWidthOfThePane)
{
    OpenStack stack;
    for (const int width : {600, 1000, 450}) {
        stack.Window().resize(width, 400);
        const QRect address = stack.Address().geometry();
        EXPECT_EQ(address.width(), width - 195);
        EXPECT_EQ(stack.Find<QWidget>("cmbStatusMessage").geometry(),
                  address.translated(0, address.height() + 2));
        EXPECT_EQ(stack.Find<QWidget>("cmdSend").geometry().right(), address.right());
    }
    stack.Window().resize(300, 400);
    EXPECT_EQ(stack.Address().width(), 450 - 195) << "a narrow pane is not rearranged";
}

} // namespace
