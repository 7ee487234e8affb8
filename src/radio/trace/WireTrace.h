#pragma once

#include "core/base/Lane.h"
#include "map27/trace/TraceEntry.h"

#include <QString>
#include <memory>

struct Clock;

// What went over the line to the radio during the last hour, for whoever has to find out why a radio does
// what it does. It is kept in two files of one folder, for their owner alone, the older one with ".1" in its
// name: after an hour, or 32 MiB, the newer one takes its place. What was sent stands in them as it was.
// A second console of the same user has files of its own, "-2". Add may be called from any thread and never
// waits for the disk: what a disk that hangs cannot take is counted and left out, and a folder that cannot be
// written is said once in the program's log.
class WireTrace {
public:
    // The clock must outlive it.
    WireTrace(const QString& folder, const Clock& clock, Lane::Kind lane);
    ~WireTrace(); // writes what waits, for a moment
    WireTrace(const WireTrace&) = delete;
    WireTrace& operator=(const WireTrace&) = delete;

    void Add(map27::TraceEntry entry);

    // Writes what waits. False when that takes longer.
    bool Finish(std::chrono::milliseconds limit) { return m_lane.Finish(limit); }

    static constexpr auto FileName = "line-trace"; // with ".jsonl" or ".1.jsonl"
    static constexpr qint64 LargestFile = qint64{32} * 1024 * 1024;
    static constexpr std::chrono::hours LongestFile{1};
    // Entries that may wait for the disk.
    static constexpr std::size_t MostWaiting = 4096;

private:
    struct Queue;

    std::shared_ptr<Queue> m_queue; // the lane's, too, which may outlive this
    Lane m_lane;
};
