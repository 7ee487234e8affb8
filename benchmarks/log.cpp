// The message log beside the engine's C interface alone, on a database that
// bench_data has made:
//
//     bench_log DATABASE EVENTS
//
// Without arguments: keeping what a server has stored.

#include "Measure.h"
#include "Report.h"
#include "bare/Bare.h"
#include "core/eventlog/EventLog.h"
#include "core/eventlog/StoredRecords.h"
#include "core/texts/StringSourceImpl.h"
#include "support/TestDatabase.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QUuid>
#include <vector>

namespace {

const QDateTime Newest(QDate(2024, 6, 1), QTime(12, 0), Qt::UTC);

qint64 sum = 0; // of what was read, so that no reading is left out

void MeasureAppend(EventLog& log, Bare& bare, const QString& engine, long events)
{
    qlonglong number = 0;
    const Times times = CompareClock(
        [&] {
            const QByteArray id = QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
            bare.Insert(QDateTime::currentMSecsSinceEpoch(), id, ++number);
        },
        [&] {
            log.AppendLogRecord(QDateTime::currentDateTimeUtc(), EventType::Text,
                                QStringLiteral("On the way"), QStringLiteral("Unit20"),
                                QStringLiteral("Dispatch"), MessageWay::In);
        },
        401);
    PrintRow(qPrintable("log record, " + engine), times.ours * 1000, "us", times.bare * 1000, events);
}

void MeasureReload(dao::Database& database, Bare& bare, const QString& engine, long events)
{
    constexpr int lines = 500;
    const auto query = database.QueryDef("get_events");
    const qint64 minutes = Newest.secsTo(QDateTime::currentDateTimeUtc()) / 60 + 9;
    const auto since = [&] { return QDateTime::currentMSecsSinceEpoch() - minutes * 60000; };
    qint64 own = 0;
    qint64 other = 0;
    const Times times = CompareClock([&] { other = bare.Reload(since(), lines); },
                                     [&] {
                                         query->SetParameter("MyAdr", "200200121");
                                         query->SetParameter("MyCallsign", "Dispatch");
                                         query->SetParameter("TimeUnit", "n");
                                         query->SetParameter("TimeVal", minutes);
                                         const auto rows = query->OpenSnapshot();
                                         own = 0;
                                         for (int i = 0; i < lines && !rows->Eof(); ++i, rows->MoveNext()) {
                                             own += rows->NumberAt(0) + rows->NumberAt(1);
                                             for (int column = 2; column < 6; ++column)
                                                 own += rows->TextAt(column).size();
                                         }
                                     },
                                     51);
    sum += own + other;
    PrintRow(qPrintable("log reload, " + engine), times.ours * 1000, "us", times.bare * 1000, events);
}

// What it costs to keep the records that a server has stored: one by one, as a quiet day brings them, and
// twenty at a time, as a storm does. The file is begun anew five times.
void MeasureKeeping()
{
    constexpr int records = 50000;
    for (const int together : {1, 20}) {
        const QTemporaryDir folder;
        StoredRecords stored(folder.path(), QStringLiteral("bench"));
        QList<QList<LogRecord>> portions;
        for (int i = 0; i < records; ++i) {
            if (i % together == 0)
                portions.append(QList<LogRecord>());
            portions.last().append({.id = QUuid::createUuid().toString(QUuid::WithoutBraces),
                                    .time = QDateTime::currentDateTimeUtc(),
                                    .type = 2,
                                    .desc = QStringLiteral("Tunnel is clear, driving on"),
                                    .from = QStringLiteral("unit20"),
                                    .to = QStringLiteral("dispatch")});
        }
        const double time = Milliseconds([&] {
            for (const QList<LogRecord>& portion : portions)
                stored.Add(portion);
        });
        std::printf("keeping a stored record, %2d together: %.1f us\n", together, time * 1000 / records);
        const double reading = Milliseconds([&] { sum += stored.Read().records.size(); });
        std::printf("reading them: %.0f ms\n", reading);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (argc < 3) {
        MeasureKeeping();
        return sum > 0 ? 0 : 1;
    }
    const TestDatabase database(dao::LocationOf(QString::fromLocal8Bit(argv[1])));
    const long events = std::atol(argv[2]);
    const QString engine =
        dao::IsServerTarget(database.location.database) ? QStringLiteral("server") : QStringLiteral("files");
    const auto bare = MakeBare(database.location.database);
    TestSession session(database);
    CStringSourceImpl source{QStringList{}};
    EventLog log(session, source.CreateStringSource(QStringLiteral("CKYN")));
    log.WriteWaiting();
    MeasureAppend(log, *bare, engine, events);
    MeasureReload(session.Database(), *bare, engine, events);
    return sum > 0 ? 0 : 1;
}
