#pragma once

#include "logbook/query/LogFacts.h"

#include <QDateTime>
#include <QHash>
#include <QStringList>
#include <functional>
#include <vector>

// What the database tells of each individual of the directory: whether it is on duty and since when, when it
// was heard last and what its last status was, and which dynamic groups it has been put into by whom. A
// value.
class Whereabouts {
public:
    struct Group {
        QString callsign;
        QString movedBy{}; // empty: not known
        QDateTime movedAt{};
    };
    struct Radio {
        qint32 id = 0; // in the directory
        QString callsign;
        QString number;
        QString name;
        bool onDuty = false;
        QDateTime dutySince{}; // invalid: no status tells
        QDateTime heard{};     // invalid: not as far back as was looked
        QString status{};      // the last one, in words
        QDateTime statusAt{};
        std::vector<Group> groups{};
    };

    // `since`: how far back the log is looked at; by then everybody who matters has been heard. Gives up with
    // what it has when `goOn`, which is asked now and then, says so. Raises dao::Error.
    static Whereabouts Read(dao::Database& database, const LogFacts& facts, const QDateTime& since,
                            const std::function<bool()>& goOn = {});

    // By callsign.
    const std::vector<Radio>& Radios() const { return m_radios; }

private:
    struct Search;

    void ReadDirectory(dao::Database& database);
    void ReadGroups(dao::Database& database, const QHash<qint32, QString>& groups);
    void ReadLog(dao::Database& database, const LogFacts& facts, const QDateTime& since,
                 const std::function<bool()>& goOn);

    std::vector<Radio> m_radios;
};
