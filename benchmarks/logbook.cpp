// The log window's queries on a long log, on files and on a server. Arguments: records (5,000,000), then
// "files" or "server" for one of the two, and then where the database is that is made once and kept: a file
// or a server's address.

#include "core/base/Clock.h"
#include "core/texts/StringSourceImpl.h"
#include "logbook/query/LogSearch.h"
#include "logbook/window/frmLogbook.h"
#include "support/TestDatabase.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTableView>
#include <QTest>
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <optional>
#include <random>
#include <thread>

namespace {

constexpr int RowsAtOnce = 500;
constexpr int IndexedAtOnce = 2048;      // while records are stored
constexpr int IndexedInBulk = 64 * 1024; // before anything is measured
const QDateTime Newest(QDate(2024, 6, 1), QTime(12, 0), Qt::UTC);

struct Stopwatch {
    QElapsedTimer timer;
    Stopwatch() { timer.start(); }
    double Milliseconds() const { return static_cast<double>(timer.nsecsElapsed()) / 1e6; }
};

// Ten seconds from one to the next; a thousand parties; "wombat" once in a million.
class Maker {
public:
    std::vector<QVariantList> Next(int rows, int last)
    {
        static const char* const words[] = {
            "patient", "ready", "at",    "station", "bridge", "north",  "gate", "fuel",   "smoke", "report",
            "traffic", "Feuer", "leave", "return",  "water",  "second", "crew", "needed", "road",  "closed"};
        std::vector<QVariantList> made;
        for (int i = 0; i < rows; ++i) {
            const int number = ++m_number;
            const unsigned chance = m_random();
            const int kind = chance % 10 < 4 ? 1 : chance % 10 < 9 ? 2 : 3;
            QString desc = QString::number(chance / 10 % 32);
            if (kind == 2) {
                desc.clear();
                for (int word = 0; word < 5; ++word)
                    desc += QLatin1String(words[m_random() % std::size(words)]) + u' ';
                desc += QString::number(m_random() % 10000);
                if (number % 1'000'000 == 500'000)
                    desc += QLatin1String(" wombat");
            } else if (kind == 3) {
                desc = chance / 10 % 1000 == 0 ? "Emergency Incoming Call" : "Incoming Call";
            }
            const QString party = QStringLiteral("Unit%1").arg(m_random() % 1000);
            const bool out = chance % 3 == 0;
            made.push_back(
                {Newest.addSecs(-10LL * (last - number)), kind, desc, out ? "Desk" : party,
                 out ? party : "Desk", out ? "2000" : QString::number(3000 + chance % 1000),
                 out ? QString::number(3000 + chance % 1000) : "2000", out ? 2 : 1, "Oliver", "desk 1",
                 number, QStringLiteral("00000000-0000-4000-8000-%1").arg(number, 12, 16, QLatin1Char('0'))});
        }
        return made;
    }

private:
    std::mt19937 m_random{17};
    int m_number = 0;
};

void Fill(dao::Workspace& workspace, int count)
{
    const QStringList fields{"time_stamp", "event_type",  "desc",           "from_address",
                             "to_address", "from_number", "to_number",      "direction",
                             "operator",   "console",     "console_number", "record_id"};
    Maker maker;
    const Stopwatch clock;
    for (int made = 0; made < count;) {
        workspace.BeginTrans();
        for (int i = 0; i < 200 && made < count; ++i, made += RowsAtOnce)
            workspace.Database().Append("event", fields,
                                        maker.Next(std::min(RowsAtOnce, count - made), count));
        workspace.CommitTrans();
    }
    std::printf("  filled in %.0f s\n", clock.Milliseconds() / 1000);
}

void Index(dao::Database& database)
{
    const Stopwatch clock;
    qlonglong before = -1;
    for (auto state = dao::EventIndex::StateOf(database); state.next != before;) {
        before = state.next;
        for (int i = 0; i < 2; ++i) // on a server the second one knows that no record is on its way
            dao::EventIndex::Extend(database, IndexedInBulk);
        state = dao::EventIndex::StateOf(database);
    }
    std::printf("  indexed in %.0f s\n", clock.Milliseconds() / 1000);
    std::fflush(stdout);
}

struct Case {
    const char* name;
    LogFilter filter;
};

void Measure(const TestDatabase& place, const Case& c, const IStringSource& strings)
{
    double first = 0;
    std::vector<double> times;
    std::size_t hits = 0;
    for (int round = 0; round < 5; ++round) {
        const auto workspace = place.Open(); // nothing is prepared
        LogFacts facts(strings, {"Desk"});
        facts.ReadStatuses(workspace->Database());
        const LogSearch search(c.filter, facts);
        const Stopwatch clock;
        const auto page =
            search.Next(workspace->Database(), LogSearch::Order::NewestFirst, LogSearch::FromNewest, 100);
        hits = page.records.size();
        times.push_back(clock.Milliseconds());
        if (round == 0)
            first = times.front();
        if (clock.Milliseconds() > 5000)
            break;
    }
    std::sort(times.begin(), times.end());
    std::printf("  %-44s %4zu hits  first %7.1f ms  median of %zu %7.1f ms\n", c.name, hits, first,
                times.size(), times[times.size() / 2]);
    std::fflush(stdout);
}

// One at a time, as a console stores them.
void Store(const TestDatabase& place, bool indexing)
{
    const auto workspace = place.Open();
    std::atomic<bool> end = false;
    std::optional<std::thread> beside;
    if (indexing)
        beside.emplace([&, again = workspace->Again()] {
            const auto other = again();
            while (!end) {
                try {
                    dao::EventIndex::Extend(other->Database(), IndexedAtOnce);
                } catch (const dao::Error&) { // records are stored: they go first
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
            }
        });
    std::vector<double> times;
    int locked = 0;
    for (int i = 0; i < 500; ++i) {
        const Stopwatch clock;
        const auto rows = workspace->Database().OpenTable("event", true);
        rows->AddNew();
        rows->SetField("time_stamp", Newest);
        rows->SetField("event_type", 2);
        rows->SetField("desc", "one more record");
        try {
            rows->Update();
        } catch (const dao::Error&) { // after two seconds; a console keeps the record meanwhile
            ++locked;
        }
        times.push_back(clock.Milliseconds());
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    end = true;
    if (beside)
        beside->join();
    std::sort(times.begin(), times.end());
    std::printf("  a record %s: median %.1f ms, p99 %.1f ms, worst %.1f ms, %d refused\n",
                indexing ? "while others are indexed" : "alone", times[250], times[495], times[499], locked);
}

double OwnMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// The longest time between two rounds of the event loop while somebody types, scrolls and records come.
void Live(const TestDatabase& place, const IStringSource& strings)
{
    const SystemClock clock;
    TestSession session(place);
    frmLogbook window(session, strings, clock, [] { return QStringList{"Desk"}; });
    auto& lines = *window.findChild<QTableView*>("lvLogbook");
    auto& search = *window.findChild<QLineEdit*>("txtSearch");
    const Stopwatch whole;
    double longest = 0;
    double longestOwn = 0; // without what others had of the processor
    const auto live = [&](double milliseconds, const std::function<bool()>& until) {
        const Stopwatch time;
        do {
            const Stopwatch round;
            const double own = OwnMilliseconds();
            QCoreApplication::processEvents(QEventLoop::AllEvents);
            longest = std::max(longest, round.Milliseconds());
            longestOwn = std::max(longestOwn, OwnMilliseconds() - own);
            if (until && until())
                break;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        } while (time.Milliseconds() < milliseconds);
        return time.Milliseconds();
    };
    const auto hasLines = [&] { return lines.model()->rowCount() > 0; };
    window.Open();
    longest = longestOwn = 0; // what was built before is no turn of the loop
    std::printf("  window: first lines after %.0f ms\n", live(20000, hasLines));
    for (const char* const word : {"smoke", "wombat", "4711", "bridge 4711"}) {
        search.clear();
        live(400, {});
        for (const char* letter = word; *letter != 0; ++letter) {
            QTest::keyClick(&search, *letter);
            live(60, {});
        }
        const QString wanted = QString(word).section(' ', -1);
        const double shown = live(20000, [&] {
            return hasLines() && lines.model()->index(0, 5).data().toString().contains(wanted);
        });
        std::printf("  window: \"%s\" is in the first line %.0f ms after its last key\n", word, shown);
    }
    search.clear();
    live(500, {});
    for (int i = 0; i < 30; ++i) {
        lines.scrollToBottom();
        live(100, {});
    }
    std::printf("  window: %d lines after scrolling; event loop held for %.0f ms at most, %.0f ms of them by "
                "itself\n",
                lines.model()->rowCount(), longest, longestOwn);
    std::fflush(stdout);
}

void Run(const char* name, const TestDatabase& place, int count, const IStringSource& strings)
{
    std::printf("%s, %d records\n", name, count);
    {
        const auto workspace = place.Open();
        const qlonglong there = dao::EventIndex::StateOf(workspace->Database()).newest;
        if (there < count) {
            Fill(*workspace, count);
            Store(place, false);
            Store(place, true);
        }
        Index(workspace->Database());
    }
    const auto with = [](auto set) {
        LogFilter filter;
        set(filter);
        return filter;
    };
    const QDateTime month = Newest.addDays(-300);
    const Case cases[] = {
        {"everything", {}},
        {"a word of every fifth text", with([](LogFilter& f) { f.text = "smoke"; })},
        {"a word, once in a million", with([](LogFilter& f) { f.text = "wombat"; })},
        {"a word that is nowhere", with([](LogFilter& f) { f.text = "zebra"; })},
        {"one letter", with([](LogFilter& f) { f.text = "w"; })},
        {"the beginning of a word", with([](LogFilter& f) { f.text = "wo"; })},
        {"a number of four digits", with([](LogFilter& f) { f.text = "4711"; })},
        {"two words", with([](LogFilter& f) { f.text = "bridge 4711"; })},
        {"four words", with([](LogFilter& f) { f.text = "smoke bridge north 47"; })},
        {"a party", with([](LogFilter& f) { f.party = "Unit77"; })},
        {"a word and a party", with([](LogFilter& f) { f.party = "Unit777", f.text = "fuel"; })},
        {"emergencies", with([](LogFilter& f) { f.emergency = true; })},
        {"a word in a month of last year",
         with([&](LogFilter& f) { f.text = "smoke", f.since = month, f.until = month.addDays(30); })},
        {"calls in a month of last year",
         with([&](LogFilter& f) { f.kinds = {3}, f.since = month, f.until = month.addDays(30); })},
        {"a party's outgoing texts",
         with([](LogFilter& f) { f.party = "Unit5", f.direction = 2, f.kinds = {2}; })},
    };
    for (const Case& c : cases)
        Measure(place, c, strings);
    const auto workspace = place.Open();
    const Stopwatch clock;
    const auto found = dao::EventIndex::FirstSince(workspace->Database(), month);
    std::printf("  jump to a time: record %lld in %.1f ms\n", found.value_or(0), clock.Milliseconds());
    Live(place, strings);
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const int count = argc > 1 ? std::atoi(argv[1]) : 5'000'000;
    const QString only = argc > 2 ? argv[2] : "";
    const CStringSourceImpl strings{QStringList{}};
    if (argc > 3) {
        Run(argv[2], TestDatabase(dao::LocationOf(argv[3])), count, strings);
        return 0;
    }
    if (only != "server")
        Run("files", TestDatabase(QString()), count, strings);
    if (only != "files" && TestServer::IsInstalled())
        Run("server", TestDatabase(TestServer::Get().Target(TestServer::Get().NewName())), count, strings);
}
