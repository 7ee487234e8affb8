#include "core/base/Lane.h"

#include <QDeadlineTimer>
#include <QMutex>
#include <QObject>
#include <QThread>
#include <QWaitCondition>
#include <deque>
#include <utility>

namespace {

constexpr std::chrono::milliseconds LastWait{2000};

} // namespace

// What both threads touch. The lane's thread may outlive the lane.
struct Lane::Answers {
    void Deliver()
    {
        for (;;) {
            Answer next;
            {
                const QMutexLocker lock(&mutex);
                if (waiting.empty())
                    return;
                next = std::move(waiting.front());
                waiting.pop_front();
            }
            if (next)
                next();
        }
    }

    QMutex mutex;
    QWaitCondition done;
    int jobs = 0;                                                 // not done yet
    std::deque<Answer> waiting;                                   // to be called
    std::unique_ptr<QObject> taker = std::make_unique<QObject>(); // null once the lane is gone
    QObject* worker = nullptr;                                    // lives on the lane's thread
};

Lane::Lane(Kind kind) : m_answers(std::make_shared<Answers>())
{
    if (kind == Kind::Callers)
        return;
    m_thread = new QThread;
    m_answers->worker = new QObject;
    m_answers->worker->moveToThread(m_thread);
    QObject::connect(m_thread, &QThread::finished, m_answers->worker, &QObject::deleteLater);
    QObject::connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);
    m_thread->start();
}

Lane::~Lane()
{
    {
        const QMutexLocker lock(&m_answers->mutex);
        m_answers->taker.reset();
        m_answers->waiting.clear();
    }
    if (!m_thread)
        return;
    m_thread->quit();
    m_thread->wait(QDeadlineTimer(LastWait));
}

void Lane::Do(Job job)
{
    if (!m_thread) {
        if (const Answer answer = job())
            answer();
        return;
    }
    const QMutexLocker lock(&m_answers->mutex);
    ++m_answers->jobs;
    QMetaObject::invokeMethod(
        m_answers->worker,
        [answers = m_answers, job = std::move(job)] {
            Answer answer = job();
            const QMutexLocker locked(&answers->mutex);
            --answers->jobs;
            if (answers->taker) {
                answers->waiting.push_back(std::move(answer));
                QMetaObject::invokeMethod(
                    answers->taker.get(), [answers] { answers->Deliver(); }, Qt::QueuedConnection);
            }
            answers->done.wakeAll();
        },
        Qt::QueuedConnection);
}

bool Lane::Finish(std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    {
        const QMutexLocker lock(&m_answers->mutex);
        while (m_answers->jobs > 0)
            if (!m_answers->done.wait(&m_answers->mutex, deadline))
                return false;
    }
    // Held here, since an answer may take the lane down.
    const std::shared_ptr<Answers> answers = m_answers;
    answers->Deliver();
    return true;
}
