#pragma once

#include "map27/trace/TraceEntry.h"

#include <QFile>

#include <functional>
#include <string>

namespace sim {

// Writes a trace file, for its owner alone: it holds every text that is sent. What an earlier run wrote
// stays.
class TraceWriter {
public:
    // An empty name: none is written. `log` is told once when it cannot be continued. Throws
    // std::runtime_error.
    TraceWriter(const QString& file, std::function<void(const std::string& line)> log);

    void Write(const map27::TraceEntry& entry);

private:
    QFile m_file;
    std::function<void(const std::string& line)> m_log;
};

} // namespace sim
