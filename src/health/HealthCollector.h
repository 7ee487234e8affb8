#pragma once

#include "core/base/Lane.h"
#include "dao/base/Location.h"
#include "health/HealthFacts.h"

#include <QObject>

class EventLog;
class Map27Executive;
class Settings;
class Sounds;
struct Clock;
struct IDbLogon;

// What the diagnostics say, collected where it is known. Disks and devices are asked beside the window, one
// question at a time: those that hang hold nothing, and only what they would have said gets old.
class HealthCollector : public QObject {
    Q_OBJECT

public:
    // All must outlive it.
    struct Sources {
        const Settings& settings;
        IDbLogon& logon;
        Map27Executive& executive;
        EventLog& eventLog;
        Sounds& sounds;
        const Clock& clock;
        QString stateFolder;
        Lane::Kind lane = Lane::Kind::OwnThread;
    };

    explicit HealthCollector(const Sources& sources);

    // Neither raises nor waits.
    HealthFacts Facts() const;
    // Asks disks and devices again, unless they have not answered yet.
    void AskSlow();

private:
    struct Question {
        QString port;
        dao::Location database;
        QString backupFolder;
        QString stateFolder;
    };

    static SlowFacts Answer(const Question& question);
    dao::Location Where() const;
    QString BackupFolder() const;

    Sources m_sources;
    QDateTime m_linkSince;
    LinkStatus::State m_state = LinkStatus::State::Closed;
    SlowFacts m_slow;
    QDateTime m_asked; // invalid: nothing is being asked
    Lane m_lane;       // last: its answers use the rest
};
