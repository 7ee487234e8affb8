#pragma once

#include <QHash>
#include <QMutex>
#include <QSet>
#include <QString>

namespace dao::sqlite {

// How often the sessions of one logon have changed each table, so that none of them takes what another one
// does for a foreign change. On any thread; waits for none.
class OwnChanges {
public:
    using Counts = QHash<QString, qlonglong>; // by table

    // A session joins with nothing changed, and gets its name here.
    int Join();
    // What it has stored still counts.
    void Leave(int session);
    // What its counts will be once a transaction has been committed that may be in the files from now on, and
    // what they are when that is over.
    void SetComing(int session, const Counts& counts);
    void SetStored(int session, const Counts& counts);

    // What the others have changed; `unsure` are tables of which a change may or may not be in the files.
    struct Seen {
        Counts stored;
        QSet<QString> unsure;
    };
    Seen OthersThan(int session) const;

private:
    struct Session {
        Counts stored;
        Counts coming;
    };

    mutable QMutex m_mutex;
    int m_last = 0;
    QHash<int, Session> m_sessions;
    Counts m_left; // of sessions that have ended
};

} // namespace dao::sqlite
