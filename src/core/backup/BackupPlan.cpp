#include "core/backup/BackupPlan.h"

#include <algorithm>

bool BackupPlan::IsDue(const QList<QDateTime>& made, const QDateTime& now) const
{
    return std::none_of(
        made.begin(), made.end(),
        [&](const QDateTime& time) { return time <= now && time > now.addDays(-1); });
}

bool BackupPlan::IsKept(const QDateTime& one, const QList<QDateTime>& made, const QDateTime& now) const
{
    const auto newer = std::count_if(made.begin(), made.end(),
                                     [&](const QDateTime& time) { return time > one && time <= now; });
    return newer < newest || one >= now.addDays(-days);
}
