// The message log and the directory look-ups beside the bare SQLite C interface with the same pragmas, as
// ratios within one run: absolute times drift. Arguments: events in the database (1,000,000).

#include "Measure.h"
#include "core/eventlog/EventLog.h"
#include "core/eventlog/StoredRecords.h"
#include "core/texts/StringSourceImpl.h"
#include "support/TestDatabase.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QUuid>
#include <algorithm>
#include <cstdio>
#include <sqlite3.h>
#include <vector>

namespace {

class Bare {
public:
    explicit Bare(const dao::Location& location)
    {
        sqlite3_open(location.database.toUtf8().constData(), &m_handle);
        for (const auto& [name, run] :
             {std::pair("kyn_fold", &Fold), std::pair("kyn_now", &Now), std::pair("kyn_user", &Now)})
            sqlite3_create_function_v2(m_handle, name, -1,
                                       SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS, nullptr, run,
                                       nullptr, nullptr, nullptr);
        Run("PRAGMA foreign_keys=ON; PRAGMA synchronous=FULL; PRAGMA journal_mode=DELETE");
    }
    ~Bare() { sqlite3_close_v2(m_handle); }

    void Run(const char* sql)
    {
        char* message = nullptr;
        if (sqlite3_exec(m_handle, sql, nullptr, nullptr, &message) != SQLITE_OK)
            std::printf("%s: %s\n", sql, message);
    }
    sqlite3_stmt* Prepare(const char* sql)
    {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(m_handle, sql, -1, &statement, nullptr) != SQLITE_OK)
            std::printf("%s: %s\n", sql, sqlite3_errmsg(m_handle));
        return statement;
    }

private:
    static void Fold(sqlite3_context* context, int, sqlite3_value** values)
    {
        sqlite3_result_value(context, values[0]); // the callsigns here are in lower case
    }
    static void Now(sqlite3_context* context, int, sqlite3_value**)
    {
        sqlite3_result_int64(context, QDateTime::currentMSecsSinceEpoch());
    }

    sqlite3* m_handle = nullptr;
};

// The middle of several runs, in microseconds a piece; the two are run in turn, so that drift meets both.
template <typename Own, typename Other>
void Compare(const char* what, int pieces, double goal, Own own, Other bare)
{
    std::vector<double> ownTimes;
    std::vector<double> bareTimes;
    const auto measure = [pieces](auto run) {
        QElapsedTimer timer;
        timer.start();
        run();
        return static_cast<double>(timer.nsecsElapsed()) / 1000.0 / pieces;
    };
    for (int round = 0; round < 9; ++round) {
        ownTimes.push_back(measure(own));
        bareTimes.push_back(measure(bare));
    }
    const auto middle = [](std::vector<double>& times) {
        std::nth_element(times.begin(), times.begin() + 4, times.end());
        return times[4];
    };
    const double ownTime = middle(ownTimes);
    const double bareTime = middle(bareTimes);
    std::printf("%-28s %9.1f us, bare %9.1f us, ratio %.2f (goal %.2f)\n", what, ownTime, bareTime,
                ownTime / bareTime, goal);
}

void Fill(Bare& bare, long events)
{
    constexpr long spacing = 1000; // ms
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    bare.Run("BEGIN");
    sqlite3_stmt* insert =
        bare.Prepare("INSERT INTO event (time_stamp, event_type, \"desc\", from_address, to_address) "
                     "VALUES (?, 2, 'Tunnel is clear, driving on', 'unit20', 'dispatch')");
    for (long i = events; i > 0; --i) {
        sqlite3_bind_int64(insert, 1, now - i * spacing);
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    insert = bare.Prepare("INSERT INTO address (callsign, \"IDENT\", \"Type\") VALUES (?, ?, 1)");
    for (int i = 0; i < 20000; ++i) {
        const QByteArray callsign = "unit" + QByteArray::number(i);
        const QByteArray ident = QByteArray::number(200200000 + i);
        sqlite3_bind_text(insert, 1, callsign.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(insert, 2, ident.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    bare.Run("COMMIT");
}

qint64 sum = 0; // of what was read, so that no reading is left out

void MeasureAppend(EventLog& log, Bare& bare)
{
    constexpr int records = 50;
    sqlite3_stmt* insert =
        bare.Prepare("INSERT INTO event (time_stamp, event_type, \"desc\", from_address, to_address) "
                     "VALUES (?, ?, ?, ?, ?)");
    Compare(
        "durable log record", records, 1.15,
        [&] {
            for (int i = 0; i < records; ++i)
                log.AppendLogRecord(QDateTime::currentDateTimeUtc(), EventType::Text, "On the way", "Unit20",
                                    "Dispatch");
        },
        [&] {
            for (int i = 0; i < records; ++i) {
                sqlite3_bind_int64(insert, 1, QDateTime::currentMSecsSinceEpoch());
                sqlite3_bind_int(insert, 2, 2);
                sqlite3_bind_text(insert, 3, "On the way", -1, SQLITE_STATIC);
                sqlite3_bind_text(insert, 4, "Unit20", -1, SQLITE_STATIC);
                sqlite3_bind_text(insert, 5, "Dispatch", -1, SQLITE_STATIC);
                sqlite3_step(insert);
                sqlite3_reset(insert);
            }
        });
    sqlite3_finalize(insert);
}

void MeasureReload(dao::Database& database, Bare& bare)
{
    constexpr int lines = 500;
    const auto query = database.QueryDef("get_events");
    sqlite3_stmt* select = bare.Prepare("SELECT time_stamp, event_type, from_address, to_address, \"desc\", "
                                        "CASE event_type WHEN 1 THEN 'status' WHEN 2 "
                                        "THEN 'text' WHEN 3 THEN 'call' ELSE '' END FROM event WHERE "
                                        "time_stamp >= ? AND (from_address IN (?, ?) OR "
                                        "to_address IN (?, ?)) ORDER BY time_stamp, event_id");
    Compare(
        "log reload, a line", lines, 1.5,
        [&] {
            query->SetParameter("MyAdr", "200200121");
            query->SetParameter("MyCallsign", "dispatch");
            query->SetParameter("TimeUnit", "n");
            query->SetParameter("TimeVal", 9);
            const auto rows = query->OpenSnapshot();
            for (int i = 0; i < lines && !rows->Eof(); ++i, rows->MoveNext()) {
                sum += rows->NumberAt(0) + rows->NumberAt(1);
                for (int column = 2; column < 6; ++column)
                    sum += rows->TextAt(column).size();
            }
        },
        [&] {
            sqlite3_bind_int64(select, 1, QDateTime::currentMSecsSinceEpoch() - 9 * 60000);
            for (int i = 0; i < 2; ++i) {
                sqlite3_bind_text(select, 2 + 2 * i, "200200121", -1, SQLITE_STATIC);
                sqlite3_bind_text(select, 3 + 2 * i, "dispatch", -1, SQLITE_STATIC);
            }
            for (int i = 0; i < lines && sqlite3_step(select) == SQLITE_ROW; ++i) {
                sum += sqlite3_column_int64(select, 0) + sqlite3_column_int(select, 1);
                for (int column = 2; column < 6; ++column)
                    sum +=
                        QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(select, column)),
                                          sqlite3_column_bytes(select, column))
                            .size();
            }
            sqlite3_reset(select);
        });
    sqlite3_finalize(select);
}

void MeasureLookup(dao::Database& database, Bare& bare)
{
    constexpr int lookups = 2000;
    sqlite3_stmt* find = bare.Prepare("SELECT * FROM address WHERE \"IDENT\" = ?");
    Compare(
        "look-up by number", lookups, 1.5,
        [&] {
            for (int i = 0; i < lookups; ++i) {
                const auto directory = database.OpenTable("address");
                directory->SetIndex("i_ident");
                directory->Seek(QString::number(200200000 + 9 * i));
                sum += directory->Field("callsign").toString().size();
            }
        },
        [&] {
            for (int i = 0; i < lookups; ++i) {
                const QByteArray ident = QByteArray::number(200200000 + 9 * i);
                sqlite3_bind_text(find, 1, ident.constData(), -1, SQLITE_TRANSIENT);
                sqlite3_step(find);
                sum += QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(find, 1))).size();
                sqlite3_reset(find);
            }
        });
    sqlite3_finalize(find);
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
    QCoreApplication application(argc, argv);
    const long events = argc > 1 ? std::atol(argv[1]) : 1'000'000;
    TestDatabase database;
    MeasureKeeping();
    Bare bare(database.location);
    Fill(bare, events);
    TestSession session(database);
    CStringSourceImpl source{QStringList{}};
    EventLog log(session, source.CreateStringSource(QStringLiteral("CKYN")));
    MeasureAppend(log, bare);
    MeasureReload(session.Database(), bare);
    MeasureLookup(session.Database(), bare);
    return sum > 0 ? 0 : 1;
}
