#include "dao/sqlite/OwnChanges.h"

namespace dao::sqlite {

namespace {

void Add(OwnChanges::Counts& sum, const OwnChanges::Counts& counts)
{
    for (auto table = counts.cbegin(); table != counts.cend(); ++table)
        sum[table.key()] += table.value();
}

} // namespace

int OwnChanges::Join()
{
    const QMutexLocker lock(&m_mutex);
    m_sessions.insert(++m_last, {});
    return m_last;
}

void OwnChanges::Leave(int session)
{
    const QMutexLocker lock(&m_mutex);
    Add(m_left, m_sessions.take(session).stored);
}

void OwnChanges::SetComing(int session, const Counts& counts)
{
    const QMutexLocker lock(&m_mutex);
    m_sessions[session].coming = counts;
}

void OwnChanges::SetStored(int session, const Counts& counts)
{
    const QMutexLocker lock(&m_mutex);
    m_sessions[session] = {counts, counts};
}

OwnChanges::Seen OwnChanges::OthersThan(int session) const
{
    const QMutexLocker lock(&m_mutex);
    Seen seen{m_left, {}};
    for (auto other = m_sessions.cbegin(); other != m_sessions.cend(); ++other) {
        if (other.key() == session)
            continue;
        Add(seen.stored, other->stored);
        for (auto table = other->coming.cbegin(); table != other->coming.cend(); ++table)
            if (other->stored.value(table.key()) != table.value())
                seen.unsure.insert(table.key());
    }
    return seen;
}

} // namespace dao::sqlite
