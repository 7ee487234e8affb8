#include "core/session/DatabaseChanges.h"

#include "dao/base/Error.h"

#include <utility>

void DatabaseChanges::Open(Look look)
{
    m_look = std::move(look);
    m_unread.clear();
    m_untold.clear();
    m_toLook = false;
    SetAway(false);
    Q_EMIT Opened();
}

void DatabaseChanges::Close()
{
    Q_EMIT Closing();
    m_look = {};
    m_unread.clear();
    m_untold.clear();
    m_toLook = false;
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

void DatabaseChanges::SetBusy(bool busy)
{
    m_busy = busy;
    if (!busy)
        QMetaObject::invokeMethod(this, &DatabaseChanges::BeFree, Qt::QueuedConnection);
}

// Back in an event loop, where the operation that waited is over or has opened a window of its own.
void DatabaseChanges::BeFree()
{
    if (m_busy)
        return;
    Q_EMIT Free();
    for (const QString& table : std::exchange(m_untold, {}))
        Tell(table);
    if (std::exchange(m_toLook, false)) {
        try {
            MayHaveChanged();
        } catch (const dao::Error&) {
            // There will be another reason.
        }
    }
}

void DatabaseChanges::Tell(const QString& table)
{
    if (!m_busy)
        Report(table);
    else if (!m_untold.contains(table))
        m_untold.append(table);
}

void DatabaseChanges::MayHaveChanged()
{
    if (m_busy) {
        m_toLook = true;
        return;
    }
    if (m_look)
        for (const QString& table : m_look())
            KeepUnread(table);
    for (const QString& table : std::exchange(m_unread, {}))
        Report(table);
}

void DatabaseChanges::Report(const QString& table)
{
    Q_EMIT Telling(true);
    Q_EMIT Changed(table);
    Q_EMIT Telling(false);
}

void DatabaseChanges::KeepUnread(const QString& table)
{
    if (!m_unread.contains(table))
        m_unread.append(table);
}
