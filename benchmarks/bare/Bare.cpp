#include "bare/Bare.h"

#include <QDateTime>
#include <QStringList>
#include <QtEndian>
#include <libpq-fe.h>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr auto Text = "On the way";
constexpr auto Party = "Unit20";
constexpr auto PartyNumber = "200200120";
constexpr auto Own = "Dispatch";
constexpr auto OwnNumber = "200200121";
constexpr auto Operator = "admin";
constexpr auto Console = "bench";
constexpr auto EventFields =
    "event_id, time_stamp, event_type, \"desc\", from_address, to_address, from_number, "
    "to_number, direction, operator, console, console_number, record_id";
constexpr int EventColumns = 13;
constexpr qint64 RecordsInBlock = 128; // of the index of words

class BareFile : public Bare {
public:
    explicit BareFile(const QString& database)
    {
        sqlite3_open(database.toUtf8().constData(), &m_handle);
        for (const auto& [name, run] :
             {std::pair("kyn_fold", &Fold), std::pair("kyn_now", &Now), std::pair("kyn_user", &Now)})
            sqlite3_create_function_v2(m_handle, name, -1,
                                       SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS, nullptr, run,
                                       nullptr, nullptr, nullptr);
        sqlite3_exec(m_handle, "PRAGMA foreign_keys=ON; PRAGMA synchronous=FULL; PRAGMA journal_mode=DELETE",
                     nullptr, nullptr, nullptr);
        m_insert = Prepare("INSERT INTO event (time_stamp, event_type, \"desc\", from_address, to_address, "
                           "record_id, operator, console, console_number, from_number, to_number, direction) "
                           "VALUES (?, 2, ?, ?, ?, ?, ?, ?, ?, ?, ?, 1)");
        m_reload = Prepare("SELECT time_stamp, event_type, from_address, to_address, \"desc\", "
                           "CASE event_type WHEN 1 THEN 'status' WHEN 2 THEN 'text' WHEN 3 THEN 'call' ELSE "
                           "'' END FROM event WHERE time_stamp >= ?1 AND (from_address IN (?2, ?3) OR "
                           "to_address IN (?2, ?3)) ORDER BY time_stamp, event_id");
        m_blocks = Prepare("SELECT rowid FROM event_words WHERE event_words MATCH ? ORDER BY rowid DESC");
        m_records = Prepare((std::string("SELECT ") + EventFields +
                             " FROM event WHERE event_id BETWEEN ? AND ? AND \"desc\" LIKE ? ORDER BY "
                             "event_id DESC")
                                .c_str());
        m_directory = Prepare("SELECT address_id, callsign, \"IDENT\", dynamic, CASE \"Type\" WHEN 2 THEN "
                              "'talkgroup' ELSE 'individual' END FROM address ORDER BY kyn_fold(callsign)");
    }
    ~BareFile() override
    {
        for (sqlite3_stmt* statement : {m_insert, m_reload, m_blocks, m_records, m_directory})
            sqlite3_finalize(statement);
        sqlite3_close_v2(m_handle);
    }

    void Insert(qint64 milliseconds, const QByteArray& id, qlonglong number) override
    {
        sqlite3_bind_int64(m_insert, 1, milliseconds);
        int place = 2;
        for (const char* text : {Text, Party, Own, id.constData(), Operator, Console})
            sqlite3_bind_text(m_insert, place++, text, -1, SQLITE_STATIC);
        sqlite3_bind_int64(m_insert, place++, number);
        for (const char* text : {PartyNumber, OwnNumber})
            sqlite3_bind_text(m_insert, place++, text, -1, SQLITE_STATIC);
        if (sqlite3_step(m_insert) != SQLITE_DONE)
            throw std::runtime_error(sqlite3_errmsg(m_handle));
        sqlite3_reset(m_insert);
    }
    qint64 Reload(qint64 since, int lines) override
    {
        qint64 sum = 0;
        sqlite3_bind_int64(m_reload, 1, since);
        sqlite3_bind_text(m_reload, 2, OwnNumber, -1, SQLITE_STATIC);
        sqlite3_bind_text(m_reload, 3, Own, -1, SQLITE_STATIC);
        for (int i = 0; i < lines && sqlite3_step(m_reload) == SQLITE_ROW; ++i) {
            sum += sqlite3_column_int64(m_reload, 0) + sqlite3_column_int(m_reload, 1);
            for (int column = 2; column < 6; ++column)
                sum += Column(m_reload, column).size();
        }
        sqlite3_reset(m_reload);
        return sum;
    }
    // One statement for both would sort all that has the word.
    int Search(const QByteArray& word, int most) override
    {
        const QByteArray match = '"' + word + "\"*";
        const QByteArray like = '%' + word + '%';
        sqlite3_bind_text(m_blocks, 1, match.constData(), -1, SQLITE_STATIC);
        sqlite3_bind_text(m_records, 3, like.constData(), -1, SQLITE_STATIC);
        std::vector<QStringList> found;
        while (static_cast<int>(found.size()) < most && sqlite3_step(m_blocks) == SQLITE_ROW) {
            const qint64 first = sqlite3_column_int64(m_blocks, 0) * RecordsInBlock;
            sqlite3_bind_int64(m_records, 1, first);
            sqlite3_bind_int64(m_records, 2, first + RecordsInBlock - 1);
            while (static_cast<int>(found.size()) < most && sqlite3_step(m_records) == SQLITE_ROW) {
                QStringList texts;
                for (int column = 0; column < EventColumns; ++column)
                    texts.append(Column(m_records, column));
                found.push_back(texts);
            }
            sqlite3_reset(m_records);
        }
        sqlite3_reset(m_blocks);
        return static_cast<int>(found.size());
    }
    qint64 ReadDirectory() override
    {
        qint64 octets = 0;
        while (sqlite3_step(m_directory) == SQLITE_ROW) {
            octets += sqlite3_column_int64(m_directory, 0) + sqlite3_column_int64(m_directory, 3);
            for (const int column : {1, 2, 4}) {
                const std::string text(
                    reinterpret_cast<const char*>(sqlite3_column_text(m_directory, column)),
                    static_cast<std::size_t>(sqlite3_column_bytes(m_directory, column)));
                octets += static_cast<qint64>(text.size());
            }
        }
        sqlite3_reset(m_directory);
        return octets;
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
    static QString Column(sqlite3_stmt* statement, int column)
    {
        return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, column)),
                                 sqlite3_column_bytes(statement, column));
    }
    sqlite3_stmt* Prepare(const char* sql)
    {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(m_handle, sql, -1, &statement, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(m_handle));
        return statement;
    }

    sqlite3* m_handle = nullptr;
    sqlite3_stmt* m_insert = nullptr;
    sqlite3_stmt* m_reload = nullptr;
    sqlite3_stmt* m_blocks = nullptr;
    sqlite3_stmt* m_records = nullptr;
    sqlite3_stmt* m_directory = nullptr;
};

using Answer = std::unique_ptr<PGresult, decltype(&PQclear)>;

// Numbers and times come as they are stored, which costs least.
class BareServer : public Bare {
public:
    explicit BareServer(const QString& database) : m_line(PQconnectdb(database.toUtf8().constData()))
    {
        Require(Answer(PQexec(m_line, "SET search_path TO kyn; SET jit = off; SET enable_seqscan = off"),
                       &PQclear));
        Prepare("insert", "INSERT INTO event (time_stamp, event_type, \"desc\", from_address, to_address, "
                          "record_id, operator, console, console_number, from_number, to_number, direction) "
                          "VALUES (to_timestamp($1::bigint / 1000.0), 2, $2, $3, $4, $5, $6, $7, $8, $9, "
                          "$10, 1)");
        Prepare("reload", "SELECT time_stamp, event_type, from_address, to_address, \"desc\", "
                          "CASE event_type WHEN 1 THEN 'status' WHEN 2 THEN 'text' WHEN 3 THEN 'call' ELSE "
                          "'' END FROM event WHERE time_stamp >= to_timestamp($1::bigint / 1000.0) AND "
                          "(from_address IN ($2, $3) OR to_address IN ($2, $3)) ORDER BY time_stamp, "
                          "event_id");
        Prepare("search", (std::string("WITH hit AS MATERIALIZED (SELECT block FROM event_block WHERE words "
                                       "@@ $1::text::tsquery) SELECT ") +
                           EventFields +
                           " FROM (SELECT block FROM hit ORDER BY block DESC) AS newest, LATERAL (SELECT * "
                           "FROM event WHERE event_id BETWEEN block * 128 AND block * 128 + 127 AND \"desc\" "
                           "ILIKE $2 ORDER BY event_id DESC) AS one LIMIT $3::integer")
                              .c_str());
        Prepare("directory", "SELECT address_id, callsign, \"IDENT\", dynamic, CASE \"Type\" WHEN 2 THEN "
                             "'talkgroup' ELSE 'individual' END FROM address ORDER BY kyn_fold(callsign)");
    }
    ~BareServer() override { PQfinish(m_line); }

    void Insert(qint64 milliseconds, const QByteArray& id, qlonglong number) override
    {
        const QByteArray time = QByteArray::number(milliseconds);
        const QByteArray count = QByteArray::number(number);
        Run("insert", {time.constData(), Text, Party, Own, id.constData(), Operator, Console,
                       count.constData(), PartyNumber, OwnNumber});
    }
    qint64 Reload(qint64 since, int lines) override
    {
        const QByteArray time = QByteArray::number(since);
        const Answer rows = Run("reload", {time.constData(), OwnNumber, Own});
        constexpr qint64 epoch2000 = 946684800000; // ms; the server counts microseconds from there
        qint64 sum = 0;
        for (int row = 0; row < std::min(lines, PQntuples(rows.get())); ++row) {
            sum += qFromBigEndian<qint64>(PQgetvalue(rows.get(), row, 0)) / 1000 + epoch2000 +
                   qFromBigEndian<qint32>(PQgetvalue(rows.get(), row, 1));
            for (int column = 2; column < 6; ++column)
                sum += Column(rows, row, column).size();
        }
        return sum;
    }
    int Search(const QByteArray& word, int most) override
    {
        const QByteArray match = word + ":*";
        const QByteArray like = '%' + word + '%';
        const QByteArray limit = QByteArray::number(most);
        const Answer rows = Run("search", {match.constData(), like.constData(), limit.constData()});
        std::vector<QStringList> found;
        for (int row = 0; row < PQntuples(rows.get()); ++row) {
            QStringList texts;
            for (int column = 0; column < EventColumns; ++column)
                texts.append(Column(rows, row, column));
            found.push_back(texts);
        }
        return static_cast<int>(found.size());
    }
    qint64 ReadDirectory() override
    {
        const Answer rows = Run("directory", {});
        qint64 octets = 0;
        for (int row = 0; row < PQntuples(rows.get()); ++row) {
            octets +=
                qFromBigEndian<qint32>(PQgetvalue(rows.get(), row, 0)) + *PQgetvalue(rows.get(), row, 3);
            for (const int column : {1, 2, 4})
                octets += static_cast<qint64>(std::string(PQgetvalue(rows.get(), row, column)).size());
        }
        return octets;
    }

private:
    static QString Column(const Answer& rows, int row, int column)
    {
        return QString::fromUtf8(PQgetvalue(rows.get(), row, column), PQgetlength(rows.get(), row, column));
    }
    void Prepare(const char* name, const char* sql)
    {
        Require(Answer(PQprepare(m_line, name, sql, 0, nullptr), &PQclear));
    }
    Answer Run(const char* name, const std::vector<const char*>& values)
    {
        Answer answer(
            PQexecPrepared(m_line, name, static_cast<int>(values.size()), values.data(), nullptr, nullptr, 1),
            &PQclear);
        Require(answer);
        return answer;
    }
    void Require(const Answer& answer) const
    {
        const ExecStatusType status = PQresultStatus(answer.get());
        if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
            throw std::runtime_error(PQerrorMessage(m_line));
    }

    PGconn* m_line;
};

} // namespace

std::unique_ptr<Bare> MakeBare(const QString& database)
{
    if (database.startsWith(QLatin1String("postgresql:")))
        return std::make_unique<BareServer>(database);
    return std::make_unique<BareFile>(database);
}
