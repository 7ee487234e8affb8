#include "core/base/ProgramLog.h"

#include "dao/base/FileAccess.h"

#include <QDateTime>
#include <QFile>
#include <QMutex>
#include <cstdio>

namespace {

constexpr qint64 LargestSize = qint64{2} * 1024 * 1024; // bytes
constexpr auto Name = "veltorkyn.log";
constexpr auto OlderSuffix = ".1";

struct LogFile {
    QMutex mutex; // Qt's own messages may come from its threads
    QFile file;
};

LogFile& TheLog()
{
    static LogFile log;
    return log;
}

bool OpenFile(LogFile& log)
{
    return log.file.open(QIODevice::WriteOnly | QIODevice::Append, dao::OwnerOnly);
}

void Rotate(LogFile& log)
{
    const QString current = log.file.fileName();
    log.file.close();
    QFile::remove(current + OlderSuffix);
    QFile::rename(current, current + OlderSuffix);
    OpenFile(log);
}

// One record is one line, whatever it quotes.
QByteArray Record(QString text)
{
    text.replace(u'\\', "\\\\").replace(u'\r', "\\r").replace(u'\n', "\\n");
    return (QDateTime::currentDateTime().toString(Qt::ISODateWithMs) + u' ' + text + u'\n').toUtf8();
}

} // namespace

void ProgramLog::Open(const QString& folder)
{
    LogFile& log = TheLog();
    const QMutexLocker lock(&log.mutex);
    log.file.close();
    dao::MakePrivateFolder(folder);
    log.file.setFileName(folder + u'/' + Name);
    OpenFile(log);
}

QString ProgramLog::FileName()
{
    LogFile& log = TheLog();
    const QMutexLocker lock(&log.mutex);
    return log.file.fileName();
}

void ProgramLog::Write(const QString& text)
{
    LogFile& log = TheLog();
    const QMutexLocker lock(&log.mutex);
    if (log.file.fileName().isEmpty())
        return;
    const QByteArray record = Record(text);
    if (log.file.isOpen() && log.file.size() + record.size() > LargestSize)
        Rotate(log);
    const bool written =
        (log.file.isOpen() || OpenFile(log)) && log.file.write(record) == record.size() && log.file.flush();
    if (!written)
        std::fwrite(record.constData(), 1, static_cast<std::size_t>(record.size()), stderr);
}
