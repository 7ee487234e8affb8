#pragma once

#include "map27/link/LinkEvents.h"
#include "map27/terminal/TerminalEvents.h"
#include "radio/line/PortProblem.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <variant>

// How an open line stands. The control puts it into words.
struct LineCondition {
    enum class Kind {
        Connecting, // the port is open, the radio has not answered yet
        Ready,      // the link is up
        LinkLost,   // it was up; see reason
        PortFailed, // see problem
        Owes,       // the rest as in LinkWatch::Finding
        Silent,
        Foreign, // see detail
        Noise,
        Damaged,
        Echo,
    };

    Kind kind = Kind::Connecting;
    QString detail{};                                          // Foreign: what is heard instead of a radio
    map27::LinkFailure reason = map27::LinkFailure::PeerReset; // LinkLost only
    PortProblem problem{};                                     // PortFailed only
};

using LineReport = std::variant<map27::TerminalEvent, LineCondition>;

// What the line has to tell: the one way from its thread to that of the windows. In order, each once, and
// nothing of an opening that is over. Any thread may call.
class LineReports {
public:
    // `wake` is called, by whichever thread adds, after each report, and must not wait.
    explicit LineReports(std::function<void()> wake) : m_wake(std::move(wake)) {}

    // Ends the present opening: what waits is forgotten, and what is still added to it. The number of the
    // next one.
    quint64 Begin();
    bool IsCurrent(quint64 opening) const;

    void Add(quint64 opening, LineReport report);
    std::size_t Waiting() const;
    // The oldest, which stays.
    std::optional<LineReport> First() const;
    std::optional<LineReport> Take();
    // Until there is one, but no longer.
    void AwaitFirst(std::chrono::milliseconds limit) const;

private:
    const std::function<void()> m_wake;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_added;
    quint64 m_opening = 0;
    std::deque<LineReport> m_waiting;
};
