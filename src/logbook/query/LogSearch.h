#pragma once

#include "logbook/query/LogFilter.h"

#include <functional>
#include <limits>
#include <vector>

// Finds records of the log in the order of their numbers, a page at a time. Locks nothing between two reads
// of a thousand records at most. Used on the thread of its database.
class LogSearch {
public:
    using Order = dao::EventIndex::Order;
    static constexpr qlonglong FromNewest = std::numeric_limits<qlonglong>::max();

    // Both are copied.
    LogSearch(const LogFilter& filter, const LogFacts& facts);
    LogSearch(const LogSearch&) = delete;
    LogSearch& operator=(const LogSearch&) = delete;

    struct Page {
        std::vector<dao::EventRecord> records; // in the order asked for
        qlonglong bound = 0;                   // where the next page begins
        bool isLast = false;                   // nothing is left in this direction
        qlonglong newest = 0;                  // the log's last record
    };
    // The next records before the bound, or after it. Ends as well, with what it has, when `goOn`, which is
    // asked after each read, says so. Raises dao::Error.
    Page Next(dao::Database& database, Order order, qlonglong bound, int most,
              const std::function<bool()>& goOn = {}) const;

private:
    struct Walk;

    bool ReadOlder(Walk& walk) const;
    bool ReadNewer(Walk& walk) const;
    void Take(Walk& walk, qlonglong first, qlonglong last) const;

    const LogFacts m_facts;
    const LogMatch m_match;
    const dao::EventIndex::Wanted m_wanted;
};
