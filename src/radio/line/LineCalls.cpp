#include "radio/line/LineCalls.h"

#include <utility>

void LineCalls::Leave(Act act)
{
    Add(std::move(act));
}

bool LineCalls::Await(Act act, std::chrono::milliseconds limit, Late late)
{
    const std::shared_ptr<Call> call = Add(std::move(act));
    std::unique_lock lock(m_mutex);
    if (!m_progress.wait_for(lock, limit, [&] { return call->begun; })) {
        if (late == Late::Dropped)
            std::erase(m_calls, call);
        return false;
    }
    m_progress.wait(lock, [&] { return call->done; });
    return true;
}

void LineCalls::RunAll()
{
    std::unique_lock lock(m_mutex);
    while (!m_calls.empty()) {
        const std::shared_ptr<Call> call = std::move(m_calls.front());
        m_calls.pop_front();
        call->begun = true;
        m_progress.notify_all();
        lock.unlock();
        std::exchange(call->act, {})();
        lock.lock();
        call->done = true;
        m_progress.notify_all();
    }
}

std::shared_ptr<LineCalls::Call> LineCalls::Add(Act act)
{
    auto call = std::make_shared<Call>();
    call->act = std::move(act);
    {
        const std::lock_guard lock(m_mutex);
        m_calls.push_back(call);
    }
    m_wake();
    return call;
}
