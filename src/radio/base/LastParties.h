#pragma once

#include <QStringList>

// With whom something was exchanged since the logon, whichever side began it; newest first.
class LastParties {
public:
    static constexpr qsizetype Most = 50; // then the oldest is dropped

    // By what reaches the party; an empty one is ignored. One that is already there moves to the front.
    void Note(const QString& party);
    void Clear() { m_parties.clear(); }
    const QStringList& List() const { return m_parties; }

private:
    QStringList m_parties;
};
