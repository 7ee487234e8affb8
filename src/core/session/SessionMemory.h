#pragma once

#include "core/session/Directory.h"

#include <QHash>
#include <QObject>
#include <QStringList>
#include <functional>
#include <vector>

class DatabaseChanges;
struct IDbSession;

// A radio that is in a group which is not its own; at each position a radio has one at most.
struct Regrouping {
    qint32 groupId;
    qint32 memberId;
    quint8 pos;
};

// What the session has read of the database, so that nothing that the radio brings has to ask for it: the
// directory, the regrouped radios and the site settings. Read at the logon and again whenever this console or
// another one has changed them; while they cannot be read, what was read last holds. Empty while nobody is
// logged on. On the window's thread; nothing here raises but
// ReadAgain.
class SessionMemory : public QObject {
    Q_OBJECT

public:
    // Both outlive it. It follows the changes before anybody who connects later.
    SessionMemory(IDbSession& session, DatabaseChanges& changes);

    const Directory& Addresses();
    // By group, position and callsign, once Addresses has the members.
    const std::vector<Regrouping>& Regroupings();
    // The fallback when there is no such setting.
    QString Setting(const QString& key, const QString& fallback);

    // A change to a table that this console has handed on to be stored: it holds at once, and again after
    // each reading, until it is stored or refused. `apply` uses what stands below.
    using Change = std::function<void(SessionMemory&)>;
    void Await(const QString& id, const QString& table, const Change& apply);
    // One that is not awaited is left alone.
    void Stored(const QString& id) { EndWait(id, false); }
    void Refused(const QString& id) { EndWait(id, true); }
    bool IsAwaiting() const { return !m_awaited.empty(); }
    // Reads the directory and the regrouped radios now. Raises Error and dao::Error; what was read before
    // holds then.
    void ReadAgain();

    // What this console has stored, or has handed on to be stored, put in without reading. False when no
    // individual has this callsign.
    bool PutOnDuty(const QString& callsign, bool onDuty);
    // The member leaves the group that it had at this position.
    void PutRegrouping(const Regrouping& regrouping);
    void DropMember(qint32 memberId, quint8 pos);
    void DropGroup(qint32 groupId, quint8 pos);

protected:
    void customEvent(QEvent* event) override;

private:
    struct Awaited {
        QString id;
        QString table;
        Change apply;
        bool readMeanwhile; // the table, with or without the change
    };

    void EndWait(const QString& id, bool refused);
    void ReadTables(const QString& table);
    void ReadAhead();
    void ReadOne(const QString& table);
    void ReadLater(const QString& table);
    void ReadDue();
    void Forget();

    IDbSession& m_session;
    DatabaseChanges& m_changes;
    Directory m_directory;
    std::vector<Regrouping> m_regroupings;
    QHash<QString, QString> m_settings;
    std::vector<Awaited> m_awaited; // oldest first
    QStringList m_due;              // tables that this console has changed and that are not read again yet
};
