#pragma once

#include <QtGlobal>
#include <chrono>
#include <functional>
#include <set>

// Tells the keys that were pressed for a window from those that were already on their way before it could be
// seen. A key counts when it goes down after the window has been seen with all keys up, and not within the
// quiet time that follows that or a key that came too early: somebody who keeps typing has not looked yet.
// Once one key has counted, so do those after it.
class FreshKeys {
public:
    using Time = std::chrono::milliseconds;
    using Keys = std::set<quint32>; // key codes of the keyboard
    enum class Verdict { Early, Fresh, Repeated };

    // `held` returns the keys that are down; always empty where that cannot be known, and the window's own
    // events have to do.
    FreshKeys(Time quiet, std::function<Keys()> held);

    // The window is visible and has the keyboard from now on; call it each time that becomes true.
    void Begin(Time now);
    // It can no longer be seen.
    void End();
    bool HasBegun() const { return m_begun; }

    // How a press at that time would be judged.
    Verdict Judge(quint32 code, Time now) const;
    // A key went down. Further presses of a key that counted and is still down are Repeated.
    Verdict Press(quint32 code, Time now);
    // A key went up. True if its press counted.
    bool Release(quint32 code);

private:
    Keys StillDown(const Keys& keys) const;

    Time m_quiet;
    std::function<Keys()> m_held;
    bool m_begun = false;
    bool m_counted = false; // a key has counted since the window was seen
    Time m_since{0};        // seen, or the last key that came too early
    Keys m_before;          // down when the window was seen, and not up since
    Keys m_early;           // down, and came too early
    Keys m_fresh;           // down, and counted
};
