#pragma once

#include <QString>
#include <optional>

// Who holds a serial port open: "name (process 123)" of another program, or empty when that cannot be known,
// as for a program of another user who did not leave a lock file.
QString HolderOfPort(const QString& device);

// A lock file of a serial port whose program is no longer running; the port stays locked until it is removed,
// which only its owner may do.
struct LeftPortLock {
    QString file;
    qint64 process;
};
std::optional<LeftPortLock> LeftLockOfPort(const QString& device);
