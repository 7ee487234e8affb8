// The message log: lines, dates, limits, reload and what the operator does on it.

#include "MainWindowStack.h"
#include "mainwindow/LogDelegate.h"
#include "mainwindow/LogModel.h"

#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QTreeView>

namespace {

const QString Own = QStringLiteral("Dispatch");
const QString Other = QStringLiteral("Unit20");

void Show(MainWindowStack& stack, const QDateTime& time, EventType type, const QString& desc,
          const QString& from = Other, const QString& to = Own)
{
    stack.Window().LogShowNewLine(time, type, desc, from, to);
}

void Select(MainWindowStack& stack, int row)
{
    const QRect line = stack.Log().visualRect(stack.Log().model()->index(row, 0));
    QTest::mouseClick(stack.Log().viewport(), Qt::LeftButton, Qt::NoModifier, line.center());
}

struct HexCase {
    QString data;
    QString view;
    QString shown;
};

TEST(FormatLogData, ShowsTextOrWindowsCodes)
{
    const HexCase Cases[] = {
        {QStringLiteral("Hi"), QStringLiteral("hex"), QStringLiteral("48 69 ")},
        {QString(), QStringLiteral("hex"), QString()},
        {QStringLiteral("é€\n"), QStringLiteral("hex"), QStringLiteral("E9 80 0A ")},
        {QStringLiteral("Ωa"), QStringLiteral("hex"), QStringLiteral("3F 61 ")},
        {QStringLiteral("\U0001F600."), QStringLiteral("hex"), QStringLiteral("3F 2E ")},
        {QStringLiteral("Hi"), QStringLiteral("text"), QStringLiteral("Hi")},
        {QStringLiteral("Hi"), QStringLiteral("other"), QStringLiteral("Hi")},
    };
    for (const HexCase& c : Cases)
        EXPECT_EQ(FormatLogData(c.data, c.view), c.shown);
}

struct LineCase {
    EventType type;
    QString from, to;
    QString text, icon, tag;
};

TEST(Log, ShowsDirectionAndPartyOfEachLine)
{
    MainWindowStack stack;
    stack.Open();
    stack.LogOn();
    const QString address = stack.executive.MyAddress();
    const LineCase Cases[] = {
        {EventType::Status, Other, Own, QStringLiteral(" 10:00:00 AM [Unit20] x"), QStringLiteral("statusin"), Other},
        {EventType::Text, Own, Other, QStringLiteral(" 10:00:00 AM [Unit20] x"), QStringLiteral("textout"), Other},
        {EventType::Call, address, Other, QStringLiteral(" 10:00:00 AM [Unit20] x"), QStringLiteral("callout"), Other},
        {EventType::Call, Other, address, QStringLiteral(" 10:00:00 AM [Unit20] x"), QStringLiteral("callin"), Other},
        {EventType::Text, Other, QStringLiteral("Unit22"), QStringLiteral(" 10:00:00 AM [] x"), QStringLiteral("text"),
         QString()},
        {EventType::Text, QStringLiteral("dispatch"), Other, QStringLiteral(" 10:00:00 AM [] x"),
         QStringLiteral("text"), QString()},
    };
    for (const LineCase& c : Cases) {
        Show(stack, stack.clock.Now(), c.type, QStringLiteral("x"), c.from, c.to);
        const QModelIndex last = stack.Log().currentIndex();
        EXPECT_EQ(last.row(), stack.Log().model()->rowCount() - 1);
        EXPECT_EQ(last.data().toString(), c.text);
        EXPECT_EQ(last.data(LogModel::IconKeyRole).toString(), c.icon);
        EXPECT_EQ(last.data(LogModel::TagRole).toString(), c.tag);
        EXPECT_EQ(last.data(Qt::DecorationRole).value<QIcon>().isNull(), c.tag.isEmpty());
    }
    EXPECT_EQ(stack.Address().currentText(), QString()) << "an incoming line took over the address";
}

TEST(Log, PutsTheDateBeforeTheFirstLineOfEachDay)
{
    MainWindowStack stack;
    stack.Open();
    stack.LogOn();
    const QDateTime lateEvening(QDate(2024, 3, 1), QTime(23, 59, 59));
    Show(stack, lateEvening, EventType::Call, QStringLiteral("a"));
    Show(stack, lateEvening.addSecs(1), EventType::Call, QStringLiteral("b"));
    Show(stack, lateEvening, EventType::Call, QStringLiteral("c")); // the clock was set back
    Show(stack, lateEvening, EventType::Call, QStringLiteral("d"));
    EXPECT_EQ(stack.LogTexts(),
              QStringList({QStringLiteral("Friday, March 1, 2024"), QStringLiteral(" 11:59:59 PM [Unit20] a"),
                           QStringLiteral("Saturday, March 2, 2024"), QStringLiteral(" 12:00:00 AM [Unit20] b"),
                           QStringLiteral("Friday, March 1, 2024"), QStringLiteral(" 11:59:59 PM [Unit20] c"),
                           QStringLiteral(" 11:59:59 PM [Unit20] d")}));
    EXPECT_EQ(stack.LogIcons()[0], QStringLiteral("newday"));

    stack.Click("tbRefreshLog_clearlog");
    EXPECT_EQ(stack.LogTexts(), QStringList());
    Show(stack, lateEvening, EventType::Call, QStringLiteral("e"));
    EXPECT_EQ(stack.LogTexts().size(), 2) << "cleared: the date is due again";
}

TEST(Log, KeepsAtMostTheConfiguredNumberOfLines)
{
    MainWindowStack stack;
    stack.settings.Write(QStringLiteral("prefs"), QStringLiteral("maxlogsize"), QStringLiteral("4"));
    stack.Open();
    stack.LogOn();
    for (int i = 0; i < 10; ++i)
        Show(stack, stack.clock.Now(), EventType::Call, QString::number(i));
    EXPECT_EQ(stack.LogTexts(), QStringList({QStringLiteral(" 10:00:00 AM [Unit20] 6"), QStringLiteral(" 10:00:00 AM [Unit20] 7"),
                                             QStringLiteral(" 10:00:00 AM [Unit20] 8"), QStringLiteral(" 10:00:00 AM [Unit20] 9")}));
    Show(stack, stack.clock.Now().addDays(1), EventType::Call, QStringLiteral("next"));
    EXPECT_EQ(stack.LogTexts().size(), 5) << "one line goes, a date and a line come";
}

TEST(Log, AnUnreadableLimitLosesNoLine)
{
    MainWindowStack stack;
    stack.settings.Write(QStringLiteral("prefs"), QStringLiteral("maxlogsize"), QStringLiteral("many"));
    stack.Open();
    stack.LogOn();
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("a"));
    stack.Click("tbRefreshLog_refresh");
    EXPECT_EQ(stack.LogTexts(), QStringList());
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("a"));
    EXPECT_EQ(stack.LogTexts().size(), 2);
}

TEST(Log, ShowsNothingWhileNobodyIsLoggedOn)
{
    MainWindowStack stack;
    stack.Open();
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("a"));
    QTest::keyClick(&stack.Log(), Qt::Key_F5);
    EXPECT_EQ(stack.LogTexts(), QStringList());
}

TEST(Log, ReloadsTheChosenPeriodWithStatusTexts)
{
    MainWindowStack stack;
    stack.Open();
    stack.LogOn();
    const QDateTime now = stack.clock.Now();
    stack.AddEvent(now.addDays(-3), 3, QStringLiteral("too old"), Other, Own);
    stack.AddEvent(now.addSecs(-3600), 1, QStringLiteral("5"), Other, Own);
    stack.AddEvent(now.addSecs(-1500), 1, QStringLiteral("7"), Own, Other);
    stack.AddEvent(now.addSecs(-1400), 1, QStringLiteral("9"), Other, Own);
    stack.AddEvent(now.addSecs(-1300), 1, QStringLiteral("99"), Other, Own);
    stack.AddEvent(now.addSecs(-1200), 2, QStringLiteral("Hi"), Other, Own);
    stack.AddEvent(now.addSecs(-1100), 3, QStringLiteral("not ours"), Other, QStringLiteral("Unit22"));

    QTest::keyClick(&stack.Log(), Qt::Key_F5);
    QStringList lastHalfHour = {QStringLiteral("Friday, March 1, 2024"), QStringLiteral(" 9:35:00 AM [Unit20] 07 - Wait"),
                                QStringLiteral(" 9:36:40 AM [Unit20] Status 9 in."), QStringLiteral(" 9:38:20 AM [Unit20] "),
                                QStringLiteral(" 9:40:00 AM [Unit20] Hi")};
    EXPECT_EQ(stack.LogTexts(), lastHalfHour);
    EXPECT_EQ(stack.LogIcons(), QStringList({QStringLiteral("newday"), QStringLiteral("statusout"), QStringLiteral("statusin"),
                                             QStringLiteral("statusin"), QStringLiteral("textin")}));

    stack.Trigger("miLogDataView");
    EXPECT_EQ(stack.Action("miLogDataView").text(), stack.Text(2055));
    lastHalfHour.last() = QStringLiteral(" 9:40:00 AM [Unit20] 48 69 ");
    EXPECT_EQ(stack.LogTexts(), lastHalfHour);
    stack.Trigger("miLogDataView");

    stack.Find<QComboBox>("cmbLogTimeUnit").setCurrentIndex(1);
    stack.Find<QLineEdit>("txtLogPeriod").setText(QStringLiteral("2"));
    stack.Click("tbRefreshLog_refresh");
    EXPECT_EQ(stack.LogTexts().value(1), QStringLiteral(" 9:00:00 AM [Unit20] 05 - Arrived"));
    EXPECT_EQ(stack.settings.LogTimePeriod(), 2);

    stack.Find<QLineEdit>("txtLogPeriod").setText(QStringLiteral("soon"));
    stack.Click("tbRefreshLog_refresh");
    EXPECT_EQ(stack.settings.LogTimePeriod(), 2) << "a text that is no number leaves the period";

    // A database that fails empties the display without a word.
    stack.session.onUse = [] { throw Error(ErrorCode::General, QStringLiteral("gone")); };
    stack.Click("tbRefreshLog_refresh");
    EXPECT_EQ(stack.LogTexts(), QStringList());
    stack.session.onUse = nullptr;
}

TEST(Log, AReloadShowsTheOldestRecordsAndOneMoreThanTheLimit)
{
    MainWindowStack stack;
    stack.settings.Write(QStringLiteral("prefs"), QStringLiteral("maxlogsize"), QStringLiteral("5"));
    stack.Open();
    stack.LogOn();
    for (int i = 0; i < 9; ++i)
        stack.AddEvent(stack.clock.Now().addSecs(i - 60), 3, QString::number(i), Other, Own);
    stack.Click("tbRefreshLog_refresh");
    ASSERT_EQ(stack.LogTexts().size(), 7); // a date and six records
    EXPECT_TRUE(stack.LogTexts()[1].endsWith(QStringLiteral("] 0")));
    EXPECT_TRUE(stack.LogTexts().last().endsWith(QStringLiteral("] 5")));
}

TEST(Log, FontStepsThroughFiveSizesAndIsKept)
{
    MainWindowStack stack;
    stack.Open();
    QList<double> sizes;
    for (int i = 0; i < 6; ++i) {
        sizes.append(stack.Log().font().pointSizeF());
        stack.Click("tbRefreshLog_logfont");
    }
    EXPECT_EQ(sizes, QList<double>({6.75, 7.75, 8.75, 9.75, 10.75, 6.75}));
    stack.CloseWindow();
    stack.Open();
    EXPECT_EQ(stack.Log().font().pointSizeF(), 7.75);
}

TEST(Log, PeriodIsStoredWhenTheWindowCloses)
{
    const std::pair<const char*, int> Cases[] = {{"45", 45}, {"2.5", 2}, {"soon", 30}, {"", 30}, {"99999999999", 30}};
    for (const auto& [typed, stored] : Cases) {
        MainWindowStack stack;
        stack.Open();
        stack.Find<QLineEdit>("txtLogPeriod").setText(QLatin1String(typed));
        stack.Find<QComboBox>("cmbLogTimeUnit").setCurrentIndex(2);
        stack.CloseWindow();
        EXPECT_EQ(stack.settings.LogTimePeriod(), stored) << typed;
        EXPECT_EQ(stack.settings.LogTimeUnit(), 2);
    }
}

TEST(Log, ChosenLinesFillTheAddressBox)
{
    MainWindowStack stack;
    stack.Open();
    stack.LogOn();
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("1"), QStringLiteral("A"));
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("2"), QStringLiteral("X"), QStringLiteral("Y"));
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("3"), QStringLiteral("B"));

    Select(stack, 3); // selected already, since it is the newest
    EXPECT_EQ(stack.Address().currentText(), QStringLiteral("B"));
    Select(stack, 1);
    EXPECT_EQ(stack.Address().currentText(), QStringLiteral("A"));
    stack.Log().selectionModel()->clearSelection();
    EXPECT_EQ(stack.Address().currentText(), QStringLiteral("A")) << "nothing chosen changes nothing";
    stack.Log().selectAll();
    EXPECT_EQ(stack.Address().currentText(), QStringLiteral("A;;B"));
}

TEST(Log, ALineIsCalledByDoubleClickAndByEnter)
{
    MainWindowStack stack;
    stack.Open();
    stack.LogOn();
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("1"));
    Select(stack, 0); // the date line has no party
    QTest::keyClick(&stack.Log(), Qt::Key_Return);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList());

    Select(stack, 1);
    QTest::keyClick(&stack.Log(), Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList());
    QTest::keyClick(&stack.Log(), Qt::Key_Return);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList({QStringLiteral("MakeCall 0 2 off off on")}));
    stack.executive.ResetTran();
    stack.control->TakeOperations();

    const QRect line = stack.Log().visualRect(stack.Log().model()->index(1, 0));
    QTest::mouseDClick(stack.Log().viewport(), Qt::LeftButton, Qt::NoModifier, line.center());
    EXPECT_EQ(stack.control->TakeOperations(), QStringList({QStringLiteral("MakeCall 0 2 off off on")}));
    stack.executive.ResetTran();
}

TEST(Log, TheMessagingMenuComesWhenTheRightButtonIsReleasedOnAParty)
{
    MainWindowStack stack;
    stack.Open();
    stack.LogOn();
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("1"));
    auto& menu = stack.Find<QMenu>("mbMessaging");
    for (int row = 0; row < 2; ++row) {
        const QRect line = stack.Log().visualRect(stack.Log().model()->index(row, 0));
        QTest::mousePress(stack.Log().viewport(), Qt::RightButton, Qt::NoModifier, line.center());
        EXPECT_FALSE(menu.isVisible());
        QTest::mouseRelease(stack.Log().viewport(), Qt::RightButton, Qt::NoModifier, line.center());
        EXPECT_EQ(menu.isVisible(), row == 1);
    }
    EXPECT_EQ(menu.defaultAction(), &stack.Action("miSendCall"));
    menu.close();
}

TEST(Log, AControlCharacterOfAMessageStaysOnItsLine)
{
    MainWindowStack stack;
    stack.Open();
    stack.LogOn();
    Show(stack, stack.clock.Now(), EventType::Text, QStringLiteral("a\r\nb\tc\x07"));
    const QModelIndex last = stack.Log().currentIndex();
    EXPECT_TRUE(last.data().toString().endsWith(QStringLiteral("a\r\nb\tc\x07"))) << "the log alters no text";
    const auto& delegate = dynamic_cast<const LogDelegate&>(*stack.Log().itemDelegate());
    EXPECT_EQ(delegate.displayText(QStringLiteral("a\r\nb\tc\x07"), QLocale()), QStringLiteral("a\u21B5b\u21E5c\u2407"));
    EXPECT_EQ(stack.Log().visualRect(last).height(),
              stack.Log().visualRect(stack.Log().model()->index(0, 0)).height());
    EXPECT_GE(stack.Log().header()->sectionSize(0), stack.Log().sizeHintForIndex(last).width());
}

}
