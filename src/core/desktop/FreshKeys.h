#pragma once

#include <QtGlobal>
#include <chrono>
#include <functional>
#include <set>

// Tells the keys that somebody pressed for a window from those that were on their way before it could be
// seen. A key counts when it goes down after the window was seen with all keys up, and not within the quiet
// time after that or after a key that came too early: who goes on typing has not looked yet. Once a key has
// counted, the following ones do, too.
class FreshKeys {
public:
    using Time = std::chrono::milliseconds;
    using Keys = std::set<quint32>; // key codes of the keyboard
    enum class Verdict { Early, Fresh, Repeated };

    // `held` tells which keys are down; always empty where nobody can tell, and what the window hears must
    // do.
    FreshKeys(Time quiet, std::function<Keys()> held);

    // The window is seen and has the keyboard from now on; called each time that this becomes so.
    void Begin(Time now);
    // It is not seen any more.
    void End();
    bool HasBegun() const { return m_begun; }

    // What a press at that time would be.
    Verdict Judge(quint32 code, Time now) const;
    // A key went down. Repeated are further presses of a key that counted and is still down.
    Verdict Press(quint32 code, Time now);
    // A key went up. True when its press counted.
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
