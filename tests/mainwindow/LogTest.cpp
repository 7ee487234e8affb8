// The message log: lines, dates, limits, reload and what the operator does on it.

#include "MainWindowStack.h"
#include "core/widgets/Icons.h"
#include "mainwindow/log/LogDelegate.h"
#include "mainwindow/log/LogModel.h"
#include "mainwindow/log/LogPane.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTreeView>

namespace {

const QString Own = QStringLiteral("Dispatch");
const QString Other = QStringLiteral("Unit20");

void Show(MainWindowStack& stack, const QDateTime& time, EventType type, const QString& desc,
          const QString& from = Other, const QString& to = Own)
{
    stack.Find<LogPane>("picLog").LogShowNewLine(time, type, desc, from, to, {}, {});
}

void Select(MainWindowStack& stack, int row)
{
    const QRect line = stack.Log().visualRect(stack.Log().model()->index(row, 0));
    QTest::mouseClick(stack.Log().viewport(), Qt::LeftButton, Qt::NoModifier, line.center());
}

struct HexCase {
    QString data;
    LogDataView view;
    QString shown;
};

TEST(FormatLogData, ShowsTextOrWindowsCodes)
{
    const HexCase Cases[] = {
        {QStringLiteral("Hi"), LogDataView::Hex, QStringLiteral("48 69 ")},
        {QString(), LogDataView::Hex, QString()},
        {QStringLiteral("é€\n"), LogDataView::Hex, QStringLiteral("E9 80 0A ")},
        {QStringLiteral("Ωa"), LogDataView::Hex, QStringLiteral("3F 61 ")},
        {QStringLiteral("\U0001F600."), LogDataView::Hex, QStringLiteral("3F 2E ")},
        {QStringLiteral("Hi"), LogDataView::Text, QStringLiteral("Hi")},
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
    LoggedOnStack stack;
    const QString address = stack.executive.MyAddress();
    const LineCase Cases[] = {
        {EventType::Status, Other, Own, QStringLiteral(" 10:00:00 AM [Unit20] x"), QStringLiteral("statusin"),
         Other},
        {EventType::Text, Own, Other, QStringLiteral(" 10:00:00 AM [Unit20] x"), QStringLiteral("textout"),
         Other},
        {EventType::Call, address, Other, QStringLiteral(" 10:00:00 AM [Unit20] x"),
         QStringLiteral("callout"), Other},
        {EventType::Call, Other, address, QStringLiteral(" 10:00:00 AM [Unit20] x"), QStringLiteral("callin"),
         Other},
        {EventType::Text, Other, QStringLiteral("Unit22"), QStringLiteral(" 10:00:00 AM [] x"),
         QStringLiteral("text"), QString()},
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
    LoggedOnStack stack;
    const QDateTime lateEvening(QDate(2024, 3, 1), QTime(23, 59, 59));
    Show(stack, lateEvening, EventType::Call, QStringLiteral("a"));
    Show(stack, lateEvening.addSecs(1), EventType::Call, QStringLiteral("b"));
    Show(stack, lateEvening, EventType::Call, QStringLiteral("c")); // the clock was set back
    Show(stack, lateEvening, EventType::Call, QStringLiteral("d"));
    EXPECT_EQ(
        stack.LogTexts(),
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
    EXPECT_EQ(
        stack.LogTexts(),
        QStringList({QStringLiteral(" 10:00:00 AM [Unit20] 6"), QStringLiteral(" 10:00:00 AM [Unit20] 7"),
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
    OpenStack stack;
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("a"));
    QTest::keyClick(&stack.Log(), Qt::Key_F5);
    EXPECT_EQ(stack.LogTexts(), QStringList());
}

TEST(Log, ReloadsTheChosenPeriodWithStatusTexts)
{
    LoggedOnStack stack;
    const QDateTime now = stack.clock.Now();
    stack.AddEvent(now.addDays(-3), 3, QStringLiteral("too old"), Other, Own);
    stack.AddEvent(now.addSecs(-3600), 1, QStringLiteral("5"), Other, Own);
    stack.AddEvent(now.addSecs(-1500), 1, QStringLiteral("7"), Own, Other);
    stack.AddEvent(now.addSecs(-1400), 1, QStringLiteral("9"), Other, Own);
    stack.AddEvent(now.addSecs(-1300), 1, QStringLiteral("99"), Other, Own);
    stack.AddEvent(now.addSecs(-1200), 2, QStringLiteral("Hi"), Other, Own);
    stack.AddEvent(now.addSecs(-1100), 3, QStringLiteral("not ours"), Other, QStringLiteral("Unit22"));

    QTest::keyClick(&stack.Log(), Qt::Key_F5);
    QStringList lastHalfHour = {
        QStringLiteral("Friday, March 1, 2024"), QStringLiteral(" 9:35:00 AM [Unit20] 07 - Wait"),
        QStringLiteral(" 9:36:40 AM [Unit20] Status 9 in."), QStringLiteral(" 9:38:20 AM [Unit20] "),
        QStringLiteral(" 9:40:00 AM [Unit20] Hi")};
    EXPECT_EQ(stack.LogTexts(), lastHalfHour);
    EXPECT_EQ(stack.LogIcons(),
              QStringList({QStringLiteral("newday"), QStringLiteral("statusout"), QStringLiteral("statusin"),
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

    const auto& notice = stack.Find<QLabel>("logNoticeText");
    EXPECT_TRUE(notice.isVisible());
    EXPECT_EQ(notice.text(),
              QStringLiteral("The first 6 of 9 records of this period are shown, until 3/1/24 9:59:05 AM."));
    stack.Click("cmdShowNewest");
    ASSERT_EQ(stack.LogTexts().size(), 7);
    EXPECT_TRUE(stack.LogTexts()[1].endsWith(QStringLiteral("] 3")));
    EXPECT_TRUE(stack.LogTexts().last().endsWith(QStringLiteral("] 8")));
    EXPECT_EQ(
        notice.text(),
        QStringLiteral("The newest 6 of 9 records of this period are shown, from 3/1/24 9:59:03 AM on."));

    // Older ones than the last minute, in a period of days.
    stack.AddEvent(stack.clock.Now().addDays(-40), 3, QStringLiteral("old"), Other, Own);
    stack.Find<QComboBox>("cmbLogTimeUnit").setCurrentIndex(2);
    stack.Find<QLineEdit>("txtLogPeriod").setText(QStringLiteral("60"));
    stack.Click("tbRefreshLog_refresh");
    EXPECT_TRUE(stack.LogTexts()[1].endsWith(QStringLiteral("] old")));
    stack.Click("cmdShowNewest");
    EXPECT_TRUE(stack.LogTexts()[1].endsWith(QStringLiteral("] 3"))) << stack.LogTexts()[1].toStdString();
    EXPECT_TRUE(stack.LogTexts().last().endsWith(QStringLiteral("] 8")));

    stack.settings.Write(QStringLiteral("prefs"), QStringLiteral("maxlogsize"), QStringLiteral("9"));
    stack.Click("tbRefreshLog_refresh");
    EXPECT_FALSE(notice.isVisible()) << "all ten are shown";
}

TEST(Log, FontStepsThroughFiveSizesAndIsKept)
{
    OpenStack stack;
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
    const std::pair<const char*, int> Cases[] = {
        {"45", 45}, {"2.5", 2}, {"soon", 30}, {"", 30}, {"99999999999", 30}};
    for (const auto& [typed, stored] : Cases) {
        OpenStack stack;
        stack.Find<QLineEdit>("txtLogPeriod").setText(QLatin1String(typed));
        stack.Find<QComboBox>("cmbLogTimeUnit").setCurrentIndex(2);
        stack.CloseWindow();
        EXPECT_EQ(stack.settings.LogTimePeriod(), stored) << typed;
        EXPECT_EQ(stack.settings.LogTimeUnit(), TimeUnit::Days);
    }
}

TEST(Log, ChosenLinesFillTheAddressBox)
{
    LoggedOnStack stack;
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("1"), QStringLiteral("A"));
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("2"), QStringLiteral("X"),
         QStringLiteral("Y"));
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("3"), QStringLiteral("B"));

    Select(stack, 3); // selected already, since it is the newest
    EXPECT_EQ(stack.Address().currentText(), QStringLiteral("B"));
    Select(stack, 1);
    EXPECT_EQ(stack.Address().currentText(), QStringLiteral("A"));
    stack.Log().selectAll();
    EXPECT_EQ(stack.Address().currentText(), QStringLiteral("A;;B"));
    QTest::keyClick(&stack.Log(), Qt::Key_F5);
    EXPECT_EQ(stack.Log().selectionModel()->selectedRows().size(), 0);
    EXPECT_EQ(stack.Address().currentText(), QStringLiteral("A;;B")) << "only the operator takes lines out";
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("4"), QStringLiteral("C"));
    const QRect line = stack.Log().visualRect(stack.Log().currentIndex());
    QTest::mouseClick(stack.Log().viewport(), Qt::LeftButton, Qt::ControlModifier, line.center());
    EXPECT_EQ(stack.Address().currentText(), QString());
}

// The newest line is highlighted, but another party stands in the box.
TEST(Log, AGestureActsOnWhatItHitsThoughThatIsHighlightedAlready)
{
    const QStringList called = {QStringLiteral("MakeCall 0 2 off off on")};
    struct Case {
        const char* name;
        std::function<void(QTreeView&, const QPoint&)> gesture;
        bool calls;
        bool opensMenu;
    };
    const Case Cases[] = {
        {"right click",
         [](QTreeView& log, const QPoint& place) {
             QTest::mouseClick(log.viewport(), Qt::RightButton, Qt::NoModifier, place);
         },
         false, true},
        {"double click",
         [](QTreeView& log, const QPoint& place) {
             QTest::mousePress(log.viewport(), Qt::LeftButton, Qt::NoModifier, place);
             QTest::mouseDClick(log.viewport(), Qt::LeftButton, Qt::NoModifier, place);
         },
         true, false},
        {"Enter", [](QTreeView& log, const QPoint&) { QTest::keyClick(&log, Qt::Key_Return); }, true, false},
        {"menu key",
         [](QTreeView& log, const QPoint& place) {
             QContextMenuEvent menu(QContextMenuEvent::Keyboard, place, log.viewport()->mapToGlobal(place));
             QApplication::sendEvent(&log, &menu);
         },
         false, true},
    };
    for (const Case& c : Cases) {
        SCOPED_TRACE(c.name);
        LoggedOnStack stack;
        Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("1"));
        stack.clock.Step(std::chrono::seconds(1));
        stack.Address().setEditText(QStringLiteral("Unit22"));
        c.gesture(stack.Log(), stack.Log().visualRect(stack.Log().currentIndex()).center());
        EXPECT_EQ(stack.Address().currentText(), Other);
        EXPECT_EQ(stack.control->TakeOperations(), c.calls ? called : QStringList());
        auto& menu = stack.Find<QMenu>("mbMessaging");
        EXPECT_EQ(menu.isVisible(), c.opensMenu);
        menu.close();
        stack.executive.ResetTran();
    }
}

TEST(Log, ADoubleClickWhoseHalvesHitDifferentLinesCallsNobody)
{
    LoggedOnStack stack;
    for (const char* party : {"Unit20", "Unit22"})
        Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("1"), QLatin1String(party));
    const QPoint first = stack.Log().visualRect(stack.Log().model()->index(1, 0)).center();
    const QPoint second = stack.Log().visualRect(stack.Log().model()->index(2, 0)).center();
    QTest::mousePress(stack.Log().viewport(), Qt::LeftButton, Qt::NoModifier, first);
    QTest::mouseDClick(stack.Log().viewport(), Qt::LeftButton, Qt::NoModifier, second);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList());

    // A right click on the empty room below the lines hits nobody, whoever is highlighted.
    QTest::mouseClick(stack.Log().viewport(), Qt::RightButton, Qt::NoModifier,
                      stack.Log().viewport()->rect().bottomLeft() + QPoint(9, -9));
    EXPECT_FALSE(stack.Find<QMenu>("mbMessaging").isVisible());
}

TEST(Log, EnterJustAfterALineHighlightedItselfOnlyFillsTheBox)
{
    LoggedOnStack stack;
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("looked at"), QStringLiteral("Unit22"));
    Select(stack, 1);
    Show(stack, stack.clock.Now(), EventType::Call, QStringLiteral("came between"));
    stack.clock.Step(std::chrono::milliseconds(999));
    QTest::keyClick(&stack.Log(), Qt::Key_Return);
    EXPECT_EQ(stack.Address().currentText(), Other);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList());
    QTest::keyClick(&stack.Log(), Qt::Key_Return);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList({QStringLiteral("MakeCall 0 2 off off on")}));
    stack.executive.ResetTran();
}

TEST(Log, AnEmergencyIsMarkedLiveAndReadBack)
{
    LoggedOnStack stack;
    Q_EMIT stack.control->IncomingCall(165, 8, 0, 2);
    Q_EMIT stack.control->IncomingCall(0, 8, 0, 2);
    Show(stack, stack.clock.Now(), EventType::Text, QStringLiteral("Emergency Voice"));
    const auto marked = [&] {
        QList<bool> marks;
        for (int row = 0; row < stack.Log().model()->rowCount(); ++row)
            marks.append(stack.Log().model()->index(row, 0).data(LogModel::EmergencyRole).toBool());
        return marks;
    };
    EXPECT_EQ(marked(), QList<bool>({false, true, false, false}));
    stack.AddEvent(stack.clock.Now(), 3, QStringLiteral("Emergency Voice"), Own, Other);
    stack.Click("tbRefreshLog_refresh");
    EXPECT_EQ(marked(), QList<bool>({false, true, false, true}));

    // The mark is painted, in the red of emergencies, beside the picture of the call.
    const QImage image = stack.Log().viewport()->grab().toImage();
    const auto red = [&](int row) {
        const QRect line = stack.Log().visualRect(stack.Log().model()->index(row, 0));
        for (int x = line.left(); x < line.left() + 60; ++x)
            if (image.pixelColor(x, line.center().y()) == QColor(0xdc4a3d))
                return true;
        return false;
    };
    EXPECT_TRUE(red(1));
    EXPECT_FALSE(red(2));
}

TEST(Log, PicturesOfStatusAndTextDifferInShapeWhenSmall)
{
    const auto shape = [](const char* key) {
        return LoadIcon(QLatin1String(key)).pixmap(16, 16).toImage().convertToFormat(QImage::Format_ARGB32);
    };
    for (const auto& [first, second] :
         {std::pair("status", "text"), std::pair("statusin", "textin"), std::pair("statusout", "textout")}) {
        const QImage a = shape(first);
        const QImage b = shape(second);
        int either = 0, one = 0;
        for (int i = 0; i < 256; ++i) {
            const bool inA = qAlpha(a.pixel(i % 16, i / 16)) > 127;
            const bool inB = qAlpha(b.pixel(i % 16, i / 16)) > 127;
            either += inA || inB;
            one += inA != inB;
        }
        EXPECT_GT(2 * one, either) << first;
    }
}

TEST(Log, ALineIsCalledByDoubleClickAndByEnter)
{
    LoggedOnStack stack;
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
    LoggedOnStack stack;
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
    LoggedOnStack stack;
    Show(stack, stack.clock.Now(), EventType::Text, QStringLiteral("a\r\nb\tc\x07"));
    const QModelIndex last = stack.Log().currentIndex();
    EXPECT_TRUE(last.data().toString().endsWith(QStringLiteral("a\r\nb\tc\x07"))) << "the log alters no text";
    const auto& delegate = dynamic_cast<const LogDelegate&>(*stack.Log().itemDelegate());
    EXPECT_EQ(delegate.displayText(QStringLiteral("a\r\nb\tc\x07"), QLocale()),
              QStringLiteral("a\u21B5b\u21E5c\u2407"));
    EXPECT_EQ(stack.Log().visualRect(last).height(),
              stack.Log().visualRect(stack.Log().model()->index(0, 0)).height());
    EXPECT_GE(stack.Log().header()->sectionSize(0), stack.Log().sizeHintForIndex(last).width());

    stack.Log().selectAll();
    QTest::keySequence(&stack.Log(), QKeySequence::Copy);
    EXPECT_EQ(QGuiApplication::clipboard()->text(),
              QStringLiteral("Friday, March 1, 2024\n 10:00:00 AM [Unit20] a\u21B5b\u21E5c\u2407"));
}

} // namespace
