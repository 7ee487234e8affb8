#pragma once

#include <QDateTime>
#include <QList>

// When a backup is due, and which of those there are need not be kept any longer. Times that lie in the
// future, because a clock was wrong, make none due later and are never given up.
struct BackupPlan {
    int newest = 14; // so many are kept however old they are,
    int days = 30;   // and all that are no older than this

    bool IsDue(const QList<QDateTime>& made, const QDateTime& now) const;
    bool IsKept(const QDateTime& one, const QList<QDateTime>& made, const QDateTime& now) const;
};
