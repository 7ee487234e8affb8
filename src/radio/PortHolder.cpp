#include "radio/PortHolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

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
    for (const QString& file : names) {
        if (QFile::symLinkTarget(files.filePath(file)) == device)
            return true;
    }
    return false;
}

// By the old custom a program that uses a port leaves its process number in /var/lock/LCK..name.
QString FromLockFile(const QString& device)
{
    const QString name = QFileInfo(device).fileName();
    for (const QString& folder : {QStringLiteral("/var/lock"), QStringLiteral("/run/lock")}) {
        QFile file(folder + QStringLiteral("/LCK..") + name);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        bool isNumber = false;
        const qint64 process = file.readLine().trimmed().toLongLong(&isNumber);
        if (isNumber)
            return Described(process);
    }
    return {};
}

} // namespace

QString HolderOfPort(const QString& device)
{
    const QString fromLock = FromLockFile(device);
    if (!fromLock.isEmpty())
        return fromLock;
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
