#pragma once

#include "dao/records/Database.h"

#include <QDateTime>
#include <QString>
#include <optional>
#include <vector>

namespace dao {

// A record of the message log with all that was stored of it. Texts are empty where nothing was.
struct EventRecord {
    qlonglong id = 0; // records are numbered in the order in which they are stored
    QDateTime time{};
    int kind = 0;
    QString desc{};
    QString from{};
    QString to{};
    QString fromNumber{};
    QString toNumber{};
    int direction = 0; // 1 in, 2 out, 0 not known
    QString operatorName{};
    QString console{};
    qlonglong consoleNumber = 0;
    QString recordId{};
    QString chain{}; // ties it to the console's record before it; only EventTable reads it
};

// The message log as it is searched: records by their numbers, and the index behind them, which knows for
// each block of 128 records from when to when they are and which words they have. A block is indexed once all
// its records are there; those after the last one are not indexed yet. Everything here raises dao::Error.
class EventIndex {
public:
    static constexpr qlonglong BlockSize = 128;

    struct State {
        qlonglong next = 0;   // the first record that is not indexed
        qlonglong newest = 0; // the last record; 0 without one
    };
    static State StateOf(Database& database);
    // Indexes the next `most` records, some blocks of them, in a transaction of its own; those that are not
    // all there yet are left for the next time.
    static void Extend(Database& database, int most);

    // What blocks are asked for. `words` in the form that a full-text index of SQLite takes, of words between
    // double quotes (with "*" behind the quote for a beginning), AND, OR and parentheses only; empty: all
    // blocks.
    struct Wanted {
        QString words;
        QDateTime since; // an invalid one is no limit
        QDateTime until; // exclusive; likewise
    };
    enum class Order { NewestFirst, OldestFirst };
    // At most so many blocks, those before the bound, or after it.
    static std::vector<qlonglong> Blocks(Database& database, const Wanted& wanted, Order order,
                                         qlonglong bound, int most);

    // The records with these numbers and those between, oldest first.
    static std::vector<EventRecord> Read(Database& database, qlonglong first, qlonglong last);
    // The first record of that time or later; nothing when there is none.
    static std::optional<qlonglong> FirstSince(Database& database, const QDateTime& time);
};

} // namespace dao
