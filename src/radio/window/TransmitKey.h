#pragma once

#include <QtGlobal>
#include <chrono>
#include <optional>
#include <vector>

// Turns whatever holds the transmit button down, a key or the mouse, into one "on" and one "off". Where the
// repetition of a held key may look like a release and a press at the same moment, the release is held back
// for a while and dropped when such a press follows.
class TransmitKey {
public:
    using Time = std::chrono::milliseconds;
    using Switches = std::vector<bool>; // on or off, in this order; often none

    static constexpr quint32 Mouse = 0; // as a code
    static constexpr Time HoldBack{40};

    // Whether a release may turn out to be part of a repetition.
    void SetHoldingBack(bool on) { m_holdingBack = on; }

    // `stamp` is the desktop's time of the event.
    Switches Press(quint32 code, quint64 stamp);
    Switches Release(quint32 code, quint64 stamp, Time now);
    // Time has passed; to be called at HeldBackUntil().
    Switches Expire(Time now);
    std::optional<Time> HeldBackUntil() const { return m_until; }
    // Whatever was holding the button has let go.
    Switches LetGo();

private:
    std::optional<quint32> m_holder;
    bool m_holdingBack = false;
    quint64 m_releasedAt = 0; // stamp of the release held back
    std::optional<Time> m_until;
};
