// The newest 100 hits of the log window beside a full-text query with the engine's C interface alone, on a
// database that bench_data has made; what is not indexed yet is indexed first.
//
//     bench_search DATABASE EVENTS

#include "Measure.h"
#include "Report.h"
#include "bare/Bare.h"
#include "core/texts/StringSourceImpl.h"
#include "logbook/query/LogSearch.h"
#include "support/TestDatabase.h"

#include <QCoreApplication>

namespace {

constexpr int Most = 100;
constexpr int IndexedAtOnce = 64 * 1024;

void Index(dao::Database& database)
{
    qlonglong before = -1;
    for (auto state = dao::EventIndex::StateOf(database); state.next != before;) {
        before = state.next;
        for (int i = 0; i < 2; ++i) // on a server the second one knows that no record is on its way
            dao::EventIndex::Extend(database, IndexedAtOnce);
        state = dao::EventIndex::StateOf(database);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (argc < 3) {
        std::puts("usage: bench_search DATABASE EVENTS");
        return 2;
    }
    const TestDatabase place(dao::LocationOf(QString::fromLocal8Bit(argv[1])));
    const auto workspace = place.Open();
    dao::Database& database = workspace->Database();
    Index(database);
    const auto bare = MakeBare(place.location.database);
    const CStringSourceImpl strings{QStringList{}};
    LogFacts facts(strings, {"Dispatch"});
    facts.ReadStatuses(database);
    const char* const engine = dao::IsServerTarget(place.location.database) ? "server" : "files";
    for (const auto& [what, sought, rounds] :
         {std::tuple("word", "smoke", 21), std::tuple("number", "4711", 7)}) {
        LogFilter filter;
        filter.text = QLatin1String(sought);
        const LogSearch search(filter, facts);
        int own = 0;
        int other = 0;
        const Times times = CompareClock(
            [&] { other = bare->Search(sought, Most); },
            [&] {
                own = static_cast<int>(
                    search.Next(database, LogSearch::Order::NewestFirst, LogSearch::FromNewest, Most)
                        .records.size());
            },
            rounds);
        const QString row =
            QStringLiteral("log window search for a %1, %2").arg(QLatin1String(what), QLatin1String(engine));
        if (own == other)
            PrintRow(qPrintable(row), times.ours, "ms", times.bare, std::atol(argv[2]));
        else
            std::printf("%s: %d found, bare %d\n", qPrintable(row), own, other);
    }
    return 0;
}
