#include "core/desktop/FreshKeys.h"

#include <algorithm>
#include <iterator>
#include <utility>

FreshKeys::FreshKeys(Time quiet, std::function<Keys()> held) : m_quiet(quiet), m_held(std::move(held)) {}

void FreshKeys::Begin(Time now)
{
    m_begun = true;
    m_counted = false;
    m_since = now;
    m_before = m_held();
    m_early.clear();
    m_fresh.clear();
}

void FreshKeys::End()
{
    m_begun = false;
    m_fresh.clear();
}

FreshKeys::Verdict FreshKeys::Judge(quint32 code, Time now) const
{
    if (m_fresh.contains(code))
        return Verdict::Repeated;
    if (!m_begun || m_early.contains(code) || !StillDown(m_before).empty())
        return Verdict::Early;
    return m_counted || now - m_since >= m_quiet ? Verdict::Fresh : Verdict::Early;
}

FreshKeys::Verdict FreshKeys::Press(quint32 code, Time now)
{
    const Verdict verdict = Judge(code, now);
    if (m_begun)
        m_before = StillDown(m_before);
    if (verdict == Verdict::Early) {
        m_since = now;
        m_early.insert(code);
    } else {
        m_counted = true;
        m_fresh.insert(code);
    }
    return verdict;
}

bool FreshKeys::Release(quint32 code)
{
    const bool counted = m_fresh.contains(code);
    // The desktop may report a repeating key as released although it is still held.
    if (!m_held().contains(code)) {
        m_before.erase(code);
        m_early.erase(code);
        m_fresh.erase(code);
    }
    return counted;
}

FreshKeys::Keys FreshKeys::StillDown(const Keys& keys) const
{
    Keys still;
    if (keys.empty())
        return still;
    const Keys held = m_held();
    std::set_intersection(keys.begin(), keys.end(), held.begin(), held.end(),
                          std::inserter(still, still.end()));
    return still;
}
