#pragma once

#include <QString>
#include <optional>

// Who holds a serial port open: another program as "name (process 123)", or empty when that cannot be
// determined, as for another user's program that has left no lock file.
QString HolderOfPort(const QString& device);

// A lock file of a serial port whose program is no longer running; the port stays locked until it is removed,
// which only its owner may do.
struct LeftPortLock {
    QString file;
    qint64 process;
};
std::optional<LeftPortLock> LeftLockOfPort(const QString& device);
