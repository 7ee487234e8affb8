#include "radio/line/PortHolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <csignal>

namespace {

QString Described(qint64 process)
{
    QFile name(QStringLiteral("/proc/%1/comm").arg(process));
    if (process == QCoreApplication::applicationPid() || !name.open(QIODevice::ReadOnly))
        return {};
    return QStringLiteral("%1 (process %2)")
        .arg(QString::fromLocal8Bit(name.readAll()).trimmed())
        .arg(process);
}

bool HasOpen(const QString& process, const QString& device)
{
    const QDir files(QStringLiteral("/proc/%1/fd").arg(process));
    const QStringList names = files.entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot);
    for (const QString& file : names)
        if (QFile::symLinkTarget(files.filePath(file)) == device)
            return true;
    return false;
}

struct PortLock {
    QString file;
    qint64 process;
    QString program; // its file name; empty when the lock does not say
};

// By old custom, a program that uses a port leaves its process number in /var/lock/LCK..name.
std::optional<PortLock> LockOf(const QString& device)
{
    const QLatin1String devices("/dev/");
    QString name = device.startsWith(devices) ? device.mid(devices.size()) : device;
    name.replace(QLatin1Char('/'), QLatin1Char('_'));
    for (const QString& folder : {QStringLiteral("/var/lock"), QStringLiteral("/run/lock")}) {
        QFile file(folder + QStringLiteral("/LCK..") + name);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        bool isNumber = false;
        const qint64 process = file.readLine().trimmed().toLongLong(&isNumber);
        if (isNumber && process > 0)
            return PortLock{file.fileName(), process, QString::fromLocal8Bit(file.readLine()).trimmed()};
    }
    return std::nullopt;
}

// By now its number may belong to another program.
bool IsRunning(const PortLock& lock)
{
    if (::kill(static_cast<pid_t>(lock.process), 0) != 0 && errno == ESRCH)
        return false;
    const QString running =
        QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(lock.process))).fileName();
    return running.isEmpty() || lock.program.isEmpty() || running == lock.program;
}

} // namespace

QString HolderOfPort(const QString& device)
{
    const std::optional<PortLock> lock = LockOf(device);
    if (lock && IsRunning(*lock)) {
        const QString described = Described(lock->process);
        if (!described.isEmpty())
            return described;
    }
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& process : entries) {
        bool isNumber = false;
        const qint64 number = process.toLongLong(&isNumber);
        if (isNumber && HasOpen(process, device)) {
            const QString described = Described(number);
            if (!described.isEmpty())
                return described;
        }
    }
    return {};
}

std::optional<LeftPortLock> LeftLockOfPort(const QString& device)
{
    const std::optional<PortLock> lock = LockOf(device);
    if (!lock || IsRunning(*lock))
        return std::nullopt;
    return LeftPortLock{lock->file, lock->process};
}
