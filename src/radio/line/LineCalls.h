#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

// What the line is to do: the one way from the windows' thread to that of the line. In order, each once. Any
// thread may call, but only the line's own RunAll.
class LineCalls {
public:
    using Act = std::function<void()>; // must not raise
    // What becomes of an act whose turn does not come in time.
    enum class Late { Dropped, Kept };

    // `wake` is called after each act that is added, and must not wait.
    explicit LineCalls(std::function<void()> wake) : m_wake(std::move(wake)) {}

    void Leave(Act act);
    // Leaves it and waits for its end. False when its turn has not come within the limit: it is not done
    // then, or later.
    bool Await(Act act, std::chrono::milliseconds limit, Late late);

    void RunAll();

private:
    struct Call {
        Act act;
        bool begun = false;
        bool done = false;
    };

    std::shared_ptr<Call> Add(Act act);

    const std::function<void()> m_wake;
    std::mutex m_mutex;
    std::condition_variable m_progress;
    std::deque<std::shared_ptr<Call>> m_calls;
};
