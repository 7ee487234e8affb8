#include "mainwindow/strip/MissedCalls.h"

#include <algorithm>

void MissedCalls::Add(const QString& party, const QString& callBack, const QDateTime& time)
{
    const auto known = std::find_if(m_parties.begin(), m_parties.end(),
                                    [&](const Party& earlier) { return earlier.name == party; });
    if (known == m_parties.end())
        m_parties.push_back({party, callBack, time});
    else
        ++known->times;
}

void MissedCalls::Dismiss(const QString& party)
{
    std::erase_if(
        m_parties, [&](const Party& known) { return known.name == party; });
}
