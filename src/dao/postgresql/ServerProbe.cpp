#include "dao/postgresql/ServerProbe.h"
#include "dao/base/Error.h"

namespace dao::postgresql {

void ServerProbe::Start(const Logon& logon, std::function<void()> reached)
{
    Stop();
    m_stop = false;
    m_thread = std::thread([this, logon, reached = std::move(reached)] { Run(logon, reached); });
}

void ServerProbe::Stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable())
        m_thread.join();
    m_reached = false;
}

void ServerProbe::Run(const Logon& logon, const std::function<void()>& reached)
{
    using namespace std::chrono_literals;
    while (!m_stop) {
        auto pause = 1s;
        try {
            Connect(logon, &m_stop);
            m_reached = true;
            reached();
            return;
        } catch (const Error& error) {
            if (error.kind != Kind::ServerAway)
                pause = 10s; // it is there and refuses; asking more often would fill its log
        }
        std::unique_lock lock(m_mutex);
        m_wake.wait_for(lock, pause, [this] { return m_stop.load(); });
    }
}

} // namespace dao::postgresql
