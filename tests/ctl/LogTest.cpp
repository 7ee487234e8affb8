#include "ctl/Site.h"
#include "dao/Workspace.h"
#include "dao/tables/EventIndex.h"
#include "support/Table.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace {

const QDateTime First(QDate(2024, 3, 1), QTime(12, 0), Qt::UTC);

class Log : public Site {
protected:
    // One a minute; "indexed" says whether the index has them, except the last ones.
    void Fill(bool indexed) const
    {
        ASSERT_EQ(Create().code, 0);
        ASSERT_EQ(Import("status", "code,in,out\n5,Arrived,Go there\n").code, 0);
        const auto workspace = dao::OpenWorkspace(dao::LocationOf(m_target), "admin", "secret");
        const auto status = workspace->Database().OpenTable("status");
        status->Seek(5);
        status->Edit();
        status->SetField("emergency", true);
        status->Update();
        std::vector<QVariantList> rows;
        for (int i = 1; i <= 400; ++i)
            rows.push_back(
                {First.addSecs(60 * i), 2, QString("routine %1").arg(i), "Unit20", "Desk", "2020", 1});
        rows[0][2] = "=1+1, \"Feuer\"";
        rows[99] = {First.addSecs(6000), 1, "5", "Wagen 7", "Desk", "2007", 1};
        rows[149] = {First.addSecs(9000), 1, "5", "Desk", "Unit20", {}, 2};
        rows[199] = {First.addSecs(12000), 3, "Emergency Incoming Call", "Wagen 7", "Desk", "2007", 1};
        rows[201] = {First.addSecs(12120), 3, "Incoming Call", "Wagen 7", "Desk", "2007", 1};
        rows[249] = {First.addSecs(15000), 2, "old one, feuer\x1b[2J", "Unit21", "Desk", {}, {}};
        workspace->Database().Append(
            "event",
            {"time_stamp", "event_type", "desc", "from_address", "to_address", "from_number", "direction"},
            rows);
        if (indexed)
            dao::EventIndex::Extend(workspace->Database(), 1000);
    }

    CtlRun Show(const QStringList& options) const
    {
        return RunWithPasswords(QStringList{"log", "show", m_target, "--format", "json", "--last", "500"} +
                                options);
    }
};

// The numbers of the records that were printed, one object a line.
QString Records(const CtlRun& run)
{
    EXPECT_EQ(run.code, 0) << run.err.toStdString();
    QStringList numbers;
    for (const QByteArray& line : run.out.split('\n'))
        if (!line.isEmpty())
            numbers.append(QString::number(QJsonDocument::fromJson(line).object()["record"].toInt()));
    return numbers.join(' ');
}

TEST_F(Log, FiltersLetTheSameThroughWithTheIndexAndWithout)
{
    for (const bool indexed : {false, true}) {
        Fill(indexed);
        for (const TableRow& row : ReadTable("ctl.tsv", "Log filters", 20)) {
            const QString options = QString::fromStdString(row.at(0));
            EXPECT_EQ(Records(Show(options.split('|', Qt::SkipEmptyParts))).toStdString(), row.at(1))
                << (indexed ? "indexed: " : "not indexed: ") << row.at(0);
        }
        QFile::remove(m_target);
        QFile::remove(m_folder.filePath("site.kynw"));
    }
}

TEST_F(Log, LinesAreSafeForTerminalsAndSpreadsheets)
{
    Fill(true);
    const CtlRun text = RunWithPasswords({"log", "show", m_target, "--text", "feuer"});
    EXPECT_TRUE(text.out.contains("Unit20 (2020) > Desk  =1+1, \"Feuer\"")) << text.out.toStdString();
    EXPECT_TRUE(text.out.contains("old one, feuer\\x1b[2J\n")) << text.out.toStdString();
    const QString file = m_folder.filePath("log.csv");
    const QStringList to{"log", "export", m_target, file, "--text", "feuer"};
    EXPECT_EQ(RunWithPasswords(to).out, "Exported 2 records\n");
    const QByteArray csv = ReadFile(file);
    EXPECT_TRUE(
        csv.startsWith("record,time,direction,kind,emergency,from,from_number,to,to_number,text,operator,"
                       "console,console_number,record_id\n1,2024-03-01T"))
        << csv.toStdString();
    EXPECT_TRUE(csv.contains(",in,text,no,Unit20,2020,Desk,,\"'=1+1, \"\"Feuer\"\"\",,,,\n"))
        << csv.toStdString();
    EXPECT_EQ(static_cast<int>(QFile::permissions(file)) & 0x77, 0);
    ExpectFailure(RunWithPasswords(to), "exists already");
    for (const TableRow& row : ReadTable("ctl.tsv", "Log options that are refused", 6))
        ExpectFailure(Show(QString::fromStdString(row.at(0)).split('|')),
                      QByteArray::fromStdString(row.at(1)), 2);
}

TEST_F(Log, ShiftReportCountsAndSaysWhatIsWrong)
{
    Fill(false);
    const QString file = m_folder.filePath("shift.csv");
    const QStringList report{
        "shift", "report", m_target, "--from", "2024-03-01T12:00:00Z", "--to", "2024-03-01T15:25:00Z",
        "--csv", file};
    const CtlRun text = RunWithPasswords(report);
    EXPECT_TRUE(text.out.contains("Statuses: 1 received, 1 sent\nTexts: 200 received, 0 sent\n"
                                  "Calls: 2 received, 0 made\nEmergency calls in the log: 1\n"))
        << text.out.toStdString() << text.err.toStdString();
    EXPECT_TRUE(ReadFile(file).contains("\ncount,text_in,200,,")) << ReadFile(file).toStdString();
    ExpectFailure(RunWithPasswords(report), "exists already");
    ExpectFailure(RunWithPasswords({"shift", "report", m_target}), "--from is missing", 2);
    ExpectFailure(RunWithPasswords({"shift", "report", m_target, "--from", "1h", "--to", "2h"}),
                  "--from is not before --to", 2);
}

TEST_F(Log, FollowPrintsWhatComes)
{
    Fill(true);
    QProcess follower;
    follower.start(VELTORKYNCTL, {"log", "follow", m_target, "--password-stdin", "--format", "json", "--text",
                                  "new", "--after", "300"});
    ASSERT_TRUE(follower.waitForStarted());
    follower.write("secret\n");
    const auto workspace = dao::OpenWorkspace(dao::LocationOf(m_target), "admin", "secret");
    QByteArray printed;
    for (int i = 1; i <= 3; ++i) {
        workspace->Database().Append("event", {"time_stamp", "event_type", "desc"},
                                     {{First, 2, QString("new %1").arg(i)}, {First, 2, "other"}});
        QElapsedTimer waited;
        waited.start();
        while (printed.count('\n') < i && waited.elapsed() < 10000 && follower.waitForReadyRead(1000))
            printed += follower.readAllStandardOutput();
    }
    EXPECT_EQ(printed.count('\n'), 3) << printed.toStdString();
    EXPECT_TRUE(printed.contains("\"record\":401,") && printed.contains("\"record\":405,"))
        << printed.toStdString();
    follower.terminate();
    EXPECT_TRUE(follower.waitForFinished());
}

} // namespace
