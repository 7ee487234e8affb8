#include "core/session/DatabaseChanges.h"

#include <utility>

void DatabaseChanges::Open(Look look)
{
    m_look = std::move(look);
    m_unread.clear();
    SetAway(false);
    Q_EMIT Opened();
}

void DatabaseChanges::Close()
{
    Q_EMIT Closing();
    m_look = {};
    m_unread.clear();
    SetAway(false);
    Q_EMIT Closed();
}

void DatabaseChanges::SetAway(bool away)
{
    if (m_away == away)
        return;
    m_away = away;
    Q_EMIT AwayChanged(away);
}

void DatabaseChanges::MayHaveChanged()
{
    if (m_look)
        for (const QString& table : m_look())
            KeepUnread(table);
    for (const QString& table : std::exchange(m_unread, {}))
        Q_EMIT Changed(table);
}

void DatabaseChanges::KeepUnread(const QString& table)
{
    if (!m_unread.contains(table))
        m_unread.append(table);
}
