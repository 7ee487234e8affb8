// Who is where, and who has moved whom, in their windows, on a real database.

#include "core/eventlog/AttentionAct.h"
#include "core/eventlog/RegroupChange.h"
#include "core/texts/StringSourceImpl.h"
#include "logbook/window/frmRegroupHistory.h"
#include "logbook/window/frmWhoIsWhere.h"
#include "support/FakeClock.h"
#include "support/TestDatabase.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

namespace {

const QDateTime Noon(QDate(2024, 3, 1), QTime(12, 0), Qt::UTC);

TEST(WhoIsWhere, TellsWhatTheLogAndTheDirectoryTell)
{
    const CStringSourceImpl strings{QStringList{}};
    const TestDatabase database;
    const auto workspace = database.Open();
    const auto at = [](int minute) { return Noon.addSecs(minute * 60); };
    workspace->Database().Append("address", {"callsign", "IDENT", "Type", "dynamic", "on_duty"},
                                 {{"Anna", "2001", 1, false, true},
                                  {"Bert", "2002", 1, false, false},
                                  {"Never", "2003", 1, false, false},
                                  {"Storm", "900", 2, true, false}});
    workspace->Database().Append(
        "event", {"time_stamp", "event_type", "desc", "from_address", "from_number", "direction"},
        {{at(-8 * 24 * 60), 1, "2", "Never", "2003", 1}, // too long ago
         {at(-90), 1, "2", "Anna", "2001", 1},
         {at(-80), 1, "1", "Anna", "2001", 1},
         {at(-70), 1, "1", "Anna", "2001", 1},
         {at(-65), 2, "old name", "Berta", "2002", 1},
         {at(-60), 2, "here", "ANNA", {}, 1},
         {at(-50), 1, "7", "Anna", "2001", 2}}); // went out
    RegroupChange{.kind = RegroupChange::Kind::Entered, .groupId = 4, .memberId = 1, .pos = 2}.StoreIn(
        workspace->Database(), true, {"first", at(-40), "Olga", "C1"});
    RegroupChange{.kind = RegroupChange::Kind::Entered, .groupId = 4, .memberId = 2, .pos = 1}.StoreIn(
        workspace->Database(), true, {"second", at(-30), "Otto", "C2"});
    RegroupChange{.kind = RegroupChange::Kind::Dissolved, .groupId = 4, .pos = 2}.StoreIn(
        workspace->Database(), true, {"third", at(-20), "Otto", "C2"});

    const FakeClock clock(Noon);
    TestSession session(database);
    frmWhoIsWhere window(session, strings, clock, [] { return QStringList(); });
    window.Open();
    auto& table = *window.findChild<QTableView*>("lvRadios");
    ASSERT_TRUE(QTest::qWaitFor([&] { return table.model()->rowCount() == 3; }, 10000));
    QStringList lines;
    for (int row = 0; row < 3; ++row) {
        QStringList cells;
        for (const int column : {0, 3, 4, 5, 6, 7, 8})
            cells.append(table.model()->index(row, column).data().toString());
        lines.append(cells.join('|'));
    }
    const auto shown = [&](int minute) {
        const QDateTime local = at(minute).toLocalTime();
        return QLocale().toString(local.date(), QLocale::ShortFormat) + local.toString(" HH:mm:ss");
    };
    dao::EventRecord status;
    status.kind = status.direction = 1;
    status.desc = "1";
    EXPECT_EQ(lines[0].toStdString(), QString("Anna|on duty|%1|%2|%3||")
                                          .arg(shown(-80), shown(-60), LogFacts(strings, {}).TextOf(status))
                                          .toStdString());
    EXPECT_EQ(lines[1].toStdString(),
              ("Bert|off duty||" + shown(-65) + "||Storm|Otto, " + shown(-30)).toStdString());
    EXPECT_EQ(lines[2].toStdString(), "Never|off duty|||||");

    table.sortByColumn(5, Qt::DescendingOrder); // by time, not by letters
    EXPECT_EQ(table.model()->index(0, 0).data().toString(), "Anna");
    EXPECT_EQ(table.model()->index(2, 0).data().toString(), "Never");
    QTest::keyClicks(window.findChild<QLineEdit*>("txtSearch"), "storm");
    EXPECT_EQ(table.model()->rowCount(), 1);

    // What has become of a radio, from there; and of its group.
    frmRegroupHistory history(session, strings, clock);
    QObject::connect(&window, &frmWhoIsWhere::HistoryRequested, &history, &frmRegroupHistory::Open);
    QTest::keyClicks(window.findChild<QLineEdit*>("txtSearch"), "\b\b\b\b\banna");
    auto& button = *window.findChild<QPushButton*>("cmdRegroupings");
    EXPECT_FALSE(button.isEnabled());
    table.setCurrentIndex(table.model()->index(0, 0));
    button.click();
    auto& moves = *history.findChild<QTableView*>("lvRegroupings");
    const auto isShown = [&](const QStringList& expected) {
        QStringList found;
        for (int row = 0; row < moves.model()->rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < 7; ++column)
                cells.append(moves.model()->index(row, column).data().toString());
            found.append(cells.join('|'));
        }
        return found == expected;
    };
    const QString left = shown(-20) + "|Anna|Storm||2|Otto|C2";
    const QString entered = shown(-40) + "|Anna||Storm|2|Olga|C1";
    EXPECT_TRUE(QTest::qWaitFor([&] { return isShown({left, entered}); }, 10000));
    EXPECT_TRUE(history.windowTitle().contains("Anna"));
    history.Open(4, "Storm");
    const QString other = shown(-30) + "|Bert||Storm|1|Otto|C2";
    EXPECT_TRUE(QTest::qWaitFor([&] { return isShown({left, other, entered}); }, 10000));

    session.Logoff();
    EXPECT_FALSE(history.isVisible());
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(table.model()->rowCount(), 0);
}

} // namespace
