// What it costs to tie a log record to the one before it: the same records stored with and without a chain,
// in turn, on the engine of the tests (VELTORKYN_TEST_ENGINE); and how fast a log is verified. Arguments:
// records to verify (100,000).

#include "core/eventlog/ChainCheck.h"
#include "core/eventlog/LogKey.h"
#include "core/eventlog/RecordStore.h"
#include "support/TestDatabase.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QUuid>
#include <algorithm>
#include <cstdio>

namespace {

constexpr int Rounds = 31;

QList<LogRecord> Records(const QString& console, int count)
{
    QList<LogRecord> records;
    for (int i = 0; i < count; ++i)
        records.append({.id = QUuid::createUuid().toString(QUuid::WithoutBraces),
                        .time = QDateTime::currentDateTimeUtc(),
                        .type = 2,
                        .desc = "Tunnel is clear, driving on",
                        .from = "Unit20",
                        .to = "Dispatch",
                        .operatorName = "admin",
                        .console = console,
                        .fromNumber = "200200020",
                        .way = MessageWay::In});
    return records;
}

// Microseconds a record, stored so many at a time.
double Store(RecordStore& store, const QString& console, int records, int together)
{
    QList<LogRecord> waiting = Records(console, records);
    QElapsedTimer timer;
    timer.start();
    while (!waiting.isEmpty())
        waiting.remove(0, store.Store(waiting.first(std::min<qsizetype>(together, waiting.size()))).stored);
    return static_cast<double>(timer.nsecsElapsed()) / 1000.0 / records;
}

double Middle(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + Rounds / 2, values.end());
    return values[Rounds / 2];
}

void Compare(RecordStore& chained, RecordStore& bare, int records, int together)
{
    std::vector<double> with;
    std::vector<double> without;
    std::vector<double> ratios;
    for (int round = -2; round < Rounds; ++round) { // two to begin with
        // Whoever comes second may find the disk busier, or the server warmer.
        const bool chainedFirst = round % 2 == 0;
        double other = chainedFirst ? 0 : Store(bare, "bench-00000000-2", records, together);
        const double one = Store(chained, "bench-00000000-1", records, together);
        if (chainedFirst)
            other = Store(bare, "bench-00000000-2", records, together);
        if (round < 0)
            continue;
        with.push_back(one);
        without.push_back(other);
        ratios.push_back(one / other);
    }
    std::printf("record, %3d together          %9.1f us, without chain %9.1f us, ratio %.2f, of pairs %.2f "
                "(goal 1.10)\n",
                together, Middle(with), Middle(without), Middle(with) / Middle(without), Middle(ratios));
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int verified = argc > 1 ? QByteArray(argv[1]).toInt() : 100000;
    const TestDatabase database;
    const QTemporaryDir folder;
    const auto open = [&] { return database.Open(); };
    const QString id = database.Open()->Database().Id();
    RecordStore chained(open, {}, id, nullptr, std::make_unique<LogProof>(folder.path(), id));
    RecordStore bare(open, {}, id);
    Compare(chained, bare, 30, 1);
    Compare(chained, bare, 256, 64);
    Store(chained, "bench-00000000-3", verified, 256);
    const auto workspace = database.Open();
    ChainCheck check({LogChain(LogKey::Own(folder.path()), id)}, {}, {});
    QElapsedTimer timer;
    timer.start();
    qlonglong last = 0;
    qlonglong count = 0;
    for (auto page = dao::EventTable::ReadChained(workspace->Database(), last, 1LL << 40, 2000);
         !page.empty(); page = dao::EventTable::ReadChained(workspace->Database(), last, 1LL << 40, 2000)) {
        for (const dao::EventRecord& record : page)
            check.Take(record);
        last = page.back().id;
        count += static_cast<qlonglong>(page.size());
    }
    check.End();
    std::printf("verified %lld records in %lld ms: %s\n", static_cast<long long>(count),
                static_cast<long long>(timer.elapsed()), check.IsWhole() ? "whole" : "NOT whole");
}
