#pragma once

#include <QDateTime>
#include <mutex>

// What has gone over a line since it was opened last.
struct LineFigures {
    quint64 received = 0; // good frames
    quint64 sent = 0;
    quint64 repeated = 0;  // messages that were sent again
    quint64 damaged = 0;   // frames
    quint64 noise = 0;     // octets outside of frames
    QDateTime lastHeard{}; // a good frame; invalid: none yet
};

// Written by the line's thread, read by any.
class LineMeter {
public:
    void Set(const LineFigures& figures)
    {
        const std::lock_guard lock(m_mutex);
        m_figures = figures;
    }
    LineFigures Figures() const
    {
        const std::lock_guard lock(m_mutex);
        return m_figures;
    }

private:
    mutable std::mutex m_mutex;
    LineFigures m_figures;
};
