#pragma once

#include <chrono>
#include <functional>
#include <memory>

class QThread;

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
    // Waits a moment for the job at hand; one that hangs for longer is left alone, and answers nobody.
    ~Lane();

    void Do(Job job);
    // Waits until all jobs are done and answers them. False when that takes longer.
    bool Finish(std::chrono::milliseconds limit);

private:
    struct Answers;

    std::shared_ptr<Answers> m_answers;
    QThread* m_thread = nullptr; // null: the caller's
};
