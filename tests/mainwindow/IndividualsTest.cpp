// The list of individuals: who is shown, what a selection does, and duty status from the air.

#include "RegroupStack.h"
#include "core/session/Registry.h"
#include "mainwindow/individuals/IndividualsModel.h"

#include <QAbstractButton>
#include <QComboBox>

namespace {

class IndividualsStack : public RegroupStack {
public:
    IndividualsStack()
    {
        for (const char* callsign : {"Unit20", "Unit25"})
            SetDynamic(QLatin1String(callsign));
        window->SelectTab(MainTabs::Tab::Individuals);
        window->ReloadInds();
    }

    void SetDynamic(const QString& callsign)
    {
        const auto directory = EntryOf(callsign);
        directory->Edit();
        directory->SetField(QStringLiteral("dynamic"), true);
        directory->Update();
        session.Changes().TellOwn(QStringLiteral("address"));
    }
    QTreeView& List() { return Find<QTreeView>("lvIndividuals"); }
    QString Callsigns()
    {
        QStringList callsigns;
        for (int row = 0; row < List().model()->rowCount(); ++row)
            callsigns.append(List().model()->index(row, 0).data().toString());
        return callsigns.join(QLatin1Char(' '));
    }
    void Pick(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseClick(List().viewport(), Qt::LeftButton, modifiers,
                          List().visualRect(List().model()->index(row, 0)).center());
    }
    QString Address() { return Find<QComboBox>("cmbAddress").currentText(); }
};

TEST(Individuals, WhoIsShownFollowsDutyModeLimitAndSearch)
{
    IndividualsStack stack;
    struct Case {
        const char* mode;
        const char* limit;
        const char* lookfor;
        const char* shown;
    };
    const auto duty = [&](const char* callsign, bool on) {
        stack.executive.UpdateDutyStatus(QLatin1String(callsign), on);
    };
    duty("Dispatch", false);
    duty("Unit22", true);
    duty("Unit25", true);
    duty("Unit27", true);
    for (const Case& c : {Case{"1", "500", "", "Unit22 Unit25 Unit27"}, Case{"1", "2", "", "Unit22 Unit25"},
                          Case{"0", "500", "", "Dispatch Unit20 Unit22 Unit23 Unit25 Unit27"},
                          Case{"0", "3", "", "Dispatch Unit20 Unit22"},
                          Case{"0", "500", "it2?", "Unit20 Unit22 Unit23 Unit25 Unit27"},
                          Case{"0", "500", "disp", "Dispatch"}, Case{"2", "500", "", ""},
                          Case{"1", "nonsense", "", "Unit22 Unit25 Unit27"}}) {
        RegistrySet(stack.session, QStringLiteral("on_off_duty"), QLatin1String(c.mode));
        stack.settings.Write(QStringLiteral("prefs"), QStringLiteral("maxaddresslistsize"),
                             QLatin1String(c.limit));
        stack.Find<QComboBox>("cmbAddress").setEditText(QLatin1String(c.lookfor));
        stack.Find<QAbstractButton>("cmdSearchAddress").click();
        EXPECT_EQ(stack.Callsigns(), QLatin1String(c.shown)) << c.mode << ' ' << c.limit << ' ' << c.lookfor;
        const bool cut =
            QLatin1String(c.limit) == QLatin1String("2") || QLatin1String(c.limit) == QLatin1String("3");
        EXPECT_EQ(stack.Find<QWidget>("individualsNotice").isVisible(), cut) << c.mode << ' ' << c.limit;
    }
    stack.session.onUse = [] { throw Error(ErrorCode::General, QStringLiteral("gone")); };
    stack.prompt.ExpectQuestion(stack.Text(2029), true);
    stack.prompt.ExpectQuestion(stack.Text(2029), false);
    QTest::keyClick(&stack.List(), Qt::Key_F5);
    stack.session.onUse = nullptr;
    EXPECT_EQ(stack.Callsigns(), QString());
}

TEST(Individuals, SelectionAddressesAndAllowsTheRegroupCommand)
{
    EXPECT_TRUE(AllowsRegroup(PictureOfIndividual(QStringLiteral("individual"), true)));
    EXPECT_FALSE(AllowsRegroup(PictureOfIndividual(QStringLiteral("individual"), false)));
    EXPECT_TRUE(AllowsRegroup(QStringLiteral("x_dynamic")));
    EXPECT_FALSE(AllowsRegroup(QStringLiteral("_dynamic"))) << "shorter than nine characters";

    IndividualsStack stack;
    RegistrySet(stack.session, QStringLiteral("on_off_duty"), QStringLiteral("0"));
    stack.window->ReloadInds();
    auto& regroup = stack.Find<QAction>("miRegroup");
    EXPECT_FALSE(regroup.isEnabled());
    stack.Pick(2); // Unit22
    EXPECT_EQ(stack.Address(), QStringLiteral("Unit22"));
    EXPECT_FALSE(regroup.isEnabled());
    stack.Pick(4, Qt::ControlModifier); // Unit25
    stack.Pick(1, Qt::ControlModifier); // Unit20
    EXPECT_EQ(stack.Address(), QStringLiteral("Unit20;Unit22;Unit25")) << "in the order of the list";
    EXPECT_TRUE(regroup.isEnabled());
    EXPECT_FALSE(stack.Find<QAction>("miUngroup").isEnabled());
    stack.Pick(2, Qt::ControlModifier);
    stack.Pick(4, Qt::ControlModifier);
    EXPECT_EQ(stack.Address(), QStringLiteral("Unit20"));
    stack.Pick(1, Qt::ControlModifier);
    EXPECT_EQ(stack.Address(), QString()) << "nobody is chosen any more";

    stack.Pick(3);
    QTest::keyClick(&stack.List(), Qt::Key_Down); // to Unit25
    EXPECT_EQ(stack.Address(), QStringLiteral("Unit25"));
    EXPECT_TRUE(regroup.isEnabled()) << "a key chooses like a click";
    stack.Trigger("miRegroup"); // into Charlie at 4
    ASSERT_TRUE(stack.RunToEnd());
    EXPECT_TRUE(
        stack.Rows().contains(stack.MemberKey(QStringLiteral("Charlie"), QStringLiteral("Unit25"), 4)));
    EXPECT_EQ(stack.Rows(), stack.Shown());

    QTest::keyClick(&stack.List(), Qt::Key_Return);
    EXPECT_EQ(stack.executive.TransactionKind(), TransactionKind::CallSetUp);
}

TEST(Individuals, ComeAndGoWithTheirDutyStatusWithoutStealingTheSelection)
{
    IndividualsStack stack;
    const auto status = [&](std::uint16_t ident, std::uint8_t code) {
        stack.radio.Perform(sim::StatusAction{.from = {0, ident}, .code = code});
        stack.Run(1000);
    };
    EXPECT_EQ(stack.Callsigns(), QStringLiteral("Dispatch"));
    status(7, 1);
    status(4, 1);
    EXPECT_EQ(stack.Callsigns(), QStringLiteral("Dispatch Unit22 Unit25"));
    stack.Pick(2);
    EXPECT_TRUE(stack.Find<QAction>("miRegroup").isEnabled());
    stack.Find<QComboBox>("cmbAddress").setEditText(QStringLiteral("typed meanwhile"));
    status(2, 1); // one more above the selected one
    EXPECT_EQ(stack.Callsigns(), QStringLiteral("Dispatch Unit20 Unit22 Unit25"));
    EXPECT_EQ(stack.List().currentIndex().data().toString(), QStringLiteral("Unit25"));
    EXPECT_TRUE(stack.Find<QAction>("miRegroup").isEnabled());
    EXPECT_EQ(stack.Address(), QStringLiteral("typed meanwhile"));
    status(7, 2); // off duty
    EXPECT_EQ(stack.Callsigns(), QStringLiteral("Dispatch Unit20 Unit22"));
    EXPECT_EQ(stack.List().selectionModel()->selectedRows().size(), 0) << "another radio is not taken for it";
    EXPECT_FALSE(stack.Find<QAction>("miRegroup").isEnabled());
}

// A box at each activation of the window would keep the dispatcher from working while the database is away.
TEST(Individuals, AndOtherListsStayWithoutAskingWhenWhatAnotherConsoleChangedCannotBeRead)
{
    IndividualsStack stack;
    const QString listed = stack.Callsigns();
    const auto shown = stack.Shown();
    auto& statuses = stack.Find<QComboBox>("cmbStatusMessage");
    statuses.addItem(QStringLiteral("05 - Proceed"), 5);
    ASSERT_FALSE(listed.isEmpty() || shown.isEmpty());
    stack.session.onUse = [] { throw Error(ErrorCode::General, QStringLiteral("share is gone")); };
    stack.session.Changes().Tell({}); // an unexpected question fails the test
    EXPECT_EQ(stack.Callsigns(), listed);
    EXPECT_EQ(stack.Shown(), shown);
    EXPECT_EQ(statuses.count(), 1);
    stack.session.onUse = nullptr;

    RegistrySet(stack.session, QStringLiteral("on_off_duty"), QStringLiteral("0"));
    stack.session.Changes().Tell(QStringLiteral("kyn_registry"));
    EXPECT_NE(stack.Callsigns(), listed) << "all, on duty or not";
}

} // namespace
