#pragma once

#include "radio/base/LinkStatus.h"
#include "radio/line/LineFigures.h"

#include <QList>
#include <QString>
#include <QStringList>

struct IStringSource;

// What is read from disks and devices: it may take long, or never come.
struct SlowFacts {
    struct Disk {
        qint64 free = -1; // octets; -1: unknown
        qint64 total = -1;
    };

    QString adapter;          // what is plugged in at the radio's port; empty: nothing is known of it
    qint64 databaseSize = -1; // octets, both files; -1: unknown
    QDateTime lastBackup;     // UTC; invalid: none
    Disk databaseDisk;
    Disk stateDisk;
};

// How the console is, in plain values.
struct HealthFacts {
    LinkStatus link;
    QDateTime linkSince{};
    LineFigures line;
    QString port;
    int bitsPerSecond = 0;

    QString target; // of the database, without password
    bool isOnServer = false;
    QString operatorName; // empty: nobody is logged on
    bool mayBackUp = false;
    QString backupFolder; // empty: none is chosen
    int waiting = 0;      // records
    QString waitingCause;

    bool hasSound = false;
    QStringList versions{}; // a name and its version each

    SlowFacts slow;
    QDateTime slowSince{}; // since when disks and devices have not answered; invalid: they have
};

// One line of the diagnostics; a heading has no value.
struct HealthLine {
    QString item;
    QString value;
    bool isHeading = false;

    bool operator==(const HealthLine&) const = default;
};

QList<HealthLine> HealthLines(const HealthFacts& facts, const IStringSource& strings);
// As plain text, a line each.
QString HealthReport(const QList<HealthLine>& lines);
