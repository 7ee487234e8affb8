#include "core/base/ProgramLog.h"

#include "core/base/FileLock.h"
#include "dao/base/FileAccess.h"
#include "dao/base/Location.h"

#include <QDateTime>
#include <QFile>
#include <QMutex>
#include <cstdio>
#include <memory>

namespace {

constexpr int MostConsoles = 9; // of one user
constexpr auto Name = "veltorkyn";
constexpr auto Suffix = ".log";

struct LogFile {
    QMutex mutex; // Qt's own messages may come from its threads
    std::unique_ptr<FileLock> place;
    QFile file;
};

LogFile& TheLog()
{
    static LogFile log;
    return log;
}

bool OpenFile(LogFile& log)
{
    return log.file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered, dao::OwnerOnly);
}

// Where no lock can be made, nothing can be written either.
void TakePlace(LogFile& log, const QString& folder)
{
    log.place.reset();
    for (int number = 1; number <= MostConsoles; ++number) {
        const QString name = folder + u'/' + QLatin1String(Name) +
                             (number == 1 ? QString() : QStringLiteral("-%1").arg(number));
        auto place = std::make_unique<FileLock>(name + Suffix + ".lock");
        log.file.setFileName(name + Suffix);
        const FileLock::Result result = place->TryLock();
        if (result == FileLock::Result::HeldByAnother)
            continue;
        if (result == FileLock::Result::Locked)
            log.place = std::move(place);
        return;
    }
}

QString Older(const QString& current, int age)
{
    return current + u'.' + QString::number(age);
}

void Rotate(LogFile& log)
{
    const QString current = log.file.fileName();
    log.file.close();
    QFile::remove(Older(current, ProgramLog::OlderFiles));
    for (int age = ProgramLog::OlderFiles - 1; age > 0; --age)
        QFile::rename(Older(current, age), Older(current, age + 1));
    QFile::rename(current, Older(current, 1));
    OpenFile(log);
}

// One record is one line, whatever it quotes.
QByteArray Record(QString text)
{
    text = dao::WithoutPassword(text).replace(u'\\', "\\\\").replace(u'\r', "\\r").replace(u'\n', "\\n");
    return (QDateTime::currentDateTime().toString(Qt::ISODateWithMs) + u' ' + text + u'\n').toUtf8();
}

// All of it or none.
bool Append(QFile& file, const QByteArray& record)
{
    const qint64 end = file.size();
    if (file.write(record) == record.size())
        return true;
    file.resize(end);
    return false;
}

} // namespace

void ProgramLog::Open(const QString& folder)
{
    LogFile& log = TheLog();
    const QMutexLocker lock(&log.mutex);
    log.file.close();
    dao::MakePrivateFolder(folder);
    TakePlace(log, folder);
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
    if (log.place && !log.file.isOpen())
        OpenFile(log);
    if (log.file.isOpen() && log.file.size() + record.size() > LargestFile)
        Rotate(log);
    if (!log.file.isOpen() || !Append(log.file, record))
        std::fwrite(record.constData(), 1, static_cast<std::size_t>(record.size()), stderr);
}
