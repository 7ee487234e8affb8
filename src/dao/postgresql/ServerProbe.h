#pragma once

#include "dao/postgresql/Connector.h"
#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace dao::postgresql {

// Tries on a thread of its own, about every second, whether a server can be reached again, so that no window
// waits for it.
class ServerProbe {
public:
    ~ServerProbe() { Stop(); }

    // `reached` is called once, on the probe's thread.
    void Start(const Logon& logon, std::function<void()> reached);
    void Stop();
    bool HasReached() const { return m_reached; }

private:
    void Run(const Logon& logon, const std::function<void()>& reached);

    std::thread m_thread;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::atomic<bool> m_stop{false};
    std::atomic<bool> m_reached{false};
};

} // namespace dao::postgresql
