#pragma once

#include "mainwindow/LogLineFormatter.h"

#include <functional>

class Map27Executive;
struct IDbSession;

// Reads the events of a past period that concern the own radio, oldest first.
class LogReader {
public:
    LogReader(IDbSession& session, const Map27Executive& executive);

    // The own radio under the names that it has now.
    OwnRadio Own() const;

    // unit: "n" minutes, "h" hours, "d" days. Stops after the given number of records. A record that
    // cannot be read raises; those before it have been handed over.
    void Read(const QString& unit, int period, int most,
              const std::function<void(const StoredEvent&)>& handOver) const;

private:
    IDbSession& m_session;
    const Map27Executive& m_executive;
};
