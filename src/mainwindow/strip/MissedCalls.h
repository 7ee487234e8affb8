#pragma once

#include <QDateTime>
#include <QString>
#include <vector>

// The incoming calls that nobody answered, until somebody has dismissed them. They belong to the console, not
// to the operator: a logoff leaves them.
class MissedCalls {
public:
    struct Party {
        QString name;     // as shown
        QString callBack; // what reaches it; empty: nothing does
        QDateTime since;  // of its first call
        int times = 1;
    };

    void Add(const QString& party, const QString& callBack, const QDateTime& time);
    void Dismiss(const QString& party);
    // The party that has waited longest comes first.
    const std::vector<Party>& Parties() const { return m_parties; }

private:
    std::vector<Party> m_parties;
};
