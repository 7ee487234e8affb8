// What the send pane lets through, and how it is worked with keys alone.

#include "MainWindowStack.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
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

// Keys as they come from a keyboard, in words; anything else is typed.
void Press(QWidget& window, const QStringList& keys)
{
    for (const QString& key : keys) {
        const QKeyCombination known = QKeySequence(key)[0];
        if (key.size() > 1 && known.key() != Qt::Key_unknown)
            QTest::keyClick(window.focusWidget(), known.key(), known.keyboardModifiers());
        else
            QTest::keyClicks(window.focusWidget(), key);
    }
}

struct CompletionCase {
    const char* name;
    QStringList keys;
    const char* offered; // the first of how many
    int count;
    const char* address; // afterwards
    bool sent;
};

TEST(SendPane, PartiesAreOfferedAndChangeNothingUntilOneIsChosen)
{
    const CompletionCase CompletionCases[] = {
        {"Callsign", {"unit"}, "Unit20", 2, "unit", false},
        {"Number", {"20020012"}, "Dispatch", 3, "20020012", false},
        {"Nothing", {"zzz"}, "", 0, "zzz", false},
        {"TypedOut", {"Unit20"}, "", 0, "Unit20", false},
        {"EnterWithNoneChosenSends", {"22", "Return"}, "", 0, "22", true},
        {"Chosen", {"unit", "Down", "Down", "Return"}, "", 0, "Unit22", false},
        {"ChosenAndSent", {"unit", "Down", "Return", "Return"}, "", 0, "Unit20", true},
        {"PastTheEnd", {"un", "Up", "Down", "Return"}, "", 0, "un", true},
        {"Closed", {"unit", "Down", "Esc"}, "", 0, "unit", false},
        {"SecondAddress", {"Unit20;unit", "Up", "Return"}, "", 0, "Unit20;Unit22", false},
    };
    for (const CompletionCase& c : CompletionCases) {
        SCOPED_TRACE(c.name);
        LoggedOnStack stack;
        stack.Window().activateWindow();
        stack.Find<QComboBox>("cmbStatusMessage").setEditText("05");
        stack.Address().setFocus();
        const bool unknown = QByteArray(c.name) == "PastTheEnd";
        if (unknown)
            stack.prompt.ExpectWarning(stack.Text(5332).replace("#01", "un"));
        Press(stack.Window(), c.keys);
        auto& offer = stack.Find<QListWidget>("lsParties");
        EXPECT_EQ(offer.isVisible(), c.count > 0);
        if (c.count > 0) {
            EXPECT_EQ(offer.count(), c.count);
            EXPECT_TRUE(offer.item(0)->text().startsWith(c.offered)) << offer.item(0)->text().toStdString();
        }
        EXPECT_EQ(stack.Address().currentText(), QString(c.address));
        EXPECT_EQ(stack.control->TakeOperations().isEmpty(), !c.sent || unknown);
        EXPECT_EQ(stack.Address().count(), 0);
        stack.Find<QComboBox>("cmbStatusMessage").setFocus();
        EXPECT_FALSE(offer.isVisible()) << "it goes with the keyboard";
    }
}

TEST(SendPane, WhatWasSentIsRecalledAndKeptInNoBox)
{
    LoggedOnStack stack;
    stack.Click("tbMessageSelector_text");
    auto& text = stack.Find<QComboBox>("cmbTextMessage");
    for (const auto& [to, what] : {std::pair("Unit20", "first"), std::pair("Unit22", "second")}) {
        stack.Address().setEditText(to);
        text.setEditText(what);
        stack.Click("cmdSend");
        stack.executive.ResetTran();
    }
    text.setFocus();
    text.setEditText("draft");
    const auto after = [&](QComboBox& box, const char* key) {
        Press(stack.Window(), {key});
        return box.currentText();
    };
    EXPECT_EQ(after(text, "Up"), "second");
    EXPECT_EQ(after(text, "Up"), "first");
    EXPECT_EQ(after(text, "Up"), "first");
    EXPECT_EQ(after(text, "Down"), "second");
    EXPECT_EQ(after(text, "Down"), "draft");
    EXPECT_EQ(after(text, "Down"), "draft");
    stack.Address().setFocus();
    EXPECT_EQ(after(stack.Address(), "Up"), "Unit22");
    EXPECT_EQ(after(stack.Address(), "Alt+Up"), "Unit20") << "what stands there is not offered again";
    EXPECT_EQ(text.count() + stack.Address().count(), 0);
    stack.LogOff();
    stack.LogOn();
    stack.Address().setEditText({});
    EXPECT_EQ(after(stack.Address(), "Alt+Up"), "") << "it was another operator's";
}

struct RoomCase {
    const char* text;
    bool eightBit;
    const char* room;
};

TEST(SendPane, RemainingCharactersAreCountedByTheCoding)
{
    const std::string hundred(100, 'x');
    const std::string eighty(89, 'x');
    const RoomCase RoomCases[] = {
        {"", false, "100 characters left"},
        {"  Hello ", false, "95 characters left"},
        {hundred.c_str(), false, "0 characters left"},
        {(eighty).c_str(), true, "1 characters too many"},
        {"\xC3\xA4", false, "\xC3\xA4 cannot be sent in this coding"},
        {"\xC3\xA4", true, "87 characters left"},
    };
    LoggedOnStack stack;
    stack.Click("tbMessageSelector_text");
    for (const RoomCase& c : RoomCases) {
        stack.Click(c.eightBit ? "tbSdmOptions_eight" : "tbSdmOptions_seven");
        stack.Find<QComboBox>("cmbTextMessage").setEditText(c.text);
        EXPECT_EQ(stack.Find<QLabel>("lblRoom").text(), QString(c.room)) << c.text;
    }
}

TEST(SendPane, AKeyPreparesWhatIsKeptUnderItAndSendsNothing)
{
    LoggedOnStack stack;
    const auto key = [&](Qt::Key code) { QTest::keyClick(&stack.Window(), code, Qt::ControlModifier); };
    stack.Address().setEditText("Unit20");
    stack.Find<QComboBox>("cmbStatusMessage").setEditText("05");
    stack.Trigger("miKeepFavourite1");
    stack.Trigger("miSendCall");
    stack.Address().setEditText("Unit22");
    stack.Trigger("miKeepFavourite8");
    for (const char* emergency : {"miSendEmrgCall", "miSendPriorBcast"}) {
        stack.Trigger(emergency);
        stack.prompt.ExpectWarning(stack.Text(6467));
        stack.Trigger("miKeepFavourite2");
        stack.prompt.Finish();
    }
    stack.Click("tbMessageSelector_text");
    stack.Find<QComboBox>("cmbTextMessage").setEditText(" Return; to [base] ");
    stack.Trigger("miKeepText9");
    stack.prompt.ExpectWarning(stack.Text(6740));
    stack.Trigger("miKeepFavourite8"); // which would free the place
    stack.prompt.Finish();

    // The emergency call that was prepared last leaves nothing behind.
    stack.Trigger("miSendEmrgCall");
    stack.Address().setEditText("");
    key(Qt::Key_F8);
    EXPECT_EQ(stack.Address().currentText(), "Unit22");
    EXPECT_EQ(stack.control->TakeOperations(), QStringList());
    QTest::keyClick(stack.Window().focusWidget(), Qt::Key_Return);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList{"MakeCall 0 4 off off on"});
    stack.executive.ResetTran();
    stack.control->TakeOperations();
    key(Qt::Key_F1);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList());
    QTest::keyClick(stack.Window().focusWidget(), Qt::Key_Return);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList{"SendStatusMessage 0 2 5"});
    stack.executive.ResetTran();
    stack.control->TakeOperations();
    key(Qt::Key_9);
    EXPECT_EQ(stack.Find<QComboBox>("cmbTextMessage").currentText(), "Return; to [base]");
    stack.prompt.ExpectInfo(stack.Text(6465));
    key(Qt::Key_F2);
    stack.prompt.Finish();
    EXPECT_EQ(
        stack.settings.Read("quick " + stack.session.Workspace().UserName().toCaseFolded(), "favourite1", {}),
        "status 05 Unit20");

    QMenu& parties = *stack.Action("miLastParties").menu();
    Q_EMIT parties.aboutToShow();
    ASSERT_EQ(parties.actions().size(), 2);
    parties.actions().at(1)->trigger();
    EXPECT_EQ(stack.Address().currentText(), "Unit22");
    // Whoever wrote or called stands in front, once, by what reaches him.
    Q_EMIT stack.control->StatusReceived(0, 4, 5);
    Q_EMIT stack.control->TextReceived("hello", 0, 77);
    Q_EMIT parties.aboutToShow();
    ASSERT_EQ(parties.actions().size(), 3);
    EXPECT_EQ(parties.actions().at(0)->text(), "/0000077");
    EXPECT_EQ(parties.actions().at(1)->text(), "Unit22");
    stack.LogOff();
    key(Qt::Key_F1);
    EXPECT_EQ(stack.Address().currentText(), "Unit22") << "nobody is logged on";
    EXPECT_EQ(stack.control->TakeOperations().filter("Send"), QStringList());
}

} // namespace
