// Many consoles, each a process, on one database: what they write in a given time, that nothing is lost or
// doubled, also when the server crashes in the middle, and how soon a change at one is seen at the others.
//
//     bench_consoles [SECONDS [RECORDS]]    for each measurement and console; 20 seconds and 1000 records
//     unless given
//     bench_consoles --news CONSOLES        only how soon a change is seen

#include "Report.h"
#include "support/ConsoleLoad.h"

#include <QApplication>
#include <algorithm>
#include <cstdio>
#include <sys/wait.h>

namespace {

constexpr int consoles = 16;
constexpr int otherPercent = 30; // changes of duty, groups and directory, beside the log records

int recordsEach = 1000;
bool sound = true;

QStringList Stored(const TestDatabase& database)
{
    QStringList texts;
    const auto workspace = database.Open();
    const auto rows = workspace->Database().OpenSnapshot("select \"desc\" from event");
    for (; !rows->Eof(); rows->MoveNext())
        texts.append(rows->Field("desc").toString());
    texts.sort();
    return texts;
}

int Counter(const TestDatabase& database)
{
    const auto workspace = database.Open();
    const auto address = workspace->Database().OpenTable("address");
    address->SetIndex("i_callsign");
    address->Seek(QString("Counter"));
    return address->Field("note").toInt();
}

void Measure(const char* name, int count, std::chrono::seconds longest, bool crash)
{
    TestDatabase database;
    QTemporaryDir folder;
    ConsoleLoad::Prepare(database);
    QElapsedTimer time;
    time.start();
    std::vector<pid_t> children;
    for (int number = 0; number < count; ++number)
        children.push_back(
            ConsoleLoad::Start(database, number, folder.path(), recordsEach, otherPercent, longest));
    if (crash) {
        QTest::qWait(2000);
        TestServer::Get().StopAtOnce();
        QTest::qWait(2000);
        TestServer::Get().Start();
    }
    for (const pid_t child : children)
        waitpid(child, nullptr, 0);
    const double seconds = static_cast<double>(time.elapsed()) / 1000;

    QStringList sent;
    QStringList errors;
    int counted = 0;
    int doubtful = 0;
    for (int number = 0; number < count; ++number) {
        const ConsoleLoad::Report report = ConsoleLoad::ReadReport(folder.path(), number);
        sent += report.records;
        errors += report.errors;
        counted += report.counted;
        doubtful += report.doubtful;
    }
    sent.sort();
    const bool once = Stored(database) == sent;
    const int value = Counter(database);
    const bool noneLost = value >= counted && value <= counted + doubtful;
    std::printf(
        "%-34s %6d records in %5.1f s, %6.0f a second; each once: %s; counter %d of %d (+%d in doubt): %s; "
        "errors: %d\n",
        name, static_cast<int>(sent.size()), seconds, static_cast<double>(sent.size()) / seconds,
        once ? "yes" : "NO", value, counted, doubtful, noneLost ? "none lost" : "LOST",
        static_cast<int>(errors.size()));
    for (const QString& error : errors.mid(0, 3))
        std::printf("    %s\n", qPrintable(error));
    std::fflush(stdout);
    sound = sound && once && noneLost && errors.isEmpty();
}

// One console changes an entry; all the others have to be told.
void MeasureNews(int changes, int count)
{
    TestDatabase database;
    ConsoleLoad::Prepare(database);
    std::vector<std::unique_ptr<dao::Workspace>> sessions;
    int told = 0;
    for (int i = 0; i < count; ++i) {
        sessions.push_back(database.Open());
        sessions.back()->Watch({[&](const QString&) { ++told; }, [](bool) {}});
    }
    std::vector<qint64> times;
    for (int i = 0; i < changes; ++i) {
        dao::Workspace& one = *sessions[static_cast<std::size_t>(i % count)];
        const auto duty = one.Database().QueryDef("update_duty_status");
        duty->SetParameter("cs", QString("Unit1"));
        duty->SetParameter("ds", i % 2 == 0);
        told = 0;
        QElapsedTimer time;
        time.start();
        duty->Execute();
        while (told < count - 1 && time.elapsed() < 10000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        times.push_back(time.elapsed());
    }
    std::sort(times.begin(), times.end());
    const qint64 p99 = times[times.size() * 99 / 100];
    PrintRow("a change seen by all consoles, p99", static_cast<double>(p99), "ms", {}, count);
    PrintRow("a change seen by all consoles, median", static_cast<double>(times[times.size() / 2]), "ms", {},
             count);
    sound = sound && p99 < 1000;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("VELTORKYN_TEST_DURABLE", "1");
    const QApplication application(argc, argv);
    if (argc > 2 && QByteArray(argv[1]) == "--news") {
        qputenv("VELTORKYN_TEST_ENGINE", "postgresql");
        MeasureNews(300, std::atoi(argv[2]));
        return sound ? 0 : 1;
    }
    const std::chrono::seconds longest(argc > 1 ? std::atoi(argv[1]) : 20);
    recordsEach = argc > 2 ? std::atoi(argv[2]) : recordsEach;
    qunsetenv("VELTORKYN_TEST_ENGINE");
    Measure("files, one console", 1, longest, false);
    Measure("files, 4 consoles", 4, longest, false);
    if (!TestServer::IsInstalled()) {
        std::puts("PostgreSQL is not installed");
        return 1;
    }
    qputenv("VELTORKYN_TEST_ENGINE", "postgresql");
    Measure("server, one console", 1, longest, false);
    Measure("server, 16 consoles", consoles, longest, false);
    Measure("server, 16 consoles, server crashes", consoles, longest, true);
    MeasureNews(300, consoles);
    return sound ? 0 : 1;
}
