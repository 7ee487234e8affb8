#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

// What other consoles do to the database, and whether it can be reached; reported from the event loop. A
// database on files reports nothing by itself: whoever shows records calls MayHaveChanged when there is
// reason to look.
class DatabaseChanges : public QObject {
    Q_OBJECT

public:
    // Whether the database is on a server that is not answering.
    bool IsAway() const { return m_away; }

    // While its session waits for something, the database must not be asked: changes are told, and looked
    // for, afterwards.
    void SetBusy(bool busy);
    bool IsBusy() const { return m_busy; }

    // Where the database reports nothing by itself, `look` returns what others have changed since its last
    // call.
    using Look = std::function<QStringList()>;
    void Open(Look look);
    void Close();
    void SetAway(bool away);
    void Tell(const QString& table);
    // There is reason to look: reports what others have changed, and again what could not be read. Raises
    // dao::Error.
    void MayHaveChanged();
    // A change that was reported of this table could not be read; it is reported again at the next reason to
    // look.
    void KeepUnread(const QString& table);
    // This console has stored a change to the table.
    void TellOwn(const QString& table) { Q_EMIT ChangedHere(table); }

Q_SIGNALS:
    // An operator has logged on.
    void Opened();
    // The operator is logging off; the database is still open.
    void Closing();
    // He has logged off.
    void Closed();
    // Another console changed this table; an empty name: nobody knows which.
    void Changed(const QString& table);
    // This console did.
    void ChangedHere(const QString& table);
    void AwayChanged(bool away);
    // Changes are about to be told, which nobody has asked for, or have been.
    void Telling(bool begins);
    // The database can be asked again.
    void Free();

private:
    void BeFree();
    void Report(const QString& table);

    Look m_look;
    QStringList m_unread;
    QStringList m_untold;  // changes that came while it was busy
    bool m_toLook = false; // was asked meanwhile
    bool m_busy = false;
    bool m_away = false;
};
