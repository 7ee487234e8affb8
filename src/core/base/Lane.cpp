#include "core/base/Lane.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <sys/eventfd.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::chrono::milliseconds LastWait{2000};

} // namespace

// What both threads touch. The lane's thread may outlive the lane.
struct Lane::Shared {
    Shared() : wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {
        if (wake < 0)
            throw std::system_error(errno, std::system_category(), "eventfd");
    }
    Shared(const Shared&) = delete;
    Shared& operator=(const Shared&) = delete;
    ~Shared() { close(wake); }

    // The lane's thread, until the lane is gone.
    void Work()
    {
        std::unique_lock lock(mutex);
        while (NextJob(lock)) {
            const Job job = std::move(jobs.front());
            lock.unlock();
            Answer answer = job();
            QCoreApplication::sendPostedEvents(); // to what the jobs have made here
            lock.lock();
            jobs.pop_front();
            if (!isOver) {
                answers.push_back(std::move(answer));
                eventfd_write(wake, 1);
            }
            changed.notify_all();
        }
        const std::deque<Job> leftOut = std::move(jobs); // with what they hold, which belongs to this thread
        hasEnded = true;
        changed.notify_all();
        lock.unlock();
    }

    bool NextJob(std::unique_lock<std::mutex>& lock)
    {
        changed.wait(lock, [this] { return isOver || !jobs.empty(); });
        return !isAbandoned && !jobs.empty();
    }

    // On the thread that made the lane.
    void Deliver()
    {
        eventfd_t times = 0;
        eventfd_read(wake, &times);
        for (;;) {
            Answer next;
            {
                const std::lock_guard lock(mutex);
                if (answers.empty())
                    return;
                next = std::move(answers.front());
                answers.pop_front();
            }
            if (next)
                next();
        }
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Job> jobs; // the first is being done
    std::deque<Answer> answers;
    bool isOver = false;      // the lane is gone
    bool isAbandoned = false; // and nobody waits for its jobs any more
    bool hasEnded = false;
    const int wake; // there are answers
};

Lane::Lane(Kind kind)
{
    if (kind == Kind::Callers)
        return;
    m_shared = std::make_shared<Shared>();
    m_notifier = std::make_unique<QSocketNotifier>(m_shared->wake, QSocketNotifier::Read);
    QObject::connect(
        m_notifier.get(), &QSocketNotifier::activated, [shared = m_shared] { shared->Deliver(); });
    std::thread([shared = m_shared] { shared->Work(); }).detach();
}

Lane::~Lane()
{
    if (!m_shared)
        return;
    m_notifier->setEnabled(false);
    m_notifier.release()->deleteLater(); // it may be its own signal that ends the lane
    std::unique_lock lock(m_shared->mutex);
    m_shared->isOver = true;
    m_shared->answers.clear();
    m_shared->changed.notify_all();
    m_shared->isAbandoned =
        !m_shared->changed.wait_for(lock, LastWait, [this] { return m_shared->hasEnded; });
}

void Lane::Do(Job job)
{
    if (!m_shared) {
        if (const Answer answer = job())
            answer();
        return;
    }
    const std::lock_guard lock(m_shared->mutex);
    m_shared->jobs.push_back(std::move(job));
    m_shared->changed.notify_all();
}

bool Lane::Finish(std::chrono::milliseconds limit)
{
    if (!m_shared)
        return true;
    const std::shared_ptr<Shared> shared = m_shared; // an answer may take the lane down
    {
        std::unique_lock lock(shared->mutex);
        if (!shared->changed.wait_for(lock, limit, [&] { return shared->jobs.empty(); }))
            return false;
    }
    shared->Deliver();
    return true;
}
