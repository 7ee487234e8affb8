#pragma once

#include "core/settings/Settings.h"
#include "mainwindow/log/LogLineFormatter.h"

#include <functional>

namespace dao {
class Database;
}

class Map27Executive;
struct IDbSession;

struct LogPeriod {
    TimeUnit unit = TimeUnit::Minutes;
    qint64 count = 0;
};

// The events of a past period that concern a radio, oldest first. Stops after the given number of records. A
// record that cannot be read raises; those before it have been handed over.
void ReadEvents(dao::Database& database, const OwnRadio& own, const LogPeriod& period, int most,
                const std::function<void(const StoredEvent&)>& handOver);

// How many events a past period holds that concern a radio; counts no further than the given number.
int CountEvents(dao::Database& database, const OwnRadio& own, const LogPeriod& period, int atMost);

// As ReadEvents, but the newest ones of the period.
void ReadNewestEvents(dao::Database& database, const OwnRadio& own, const LogPeriod& period, int most,
                      const std::function<void(const StoredEvent&)>& handOver);

// Reads the events of a past period that concern this console's radio, oldest first.
class LogReader {
public:
    LogReader(IDbSession& session, const Map27Executive& executive);

    // This console's radio under its present names.
    OwnRadio Own() const;

    // As ReadEvents, ReadNewestEvents and CountEvents.
    void Read(const LogPeriod& period, int most,
              const std::function<void(const StoredEvent&)>& handOver) const;
    void ReadNewest(const LogPeriod& period, int most,
                    const std::function<void(const StoredEvent&)>& handOver) const;
    int Count(const LogPeriod& period, int atMost) const;

private:
    IDbSession& m_session;
    const Map27Executive& m_executive;
};
