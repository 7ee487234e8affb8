// Everything at once, and everything with keys alone.

#include "RegroupStack.h"
#include "mainwindow/scada/ScadaModel.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QMenu>

namespace {

TEST(Together, AStaticGroupStaysChosenWhenAnotherConsoleChangesTheDirectory)
{
    RegroupStack stack;
    for (const QString callsign : {"Fire", "Police"}) {
        const auto groups = stack.session.Database().OpenDynaset(QStringLiteral("browse_talkgroups"));
        groups->AddNew();
        groups->SetField(QStringLiteral("callsign"), callsign);
        groups->SetField(QStringLiteral("IDENT"), callsign);
        groups->SetField(QStringLiteral("Type"), 2);
        groups->Update();
    }
    stack.Find<QAbstractButton>("tbMain_refresh").click();
    const QModelIndex root = stack.Model().Root(TalkgroupModel::StaticKey);
    const QModelIndex group = stack.Model().index(1, 0, root);
    ASSERT_TRUE(group.isValid());
    const QString callsign = group.data(TalkgroupModel::TagRole).toString();
    stack.Tree().setCurrentIndex(group);
    stack.session.Changes().Tell(QStringLiteral("address"));
    EXPECT_EQ(
        stack.Tree().selectionModel()->selectedIndexes().value(0).data(TalkgroupModel::TagRole).toString(),
        callsign);
    EXPECT_EQ(stack.Tree().currentIndex().parent(), stack.Model().Root(TalkgroupModel::StaticKey));
}

TEST(Together, NothingIsLostAndTheOperatorKeepsHisPlace)
{
    RegroupStack stack;
    const auto groups = stack.session.Database().OpenDynaset(QStringLiteral("browse_talkgroups"));
    stack.session.Workspace().BeginTrans();
    for (int i = 0; i < 60; ++i) {
        groups->AddNew();
        groups->SetField(QStringLiteral("callsign"), QStringLiteral("Extra%1").arg(i));
        groups->SetField(QStringLiteral("IDENT"), QStringLiteral("/00071%1").arg(i, 2, 10, QLatin1Char('0')));
        groups->SetField(QStringLiteral("Type"), 2);
        groups->SetField(QStringLiteral("dynamic"), true);
        groups->SetField(QStringLiteral("default_pos"), 3);
        groups->Update();
    }
    stack.session.Workspace().CommitTrans();
    stack.session.Changes().TellOwn(QStringLiteral("address"));
    stack.Find<QAbstractButton>("tbMain_refresh").click();

    // The operator drags a radio, then looks elsewhere, folds a group and types.
    QTreeView& tree = stack.Tree();
    const QString alpha = stack.GroupKey(QStringLiteral("Alpha"));
    tree.scrollTo(stack.Model().Find(alpha));
    stack.Drag(stack.MemberKey(QStringLiteral("Alpha"), QStringLiteral("Unit20")),
               stack.GroupKey(QStringLiteral("Delta")));
    const QString selected = stack.GroupKey(QStringLiteral("Extra30"));
    tree.scrollTo(stack.Model().Find(selected), QAbstractItemView::PositionAtCenter);
    stack.Select(selected);
    tree.collapse(stack.Model().Find(alpha));
    auto& address = stack.Find<QComboBox>("cmbAddress");
    address.setEditText(QStringLiteral("half a calls"));
    address.setFocus();
    const auto top = [&] { return tree.indexAt({1, 1}).data().toString(); };
    const QString shownAtTop = top();

    constexpr int Each = 20;
    for (int i = 0; i < Each; ++i) {
        stack.radio.Perform(sim::StatusAction{.from = {0, 4}, .code = static_cast<std::uint8_t>(1 + i % 2)});
        stack.radio.Perform(sim::TextAction{.from = {0, 5}, .text = "line " + std::to_string(i)});
        stack.radio.Perform(
            sim::TextAction{.from = {0, 9}, .text = i % 2 == 0 ? "I:00000001" : "B:1111111100000000"});
        if (i == 5) { // the console's radio gets another number, and another console has regrouped a radio
            stack.AddRow(QStringLiteral("Alpha"), QStringLiteral("Unit23"), 3);
            stack.radio.Perform(sim::NumberingAction{.address = {0, 20}, .units = {}, .groups = {}});
        }
        stack.Run(30);
    }
    ASSERT_TRUE(stack.RunToEnd());
    stack.Run(20000);

    EXPECT_EQ(stack.Records().size(), 3 * Each);
    auto& log = stack.Find<QTreeView>("lvLog");
    EXPECT_EQ(log.model()->rowCount(), 3 * Each + 1);
    EXPECT_EQ(log.currentIndex().row(), 3 * Each) << "the log follows";
    const QAbstractItemModel& sensors = *stack.Find<QListView>("lvSensors").model();
    for (int row = 0; row < sensors.rowCount(); ++row)
        EXPECT_EQ(sensors.index(row, 0).data(ScadaModel::PictureRole).toString(), QStringLiteral("son"));

    EXPECT_TRUE(stack.Shown().contains(stack.MemberKey(QStringLiteral("Alpha"), QStringLiteral("Unit23"))));
    EXPECT_TRUE(stack.Shown().contains(stack.MemberKey(QStringLiteral("Delta"), QStringLiteral("Unit20"))));
    EXPECT_EQ(top(), shownAtTop);
    EXPECT_EQ(tree.currentIndex().data(TalkgroupModel::KeyRole).toString(), selected);
    EXPECT_FALSE(tree.isExpanded(stack.Model().Find(alpha)));
    EXPECT_EQ(address.currentText(), QStringLiteral("half a calls"));
    EXPECT_EQ(stack.window->focusWidget(), &address);
    EXPECT_TRUE(stack.Find<QAction>("miUngroup").isEnabled());
}

void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QWidget* target = QApplication::activePopupWidget();
    if (target == nullptr)
        target = QApplication::focusWidget();
    ASSERT_NE(target, nullptr);
    QTest::keyClick(target, key, modifiers);
}

void TabTo(QWidget& goal)
{
    for (int presses = 0; presses < 60 && !goal.hasFocus(); ++presses)
        Key(Qt::Key_Tab);
    ASSERT_TRUE(goal.hasFocus()) << goal.objectName().toStdString();
}

TEST(Together, KeysAloneRegroupSwitchAndRename)
{
    RegroupStack stack;
    stack.window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(stack.window.get()));
    stack.Find<QWidget>("cmbAddress").setFocus();

    TabTo(stack.Tree());
    const auto goTo = [&](const QString& key) {
        Key(Qt::Key_Home);
        for (int presses = 0; presses < 30 && stack.Tree().currentIndex() != stack.Model().Find(key);
             ++presses)
            Key(Qt::Key_Down);
        ASSERT_EQ(stack.Tree().currentIndex(), stack.Model().Find(key));
    };
    const auto command = [&](Qt::Key letter) { // of the regrouping menu
        Key(Qt::Key_G, Qt::AltModifier);
        ASSERT_EQ(QApplication::activePopupWidget(), &stack.Find<QMenu>("mbDynReg"));
        Key(letter);
        ASSERT_TRUE(stack.RunToEnd());
        stack.window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(stack.window.get()));
    };
    const QString unit20 = stack.MemberKey(QStringLiteral("Charlie"), QStringLiteral("Unit20"), 4);
    goTo(stack.MemberKey(QStringLiteral("Alpha"), QStringLiteral("Unit20")));
    command(Qt::Key_R);
    EXPECT_TRUE(stack.Rows().contains(unit20));
    goTo(unit20);
    command(Qt::Key_U);
    EXPECT_FALSE(stack.Rows().contains(unit20));

    Key(Qt::Key_Tab, Qt::ControlModifier);
    Key(Qt::Key_Tab, Qt::ControlModifier);
    TabTo(stack.Find<QWidget>("cmbScadaUnit"));
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("/0000012")); // the outstation
    auto& controls = stack.Find<QListView>("lvControls");
    TabTo(controls);
    Key(Qt::Key_Home);
    Key(Qt::Key_Down);
    Key(Qt::Key_Return);
    ASSERT_TRUE(stack.RunToEnd());
    EXPECT_EQ(controls.model()->index(1, 0).data(ScadaModel::PictureRole).toString(), QStringLiteral("con"));

    stack.window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(stack.window.get()));
    auto& sensors = stack.Find<QListView>("lvSensors");
    TabTo(sensors);
    Key(Qt::Key_Home);
    Key(Qt::Key_F2);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("Gate"));
    Key(Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_EQ(stack.settings.ScadaSensorName(0), QStringLiteral("Gate"));
}

} // namespace
