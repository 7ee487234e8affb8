#pragma once

#include "dao/tables/AttentionTable.h"

#include <QDateTime>
#include <QString>
#include <vector>

// Once that somebody waited for an operator: from being heard until the entry was done, or until the same
// caller was heard again after somebody had taken it, which begins the next wait of the entry.
struct ShiftWait {
    enum class State { Open, Taken, Done, HeardAgain };

    dao::AttentionRecord::Kind kind = dao::AttentionRecord::Kind::Emergency;
    QString caller{};
    QString what{}; // as it was heard last
    QDateTime since{};
    int times = 1;
    QString takenBy{};
    QString takenOn{};
    QDateTime takenAt{}; // invalid: nobody has
    QString doneBy{};
    QString doneOn{};
    QDateTime endedAt{}; // done, or heard again; invalid: not yet
    State state = State::Open;

    // When somebody first did something about it; invalid: nobody has.
    QDateTime AnsweredAt() const;
    // Seconds; -1: nobody has.
    qint64 Waited() const;
};

// The waits of one entry as they were at a time. `acts`: all of the entry, in the order of their times, later
// ones too. `isOpen`: the entry is among those that are open now.
std::vector<ShiftWait> WaitsOf(const std::vector<dao::AttentionActRecord>& acts, const QDateTime& until,
                               bool isOpen);
