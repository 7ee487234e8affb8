#include "core/eventlog/LogHeads.h"

#include "core/base/ProgramLog.h"

#include <QDir>
#include <QFile>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int LineSize = 160; // padded, so that a new head covers the one before

// One file for each console, whose name ends in its number.
QString NameOf(const QString& databaseId, const QString& console)
{
    return QStringLiteral("log-%1-%2.head").arg(databaseId, console.section(u'-', -1));
}

QByteArray LineOf(const dao::LogHead& head)
{
    const QString line = QStringLiteral("%1 %2 %3 %4")
                             .arg(head.console, QString::number(head.number), head.proof,
                                  head.time.toUTC().toString(Qt::ISODate));
    return line.toUtf8().leftJustified(LineSize - 1, ' ') + '\n';
}

// The present one first; then those of before the numbers went down.
QList<dao::LogHead> ReadFile(const QString& name)
{
    QList<dao::LogHead> heads;
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return heads;
    while (!file.atEnd()) {
        const QStringList words = QString::fromUtf8(file.readLine(2 * LineSize)).simplified().split(u' ');
        const dao::LogHead head{words[0], words.value(1).toLongLong(), words.value(2),
                                QDateTime::fromString(words.value(3), Qt::ISODate)};
        if (words.size() == 4 && head.number > 0 && head.time.isValid())
            heads.append(head);
    }
    return heads;
}

} // namespace

LogHeads::LogHeads(QString folder, QString databaseId)
    : m_folder(std::move(folder)),
      m_databaseId(std::move(databaseId))
{
}

LogHeads::~LogHeads()
{
    for (const File& file : std::as_const(m_files))
        if (file.handle >= 0)
            close(file.handle);
}

LogHeads::File& LogHeads::Open(const QString& console, const dao::LogHead& next)
{
    File& file = m_files[console];
    if (file.handle >= 0)
        return file;
    const QString name = QDir(m_folder).filePath(NameOf(m_databaseId, console));
    file.handle = open(QFile::encodeName(name).constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
    const QList<dao::LogHead> heads = ReadFile(name);
    if (heads.isEmpty())
        return file;
    file.number = heads.first().number;
    // The same number once more, but not the same record.
    if (heads.first().console != console || (file.number == next.number && heads.first().proof != next.proof))
        file.number = next.number + 1;
    return file;
}

void LogHeads::Keep(const dao::LogHead& head)
{
    File& file = Open(head.console, head);
    const QByteArray line = LineOf(head);
    bool written = file.handle >= 0;
    if (written && head.number < file.number) {
        QByteArray old(LineSize, ' ');
        written = pread(file.handle, old.data(), LineSize, 0) == LineSize &&
                  pwrite(file.handle, old.constData(), LineSize, lseek(file.handle, 0, SEEK_END)) == LineSize;
        ProgramLog::Write(QStringLiteral("The log of %1 goes on at number %2; it had come to: %3")
                              .arg(head.console)
                              .arg(head.number)
                              .arg(QString::fromUtf8(old).trimmed()));
    }
    written = written && pwrite(file.handle, line.constData(), LineSize, 0) == LineSize;
    if (!written && !std::exchange(m_failed, true))
        ProgramLog::Write(QStringLiteral("How far the log has come is not kept in %1: %2")
                              .arg(m_folder, QString::fromLocal8Bit(strerror(errno))));
    file.number = head.number;
}

QList<LogHeads::Kept> LogHeads::Read(const QString& folder, const QString& databaseId)
{
    QList<Kept> kept;
    const QStringList names = QDir(folder).entryList({NameOf(databaseId, QStringLiteral("*"))}, QDir::Files);
    for (const QString& name : names) {
        bool isOld = false;
        for (const dao::LogHead& head : ReadFile(QDir(folder).filePath(name)))
            kept.append({head, std::exchange(isOld, true)});
    }
    return kept;
}
