#pragma once

#include "logbook/query/LogFacts.h"
#include "logbook/query/ShiftWaits.h"

#include <array>
#include <functional>
#include <vector>

// What came in a time, and who waited for an operator and for how long, as the database tells it. Says the
// same whenever it is asked. A value.
class ShiftReport {
public:
    using Kind = dao::AttentionRecord::Kind;
    static constexpr std::array Kinds{Kind::Emergency, Kind::MissedCall, Kind::CallBack, Kind::Failed};

    // Log records of a kind by MessageWay: way not known, in, out.
    using Ways = std::array<qlonglong, 3>;
    struct Answers {
        int waits = 0;
        int answered = 0;
        qint64 median = -1; // seconds until the answer; -1 without any
        qint64 longest = -1;
    };

    // `until` is exclusive. Gives up with what it has when `goOn`, which is asked now and then, says so.
    // Raises dao::Error.
    static ShiftReport Read(dao::Database& database, const LogFacts& facts, const QDateTime& since,
                            const QDateTime& until, const std::function<bool()>& goOn = {});

    QDateTime Since() const { return m_since; }
    QDateTime Until() const { return m_until; }
    // By EventType.
    Ways RecordsOf(int kind) const { return m_records.at(static_cast<std::size_t>(kind)); }
    qlonglong EmergencyCalls() const { return m_emergencyCalls; }
    // What waited in this time: emergencies first, then by time.
    const std::vector<ShiftWait>& Waits() const { return m_waits; }
    int OpenBefore() const { return m_openBefore; } // entries
    int OpenAfter() const { return m_openAfter; }
    // Of those who were heard in this time.
    Answers AnswersOf(Kind kind) const;

private:
    void CountRecords(dao::Database& database, const LogFacts& facts, const std::function<bool()>& goOn);
    void ReadWaits(dao::Database& database);
    void Add(const std::vector<dao::AttentionActRecord>& acts, bool isOpen);

    QDateTime m_since;
    QDateTime m_until;
    std::array<Ways, 4> m_records{};
    qlonglong m_emergencyCalls = 0;
    std::vector<ShiftWait> m_waits;
    int m_openBefore = 0;
    int m_openAfter = 0;
};
