// The talkgroup tree: what it shows, what the selection allows, dragging, and what the database refuses.

#include "RegroupStack.h"
#include "core/session/AccountChanges.h"
#include "core/texts/TextIds.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/lists/WaitingMark.h"
#include "mainwindow/talkgroups/MemberDrag.h"
#include "mainwindow/talkgroups/TalkgroupTree.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QScrollBar>
#include <QTabBar>

namespace {

TEST(NodeKeys, ReadBackWhatTheyWereMadeOf)
{
    EXPECT_EQ(MakeIndividualKey(31), QStringLiteral("ARS1F"));
    EXPECT_EQ(MakeGroupKey(31, 3), QStringLiteral("DGS1F_3"));
    EXPECT_EQ(MakeMemberKey(31, 10, 16), QStringLiteral("RRS1F_A_10"));
    EXPECT_EQ(MakeIndividualKey(-2), QStringLiteral("ARSFFFFFFFE"));
    EXPECT_EQ(IndividualIdOf(QStringLiteral("ARSFFFFFFFE")), -2);

    struct Case {
        const char* key;
        int group, groupPos, memberGroup, member, memberPos;
    };
    for (const Case& c :
         {Case{"DGS1F_3", 31, 3, 31, 0, 0}, Case{"RRS1F_A_3", 31, 0, 31, 10, 3}, Case{"DGS_3", 0, 3, 0, 0, 0},
          Case{"DGS1F", 0, 0, 0, 0, 0}, Case{"RRS1F__3", 31, 0, 31, 0, 3}, Case{"", 0, 0, 0, 0, 0},
          Case{"dynamic", 0, 0, 0, 0, 0}}) {
        const GroupKeyParts group = PartsOfGroupKey(QLatin1String(c.key));
        const MemberKeyParts member = PartsOfMemberKey(QLatin1String(c.key));
        EXPECT_EQ(group.groupId, c.group) << c.key;
        EXPECT_EQ(group.pos, c.groupPos) << c.key;
        EXPECT_EQ(member.groupId, c.memberGroup) << c.key;
        EXPECT_EQ(member.memberId, c.member) << c.key;
        EXPECT_EQ(member.pos, c.memberPos) << c.key;
    }
}

// The tree as text: one line a node, indented, with its picture.
QString Lines(const QAbstractItemModel& model, const QModelIndex& parent = {}, const QString& indent = {})
{
    QString text;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex node = model.index(row, 0, parent);
        text += indent + node.data().toString() + QLatin1Char('|') +
                node.data(TalkgroupModel::PictureRole).toString() + QLatin1Char('\n') +
                Lines(model, node, indent + QLatin1Char(' '));
    }
    return text;
}

TEST(Talkgroups, AreShownWithTheirMembersUpToTheLimitAndTheSearch)
{
    RegroupStack stack;
    stack.AddRow(QStringLiteral("Delta"), QStringLiteral("Dispatch"), 3); // the own radio
    stack.AddRow(QStringLiteral("Bravo"), QStringLiteral("Unit23"), 7); // no group is shown at this position
    const auto refresh = [&] { stack.Find<QAbstractButton>("tbMain_refresh").click(); };
    refresh();
    EXPECT_EQ(Lines(stack.Model()), QStringLiteral("Static Talkgroups|talkgroup\n"
                                                   "Dynamic Talkgroups|talkgroup_dynamic\n"
                                                   " Charlie - /0007000 - 4|defgroup\n"
                                                   " Alpha - /0007001 - 3|\n"
                                                   "  Unit20|individual_dynamic\n"
                                                   "  Unit22|individual_dynamic\n"
                                                   " Bravo - /0007002 - 3|\n"
                                                   "  Unit25|individual_dynamic\n"
                                                   "  Unit27|individual_dynamic\n"
                                                   " Delta - /0007003 - 3|\n"));
    stack.settings.Write(QStringLiteral("prefs"), QStringLiteral("maxaddresslistsize"), QStringLiteral("2"));
    refresh();
    EXPECT_EQ(stack.Shown().size(), 2);
    EXPECT_TRUE(stack.Find<QWidget>("groupsNotice").isVisible());

    auto& address = stack.Find<QComboBox>("cmbAddress");
    address.setEditText(QStringLiteral("brav"));
    stack.Find<QAbstractButton>("cmdSearchAddress").click();
    EXPECT_EQ(stack.Shown().size(), 2) << "the members of hidden groups are left out";
    EXPECT_FALSE(stack.Find<QWidget>("groupsNotice").isVisible()) << "all that match are shown";
    EXPECT_EQ(address.currentText(), QString());
    // The default group is hidden by the search.
    stack.Select(stack.MemberKey(QStringLiteral("Bravo"), QStringLiteral("Unit25")));
    stack.prompt.ExpectWarning(stack.Text(2038));
    stack.Trigger("miRegroup");
    stack.settings.Write(QStringLiteral("prefs"), QStringLiteral("maxaddresslistsize"),
                         QStringLiteral("500"));
    stack.Find<QTreeView>("tvGroups").setFocus();
    QTest::keyClick(&stack.Tree(), Qt::Key_F5);
    EXPECT_EQ(stack.Shown().size(), 4);
}

TEST(Talkgroups, AskToTryAgainWhenTheyCannotBeRead)
{
    RegroupStack stack;
    const QString before = Lines(stack.Model());
    const auto refuse = [&](int from) { // database uses from the first one on that fail
        stack.session.onUse = [from, uses = 0]() mutable {
            if (++uses >= from)
                throw Error(ErrorCode::General, QStringLiteral("gone"));
        };
    };
    refuse(1);
    stack.prompt.ExpectQuestion(stack.Text(2023), true);
    stack.prompt.ExpectQuestion(stack.Text(2023), false);
    stack.prompt.ExpectQuestion(stack.Text(2024), true);
    stack.prompt.ExpectQuestion(stack.Text(2024), false);
    stack.window->ReloadGrps();
    EXPECT_EQ(stack.Shown(), QStringList());
    refuse(3); // static and dynamic groups are read, the members are not
    stack.prompt.ExpectQuestion(stack.Text(2024), true);
    stack.prompt.whileOpen = [&] { stack.session.onUse = nullptr; };
    stack.window->ReloadGrps();
    stack.prompt.Finish();
    EXPECT_EQ(Lines(stack.Model()), before);
}

TEST(Talkgroups, SelectionAddressesAndAllowsCommands)
{
    for (const bool may : {true, false}) {
        RegroupStack stack;
        const char* commands[] = {"miRegroup", "miSetGroupName", "miUngroup"};
        const auto allowed = [&] {
            QString marks;
            for (const char* command : commands)
                marks += stack.Find<QAction>(command).isEnabled() ? QLatin1Char('x') : QLatin1Char('-');
            return marks;
        };
        if (!may) { // an operator without the right
            stack.prompt.ExpectConfirmation(stack.Text(2027), true);
            stack.Trigger("miLogOnLogOff");
            stack.database.AddOperator(QStringLiteral("oliver"), QStringLiteral("pass"));
            stack.session.logonName = QStringLiteral("oliver");
            stack.session.logonPassword = QStringLiteral("pass");
            stack.Trigger("miLogOnLogOff");
            stack.Run(2000);
        }
        const QString alpha = stack.GroupKey(QStringLiteral("Alpha"));
        const QString unit20 = stack.MemberKey(QStringLiteral("Alpha"), QStringLiteral("Unit20"));
        auto& address = stack.Find<QComboBox>("cmbAddress");
        stack.Select(QLatin1String(TalkgroupModel::DynamicKey));
        EXPECT_EQ(address.currentText(), QString());
        EXPECT_EQ(allowed(), QStringLiteral("---"));
        stack.Select(alpha);
        EXPECT_EQ(address.currentText(), QStringLiteral("Alpha"));
        EXPECT_EQ(allowed(), may ? QStringLiteral("-xx") : QStringLiteral("---"));
        stack.Select(unit20);
        EXPECT_EQ(address.currentText(), QStringLiteral("Unit20"));
        EXPECT_EQ(allowed(), may ? QStringLiteral("xxx") : QStringLiteral("---"));
        stack.window->SelectTab(MainTabs::Tab::Scada);
        EXPECT_EQ(allowed(), QStringLiteral("---"));
        stack.window->SelectTab(MainTabs::Tab::Talkgroups);
        EXPECT_EQ(allowed(), may ? QStringLiteral("xxx") : QStringLiteral("---"));
        if (!may) {
            stack.Drag(unit20, stack.GroupKey(QStringLiteral("Delta")));
            EXPECT_EQ(stack.executive.TransactionKind(), TransactionKind::None);
        }
    }
}

TEST(Talkgroups, DefaultGroupAndGroupNames)
{
    RegroupStack stack;
    const QString bravo = stack.GroupKey(QStringLiteral("Bravo"));
    stack.Select(stack.MemberKey(QStringLiteral("Alpha"), QStringLiteral("Unit20")));
    stack.prompt.ExpectWarning(stack.Text(2025));
    stack.Trigger("miDefDynamic");
    stack.window->SelectTab(MainTabs::Tab::Individuals);
    stack.prompt.ExpectWarning(stack.Text(2026));
    stack.Trigger("miDefDynamic");
    EXPECT_EQ(stack.Find<QTabBar>("tsMain").currentIndex(), 0);
    stack.Select(bravo);
    stack.Trigger("miDefDynamic");
    EXPECT_EQ(stack.settings.DefaultGroupKey(), bravo);
    EXPECT_TRUE(Lines(stack.Model()).contains(QLatin1String("Bravo - /0007002 - 3|defgroup")));
    EXPECT_TRUE(Lines(stack.Model()).contains(QLatin1String("Charlie - /0007000 - 4|\n")));

    stack.Trigger("miSetGroupName");
    ASSERT_TRUE(stack.RunToEnd());
    EXPECT_EQ(stack.radio.radio.LastRequest(),
              "data \"564B010203427261766F\" to Group92 (0/7002)"); // "Bravo" at 3
    stack.Select(stack.MemberKey(QStringLiteral("Alpha"), QStringLiteral("Unit20")));
    stack.Trigger("miSetGroupName");
    ASSERT_TRUE(stack.RunToEnd());
    EXPECT_EQ(stack.radio.radio.LastRequest(), "data \"564B010203416C706861\" to Unit20 (0/2)"); // "Alpha"
    EXPECT_EQ(stack.Rows().size(), 4) << "a name stores nothing";
}

TEST(MemberDrag, BeginsBeyondNineUnits)
{
    for (const auto& [place, begins] : {std::pair(QPoint(19, 10), false), std::pair(QPoint(19, 19), false),
                                        std::pair(QPoint(20, 10), true), std::pair(QPoint(10, 0), true)}) {
        MemberDrag drag;
        drag.Press({10, 10}, QStringLiteral("key"), true);
        EXPECT_EQ(drag.Move(place), begins) << place.x() << ' ' << place.y();
        drag.Press(place, QStringLiteral("key"), true); // a second press ends it
        EXPECT_FALSE(drag.Move({99, 99}));
    }
    MemberDrag drag;
    drag.Press({10, 10}, QStringLiteral("key"), false);
    EXPECT_FALSE(drag.Move({99, 99}));
}

TEST(Talkgroups, OnlyAnotherDynamicGroupTakesADraggedMember)
{
    RegroupStack stack;
    auto& tree = dynamic_cast<TalkgroupTree&>(stack.Tree());
    const QString unit20 = stack.MemberKey(QStringLiteral("Alpha"), QStringLiteral("Unit20"));
    const QString delta = stack.GroupKey(QStringLiteral("Delta"));
    const QPoint target = stack.PlaceOf(delta);
    const auto idle = [&] { return stack.executive.TransactionKind() == TransactionKind::None; };
    for (const QString& wrong : {stack.GroupKey(QStringLiteral("Alpha")),
                                 stack.MemberKey(QStringLiteral("Bravo"), QStringLiteral("Unit25")),
                                 QStringLiteral("static"), QStringLiteral("dynamic")}) {
        DragMouse(*tree.viewport(), stack.PlaceOf(unit20), stack.PlaceOf(wrong), false);
        EXPECT_FALSE(tree.DropHighlight().isValid()) << wrong.toStdString();
        QTest::mouseRelease(tree.viewport(), Qt::LeftButton, Qt::NoModifier, stack.PlaceOf(wrong));
        EXPECT_TRUE(idle());
    }
    stack.Drag(stack.GroupKey(QStringLiteral("Alpha")), delta); // a group cannot be dragged
    EXPECT_TRUE(idle());
    DragMouse(*tree.viewport(), stack.PlaceOf(unit20), target, false);
    EXPECT_EQ(tree.DropHighlight().data(TalkgroupModel::KeyRole).toString(), delta);
    EXPECT_EQ(tree.currentIndex().data(TalkgroupModel::KeyRole).toString(), unit20)
        << "the drag selects nothing";
    QTest::keyClick(&tree, Qt::Key_Escape);
    EXPECT_FALSE(tree.DropHighlight().isValid());
    QTest::mouseRelease(tree.viewport(), Qt::LeftButton, Qt::NoModifier, target);
    EXPECT_TRUE(idle());
    EXPECT_EQ(tree.selectionModel()->selectedIndexes(), QModelIndexList{stack.Model().Find(unit20)});

    // A reload under the hand takes the dragged radio away.
    DragMouse(*tree.viewport(), stack.PlaceOf(unit20), target, false);
    stack.Model().Remove(unit20);
    QTest::mouseRelease(tree.viewport(), Qt::LeftButton, Qt::NoModifier, target);
    EXPECT_TRUE(idle());
}

TEST(Talkgroups, ScrollWhileADragIsAtTheirEdge)
{
    RegroupStack stack;
    auto& tree = stack.Tree();
    tree.setFixedHeight(5 * tree.sizeHintForRow(0));
    QApplication::processEvents();
    const QString unit20 = stack.MemberKey(QStringLiteral("Alpha"), QStringLiteral("Unit20"));
    tree.scrollTo(stack.Model().Find(unit20));
    auto& bar = *tree.verticalScrollBar();
    bar.setValue(std::min(bar.value(), bar.maximum() - 1));
    DragMouse(*tree.viewport(), stack.PlaceOf(unit20), {20, tree.viewport()->height() - 2}, false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar.value() == bar.maximum(); }));
    QTest::keyClick(&tree, Qt::Key_Escape);
}

// What the radio did but the database does not take, or not yet, and positions that no radio has.
TEST(Talkgroups, TellWhatCannotBeStored)
{
    RegroupStack stack;
    const QString unit20 = stack.MemberKey(QStringLiteral("Alpha"), QStringLiteral("Unit20"));
    const QString delta = stack.GroupKey(QStringLiteral("Delta"));
    stack.Drag(unit20, delta);
    stack.Run(100);
    const auto query = stack.session.Database().QueryDef(QStringLiteral("ind_ungroup")); // at another console
    query->SetParameter(QStringLiteral("mi"), stack.Id(QStringLiteral("Unit20")));
    query->SetParameter(QStringLiteral("p"), 3);
    query->Execute();
    stack.prompt.ExpectWarning(
        QStringLiteral("The radio Unit20 holds the group Delta at position 3 now, but this is not recorded: "
                       "somebody else has changed its group in the meantime. The talkgroups show what is "
                       "recorded."));
    ASSERT_TRUE(stack.RunToEnd());
    EXPECT_TRUE(QTest::qWaitFor([&] { return stack.Shown() == stack.Rows(); }, 3000)) << "by itself";
    EXPECT_FALSE(stack.Shown(OutcomeRole).contains(QString::number(static_cast<int>(Outcome::Done))));
    EXPECT_TRUE(stack.session.Database().OpenSnapshot("regroup_request")->Eof());

    const QString unit25 = stack.MemberKey(QStringLiteral("Bravo"), QStringLiteral("Unit25"));
    stack.Select(unit25);
    stack.Trigger("miUngroup");
    const QString spool = QStringLiteral("log-%1-1.waiting").arg(stack.session.Database().Id());
    ASSERT_TRUE(QDir(stack.folder.path()).mkdir(spool)); // where the file would be
    stack.session.onUse = [] { throw Error(ErrorCode::General, QStringLiteral("disk full")); };
    stack.prompt.ExpectWarning("disk full " + stack.Text(CoreText::RecordsKept));
    ASSERT_TRUE(stack.RunToEnd());
    stack.session.onUse = nullptr;
    const auto bravo = [&](int role) {
        return stack.Model().Find(stack.GroupKey(QStringLiteral("Bravo"))).data(role);
    };
    const QString waits = stack.Text(MainText::RecordNotStored);
    for (int reload = 0; reload < 2; ++reload) {
        EXPECT_TRUE(stack.Rows().contains(unit25)) << "waits";
        EXPECT_FALSE(stack.Model().Find(unit25).isValid()) << "at once, and after a reload";
        EXPECT_TRUE(bravo(Qt::AccessibleTextRole).toString().endsWith(waits));
        EXPECT_FALSE(bravo(Qt::FontRole).isValid()) << "not for a second";
        stack.Find<QAbstractButton>("tbMain_refresh").click();
    }
    stack.Model().ShowWaiting();
    EXPECT_TRUE(bravo(Qt::FontRole).value<QFont>().italic());
    stack.eventLog.WriteWaiting();
    EXPECT_FALSE(bravo(WaitingRole).toBool());
    EXPECT_FALSE(stack.Rows().contains(unit25));
    EXPECT_EQ(stack.Shown(), stack.Rows());

    stack.Model().ReplaceDynamic({{.callsign = QStringLiteral("Echo"), .ident = {}, .id = 77, .pos = 0}}, {},
                                 {});
    stack.Select(MakeGroupKey(77, 0));
    stack.prompt.ExpectWarning(
        QStringLiteral("The group has no position in which a radio could hold it. Please enter "
                       "a position from 1 to 16 in the address directory."));
    stack.Trigger("miUngroup");
}

// The right counts when the command is given: one that was taken away since the logon sends nothing, and one
// taken away before the radio's confirmation keeps nothing from being stored.
TEST(Talkgroups, TheRightIsLookedUpWhenTheCommandIsGiven)
{
    RegroupStack stack;
    AddAccount(stack.session.Workspace(), {QStringLiteral("Zoe"), QStringLiteral("PID"), QStringLiteral("pw"),
                                           QStringLiteral("Zulu"), QStringLiteral("Admins"), false});
    const auto zoe = stack.database.Open(QStringLiteral("Zoe"), QStringLiteral("pw"));
    zoe->Users().Item(QStringLiteral("admin"))->Groups().Delete(QLatin1String(dao::AdminsGroupName));
    const auto change = [&](bool allow) {
        ChangeAccount(*zoe, {*stack.profile.Marker(), QStringLiteral("admin"), QString(), {}, {}, allow});
    };
    const auto key = [&](const char* group) {
        return stack.MemberKey(QLatin1String(group), QStringLiteral("Unit20"));
    };
    const auto drag = [&](const char* from, const char* to) {
        stack.Drag(key(from), stack.GroupKey(QLatin1String(to)));
    };
    drag("Alpha", "Delta");
    ASSERT_EQ(stack.executive.TransactionKind(), TransactionKind::Regroup);
    change(false);
    ASSERT_TRUE(stack.RunToEnd());
    EXPECT_TRUE(stack.Rows().contains(key("Delta")));

    const unsigned sent = stack.executive.LastTransaction();
    const auto isRefused = [&](const QString& sentence, const std::function<void()>& command) {
        stack.prompt.ExpectWarning(sentence);
        command();
        stack.prompt.Finish();
        EXPECT_EQ(stack.executive.LastTransaction(), sent);
        EXPECT_EQ(stack.executive.TransactionKind(), TransactionKind::None);
        EXPECT_FALSE(stack.Shown(TalkgroupModel::PictureRole).contains(QLatin1String("pending")));
    };
    stack.Select(key("Delta"));
    const QString mayNot = stack.Text(MainText::MayNotRegroup);
    isRefused(mayNot, [&] { drag("Delta", "Alpha"); });
    for (const char* command : {"miUngroup", "miRegroup", "miSetGroupName"})
        isRefused(mayNot, [&] { stack.Trigger(command); });
    change(true);
    const dao::Error away(dao::Kind::ServerAway, {QStringLiteral("server"), QStringLiteral("down")});
    stack.session.onUse = [&] { throw away; };
    isRefused(DescribeError(away, stack.strings), [&] { stack.Trigger("miUngroup"); });
    stack.session.onUse = nullptr;

    const QString alpha = key("Alpha");
    drag("Delta", "Alpha");
    DeleteAccount(*zoe, *stack.profile.Marker(), QStringLiteral("admin"));
    if (TestServer::IsWanted()) // at the logoff; files let it pass
        stack.prompt.ExpectQuestion(stack.Text(2061), false);
    ASSERT_TRUE(stack.RunToEnd());
    EXPECT_EQ(stack.Model().Find(alpha).data(OutcomeRole).toInt(), static_cast<int>(Outcome::Done));
    const MemberKeyParts parts = PartsOfMemberKey(alpha);
    const auto rows = zoe->Database().OpenTable(QStringLiteral("dynamic_regroup"));
    rows->Seek(parts.groupId, parts.memberId, parts.pos);
    EXPECT_FALSE(rows->NoMatch());
    EXPECT_TRUE(zoe->Database().OpenSnapshot(QStringLiteral("regroup_request"))->Eof());
}

TEST(Talkgroups, AMemberIsMovedAgainAndReplacedAtItsPosition)
{
    RegroupStack stack;
    const auto key = [&](const char* group) {
        return stack.MemberKey(QLatin1String(group), QStringLiteral("Unit20"));
    };
    for (const auto& [from, to] :
         {std::pair("Alpha", "Delta"), std::pair("Delta", "Bravo"), std::pair("Bravo", "Alpha")}) {
        stack.Drag(key(from), stack.GroupKey(QLatin1String(to)));
        EXPECT_EQ(stack.Model().Find(key(from)).data(TalkgroupModel::PictureRole), QLatin1String("pending"));
        ASSERT_TRUE(stack.RunToEnd());
        EXPECT_EQ(stack.Rows(), stack.Shown());
        EXPECT_TRUE(stack.Rows().contains(key(to)));
        EXPECT_EQ(stack.Model().Find(key(to)).data(OutcomeRole).toInt(), static_cast<int>(Outcome::Done));
    }
    // By command into a group of the same position: the radio leaves the one that it held there.
    stack.Select(stack.GroupKey(QStringLiteral("Delta")));
    stack.Trigger("miDefDynamic");
    for (int twice = 0; twice < 2; ++twice) {
        stack.Select(key(twice == 0 ? "Alpha" : "Delta"));
        stack.Trigger("miRegroup");
        ASSERT_TRUE(stack.RunToEnd());
        EXPECT_EQ(stack.Rows(), stack.Shown());
        EXPECT_TRUE(stack.Rows().contains(key("Delta")));
        EXPECT_EQ(stack.Rows().size(), 4);
    }
}

} // namespace
