#include "core/DatabaseChanges.h"

void DatabaseChanges::Open(bool tells)
{
    m_tells = tells;
    SetAway(false);
    Q_EMIT Opened();
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
    if (!m_tells)
        Q_EMIT Changed(QString());
}
