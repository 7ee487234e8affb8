#include "radio/trace/WireTrace.h"

#include "core/base/Clock.h"
#include "radio/trace/TraceFile.h"

#include <QMutex>
#include <utility>

namespace {

constexpr std::chrono::milliseconds LastWait{500};

} // namespace

struct WireTrace::Queue {
    Queue(const QString& name, const Clock& theClock)
        : clock(theClock),
          file(name, {LargestFile, std::chrono::milliseconds(LongestFile).count()})
    {
    }

    // On the lane.
    void Write()
    {
        std::vector<map27::TraceEntry> entries;
        std::int64_t missing = 0;
        {
            const QMutexLocker lock(&mutex);
            entries = std::exchange(waiting, {});
            missing = std::exchange(lost, 0);
        }
        const map27::TimePoint at(clock.Ticks());
        if (missing > 0)
            entries.push_back({.kind = map27::TraceEntry::Kind::Lost, .at = at, .number = missing});
        if (!entries.empty())
            file.Write(entries, clock.Now(), at);
    }

    const Clock& clock;
    QMutex mutex;
    std::vector<map27::TraceEntry> waiting;
    std::int64_t lost = 0; // since the last of those that wait
    TraceFile file;        // the lane's
};

WireTrace::WireTrace(const QString& folder, const Clock& clock, Lane::Kind lane)
    : m_queue(std::make_shared<Queue>(folder + QLatin1Char('/') + QLatin1String(FileName), clock)),
      m_lane(lane)
{
}

WireTrace::~WireTrace()
{
    m_lane.Finish(LastWait);
}

void WireTrace::Add(map27::TraceEntry entry)
{
    {
        const QMutexLocker lock(&m_queue->mutex);
        if (m_queue->waiting.size() >= MostWaiting) {
            ++m_queue->lost;
            return;
        }
        m_queue->waiting.push_back(std::move(entry));
        if (m_queue->waiting.size() > 1)
            return; // it is on its way already
    }
    m_lane.Do([queue = m_queue]() -> Lane::Answer {
        queue->Write();
        return {};
    });
}
