// What a shift report makes of the acts that consoles have stored, on a real database.

#include "core/eventlog/AttentionAct.h"
#include "core/texts/StringSourceImpl.h"
#include "logbook/query/ShiftLines.h"
#include "logbook/window/frmShiftReport.h"
#include "support/FakeClock.h"
#include "support/Files.h"
#include "support/TestDatabase.h"

#include <QDateTimeEdit>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

using Entry = dao::AttentionRecord;
using Act = AttentionAct::Kind;

const QDateTime Noon(QDate(2024, 3, 1), QTime(12, 0), Qt::UTC);

class ShiftReportTest : public testing::Test {
protected:
    // An act of a console so many minutes after noon; an entry is named by its caller.
    void Store(Act kind, const QString& caller, double minute, const QString& who, int seen = 1)
    {
        const QString id = QString("00000000-0000-0000-0000-%1").arg(++m_acts, 12, 10, QLatin1Char('0'));
        if (kind == Act::Heard && !m_entries.contains(caller))
            m_entries.insert(caller, id);
        const Entry::Kind of = caller.startsWith('!') ? Entry::Kind::Emergency : Entry::Kind::MissedCall;
        StoreAct(workspace->Database(),
                 {.kind = kind,
                  .entry = {.caller = caller,
                            .kind = of,
                            .id = kind == Act::Heard ? QString() : m_entries.value(caller),
                            .what = "voice",
                            .times = seen}},
                 {id, At(minute), who, who + "-desk"});
    }
    static QDateTime At(double minute) { return Noon.addMSecs(static_cast<qint64>(minute * 60000)); }
    // Caller, times, since and state of each wait; then what was open before and after.
    QString Waits(double from, double to)
    {
        const LogFacts facts(strings, {});
        const auto report = ShiftReport::Read(workspace->Database(), facts, At(from), At(to));
        QStringList waits;
        for (const ShiftWait& wait : report.Waits())
            waits.append(QString("%1 %2 %3 %4 %5 %6")
                             .arg(wait.caller)
                             .arg(wait.times)
                             .arg(Noon.secsTo(wait.since) / 60)
                             .arg(static_cast<int>(wait.state))
                             .arg(wait.takenBy)
                             .arg(wait.Waited()));
        waits.append(QString("open %1 %2").arg(report.OpenBefore()).arg(report.OpenAfter()));
        return waits.join(" | ");
    }

    CStringSourceImpl strings{QStringList{}};
    TestDatabase database;
    std::unique_ptr<dao::Workspace> workspace = database.Open();
    QHash<QString, QString> m_entries;
    int m_acts = 0;
};

TEST_F(ShiftReportTest, TellsWaitsAsTheyWereInThatTime)
{
    workspace->Database().Append("event", {"time_stamp", "event_type", "desc", "direction"},
                                 {{At(-30), 2, "before", 1},
                                  {At(0), 1, "5", 1},
                                  {At(1), 2, "a", 1},
                                  {At(2), 2, "b", 2},
                                  {At(3), 3, "Emergency Incoming Call", 1},
                                  {At(60), 2, "after", 1}});
    Store(Act::Heard, "old", -20, "A");
    Store(Act::Heard, "night", -15, "A");
    Store(Act::Heard, "gone", -25, "A");
    Store(Act::Done, "gone", -24, "A");
    Store(Act::Heard, "!Car", 3, "A");
    Store(Act::Heard, "!Car", 3.02, "B"); // the same call at another console
    Store(Act::Taken, "!Car", 5, "B");
    Store(Act::Taken, "!Car", 4, "A", 1); // was away, and came first
    Store(Act::Heard, "!Car", 20, "A");   // once more
    Store(Act::Done, "!Car", 21, "B", 1); // has not seen that
    Store(Act::Taken, "!Car", 30, "B", 2);
    Store(Act::Taken, "old", 40, "A");
    Store(Act::Done, "old", 41, "A");
    Store(Act::Heard, "late", 50, "A");
    Store(Act::Done, "!Car", 70, "B", 2);
    Store(Act::Taken, "late", 71, "B");
    Store(Act::Heard, "next", 72, "A");

    EXPECT_EQ(Waits(0, 60).toStdString(),
              "!Car 1 3 3 A 60 | !Car 1 20 1 B 600 | old 1 -20 2 A 3600 | night 1 -15 0  -1 | "
              "late 1 50 0  -1 | open 2 3");
    EXPECT_EQ(Waits(60, 90).toStdString(),
              "!Car 1 20 2 B 600 | night 1 -15 0  -1 | late 1 50 1 B 1260 | next 1 72 0  -1 | "
              "open 3 3");
    EXPECT_EQ(Waits(-60, -10).toStdString(),
              "gone 1 -25 2  60 | old 1 -20 0  -1 | night 1 -15 0  -1 | open 0 2");
    const LogFacts facts(strings, {});
    const auto shift = ShiftReport::Read(workspace->Database(), facts, At(0), At(60));
    EXPECT_EQ(ShiftLines(strings).Summary(shift).join('\n').toStdString(),
              "Statuses: 1 received, 0 sent\nTexts: 1 received, 1 sent\nCalls: 1 received, 0 made\n"
              "Emergency calls in the log: 1\n"
              "Emergency: 2, answered 2; time to answer 0:01:00 (median), 0:10:00 (longest)\n"
              "Missed call: 1, answered none\nCall for a call-back: 0, answered none\n"
              "Message that failed: 0, answered none\nOpen at the beginning: 2, at the end: 3");
}

TEST_F(ShiftReportTest, WindowShowsAndWritesIt)
{
    const FakeClock clock(At(60));
    TestSession session(database);
    frmShiftReport window(session, strings, clock, [] { return QStringList(); });
    Store(Act::Heard, "!Car", 3, "A");
    Store(Act::Taken, "!Car", 5, "B");
    window.Open();
    const auto& table = *window.findChild<QTableView*>("lvShift");
    const auto& state = *window.findChild<QLabel*>("lblState");
    ASSERT_TRUE(QTest::qWaitFor([&] { return table.model()->rowCount() == 1; }, 10000));
    EXPECT_EQ(table.model()->index(0, ShiftLines::TakenBy).data().toString(), "B (B-desk)");
    EXPECT_TRUE(window.findChild<QLabel*>("lblSummary")->text().endsWith("at the end: 1"));

    const QTemporaryDir folder;
    const auto write = [&](const char* button, const QString& file) {
        QTest::mouseClick(window.findChild<QPushButton*>(button), Qt::LeftButton);
        auto* dialog = window.findChild<QFileDialog*>("fileDialog");
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(file);
        QTest::keyClick(dialog, Qt::Key_Return);
        EXPECT_TRUE(QTest::qWaitFor([&] { return state.text().contains(file); }, 10000));
        EXPECT_TRUE(QTest::qWaitFor([&] { return !window.findChild<QFileDialog*>("fileDialog"); }, 5000));
        return ReadFile(file);
    };
    EXPECT_TRUE(write("cmdExportCsv", folder.filePath("shift.csv")).startsWith("line,kind,"));
    EXPECT_TRUE(write("cmdExportPdf", folder.filePath("shift.pdf")).startsWith("%PDF-"));
    window.findChild<QDateTimeEdit*>("txtFrom")->setDateTime(At(61).toLocalTime());
    QTest::mouseClick(window.findChild<QPushButton*>("cmdShow"), Qt::LeftButton);
    EXPECT_EQ(state.text(), strings.LoadString(6686));
    EXPECT_EQ(table.model()->rowCount(), 0);
    EXPECT_FALSE(window.findChild<QPushButton*>("cmdPrint")->isEnabled());
    session.Logoff();
    EXPECT_FALSE(window.isVisible());
}

} // namespace
