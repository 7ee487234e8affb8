// The log window on a real database: pages, words, a time, what comes, files.

#include "core/texts/StringSourceImpl.h"
#include "dao/tables/EventIndex.h"
#include "logbook/window/LogbookExport.h"
#include "logbook/window/frmLogbook.h"
#include "support/FakeClock.h"
#include "support/Files.h"
#include "support/TestDatabase.h"

#include <QCheckBox>
#include <QDateTimeEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

const QDateTime First(QDate(2024, 3, 1), QTime(12, 0), Qt::UTC);

class Logbook : public testing::Test {
protected:
    // One a minute.
    void Add(int count)
    {
        std::vector<QVariantList> rows;
        for (int i = 0; i < count; ++i) {
            ++m_last;
            rows.push_back({First.addSecs(60 * m_last), 2,
                            QString("line %1%2").arg(m_last).arg(m_last % 100 == 7 ? " smoke" : ""), "Unit20",
                            1});
        }
        other->Database().Append("event", {"time_stamp", "event_type", "desc", "from_address", "direction"},
                                 rows);
    }
    QString Text(int row) const { return Table().model()->index(row, 5).data().toString(); }
    int Rows() const { return Table().model()->rowCount(); }
    QTableView& Table() const { return *window.findChild<QTableView*>("lvLogbook"); }
    QString State() const { return window.findChild<QLabel*>("lblState")->text(); }
    bool Wait(const std::function<bool()>& until) const { return QTest::qWaitFor(until, 10000); }
    void Search(const QString& text) const
    {
        auto& field = *window.findChild<QLineEdit*>("txtSearch");
        field.clear();
        QTest::keyClicks(&field, text);
    }

    CStringSourceImpl strings{QStringList{}};
    FakeClock clock;
    TestDatabase database;
    TestSession session{database};
    std::unique_ptr<dao::Workspace> other = database.Open();
    frmLogbook window{session, strings, clock, [] { return QStringList{"Desk"}; }};
    int m_last = 0;
};

TEST_F(Logbook, PagesWordsATimeAndWhatComes)
{
    Add(1000);
    for (int i = 0; i < 2; ++i) // on a server the second one knows that no record is on its way
        dao::EventIndex::Extend(other->Database(), 2000);
    window.Open();
    ASSERT_TRUE(Wait([&] { return Rows() >= 100; })) << State().toStdString();
    EXPECT_EQ(Text(0), "line 1000");
    while (Rows() < 1000) { // as far as somebody scrolls
        const int before = Rows();
        Table().scrollToBottom();
        ASSERT_TRUE(Wait([&] { return Rows() > before; })) << before;
    }
    EXPECT_EQ(Text(999), "line 1");

    // Whoever reads further down goes on reading the same lines while others come.
    Table().verticalScrollBar()->setValue(500);
    const int top = Table().rowAt(1);
    const QString read = Text(top);
    Add(3);
    ASSERT_TRUE(Wait([&] { return Text(0) == "line 1003"; }));
    EXPECT_EQ(Text(Table().rowAt(1)), read);
    Table().scrollToTop();

    Search("SMO 407");
    ASSERT_TRUE(Wait([&] { return Rows() == 1 && Text(0) == "line 407 smoke"; }));
    Search("smoke");
    ASSERT_TRUE(Wait([&] { return Rows() == 10; }));
    EXPECT_EQ(Text(0), "line 907 smoke");
    Search("zebra");
    EXPECT_TRUE(Wait([&] { return State() == strings.LoadString(6263); }));
    Search("");
    ASSERT_TRUE(Wait([&] { return Text(0) == "line 1003"; }));

    auto& time = *window.findChild<QDateTimeEdit*>("txtGoTo");
    time.setDateTime(First.addSecs(60 * 300 - 1).toLocalTime());
    QTest::mouseClick(window.findChild<QPushButton*>("cmdGoTo"), Qt::LeftButton);
    ASSERT_TRUE(Wait([&] {
        return Table().currentIndex().isValid() && Text(Table().currentIndex().row()) == "line 300";
    }));
    EXPECT_FALSE(window.findChild<QCheckBox*>("chkFollow")->isChecked());
    ASSERT_TRUE(Wait([&] { return Text(Rows() - 1) < "line 299"; }));
    session.Logoff();
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(Rows(), 0);
}

TEST_F(Logbook, ExportIsOfAllThatMatchesOrOfNothing)
{
    Add(5000);
    LogbookExport out(session, strings);
    QStringList said;
    QObject::connect(&out, &LogbookExport::Finished,
                     [&](qlonglong lines) { said.append(QString::number(lines)); });
    QObject::connect(&out, &LogbookExport::Cancelled, [&] { said.append("cancelled"); });
    QObject::connect(&out, &LogbookExport::Failed, [&](const QString& text) { said.append(text); });
    const QTemporaryDir folder;
    const auto run = [&](LogbookExport::Target target, const QString& file, const LogFilter& filter,
                         bool cancel) {
        said.clear();
        out.Begin(target, file, nullptr, filter, LogFacts(strings, {}));
        if (cancel)
            out.Cancel();
        EXPECT_TRUE(Wait([&] { return !said.isEmpty(); }));
        return said.join(' ');
    };
    LogFilter smoke;
    smoke.text = "smoke";
    const QString csv = folder.filePath("log.csv");
    const QString pdf = folder.filePath("log.pdf");
    EXPECT_EQ(run(LogbookExport::Target::Csv, csv, smoke, true), "cancelled");
    EXPECT_FALSE(QFile::exists(csv));
    EXPECT_EQ(run(LogbookExport::Target::Csv, csv, smoke, false), "50");
    EXPECT_EQ(ReadFile(csv).count('\n'), 51);
    EXPECT_EQ(run(LogbookExport::Target::Pdf, pdf, {}, false), "5000");
    EXPECT_TRUE(ReadFile(pdf).startsWith("%PDF-"));
    EXPECT_GT(ReadFile(pdf).count("/Type /Page\n"), 50);
    EXPECT_NE(run(LogbookExport::Target::Csv, folder.filePath("none/log.csv"), smoke, false), "50");
}

} // namespace
