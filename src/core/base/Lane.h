#pragma once

#include <chrono>
#include <functional>
#include <memory>

class QSocketNotifier;

// Jobs that may take long, done one after the other beside the window, on a thread of their own. What a job
// returns, its answer, is called on the thread that made the lane, from its event loop, in the same order.
class Lane {
public:
    enum class Kind {
        OwnThread,
        Callers, // at once, the answer too: for programs that have nothing to keep running
    };
    using Answer = std::function<void()>;
    using Job = std::function<Answer()>; // must not raise

    explicit Lane(Kind kind);
    Lane(const Lane&) = delete;
    Lane& operator=(const Lane&) = delete;
    // Answers nobody any more. Waits a moment for the jobs; one that hangs for longer is left alone, and
    // those behind it are not done.
    ~Lane();

    void Do(Job job);
    // Waits until all jobs are done and answers them. False when that takes longer.
    bool Finish(std::chrono::milliseconds limit);

private:
    struct Shared;

    std::shared_ptr<Shared> m_shared; // null: the caller's
    std::unique_ptr<QSocketNotifier> m_notifier;
};
