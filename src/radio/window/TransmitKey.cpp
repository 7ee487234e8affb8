#include "radio/window/TransmitKey.h"

TransmitKey::Switches TransmitKey::Press(quint32 code, quint64 stamp)
{
    if (!m_holder) {
        m_holder = code;
        return {true};
    }
    if (*m_holder != code || !m_until)
        return {};
    m_until.reset();
    return stamp == m_releasedAt ? Switches() : Switches{false, true};
}

TransmitKey::Switches TransmitKey::Release(quint32 code, quint64 stamp, Time now)
{
    if (m_holder != code)
        return {};
    if (!m_holdingBack || code == Mouse)
        return LetGo();
    m_releasedAt = stamp;
    m_until = now + HoldBack;
    return {};
}

TransmitKey::Switches TransmitKey::Expire(Time now)
{
    return m_until && now >= *m_until ? LetGo() : Switches();
}

TransmitKey::Switches TransmitKey::LetGo()
{
    const bool held = m_holder.has_value();
    m_holder.reset();
    m_until.reset();
    return held ? Switches{false} : Switches();
}
