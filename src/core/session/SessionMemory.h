#pragma once

#include "core/session/Directory.h"

#include <QHash>
#include <QObject>
#include <QStringList>

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
// logged on. On the window's thread; nothing here raises.
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
    void ReadTables(const QString& table);
    void ReadOne(const QString& table);
    void ReadLater(const QString& table);
    void ReadDue();
    void Forget();

    IDbSession& m_session;
    DatabaseChanges& m_changes;
    Directory m_directory;
    std::vector<Regrouping> m_regroupings;
    QHash<QString, QString> m_settings;
    QStringList m_due; // tables that this console has changed and that are not read again yet
};
