#include "radio/trace/TraceFile.h"

#include "core/base/ProgramLog.h"
#include "dao/base/FileAccess.h"

#include <QDateTime>
#include <QFileInfo>
#include <algorithm>

namespace {

constexpr int MostConsoles = 9; // of one user
constexpr auto Suffix = ".jsonl";
constexpr auto OlderSuffix = ".1.jsonl";

} // namespace

void TraceFile::Write(const std::vector<map27::TraceEntry>& entries, const QDateTime& now,
                      map27::TimePoint at)
{
    Append(entries, now, at);
    for (const map27::TraceEntry& entry : entries)
        m_head.Take(entry);
}

void TraceFile::Append(const std::vector<map27::TraceEntry>& entries, const QDateTime& now,
                       map27::TimePoint at)
{
    const bool isNew = !m_file.isOpen();
    if (isNew && !Open())
        return Fail(entries.size());
    const bool isFull = m_file.size() >= m_bounds.size || m_since.msecsTo(now) >= m_bounds.age;
    if (isFull && (!Rotate() || !Open()))
        return Fail(entries.size());
    QByteArray lines;
    const map27::TimePoint first = entries.front().at;
    if (isNew || isFull)
        lines += LineOf({.kind = map27::TraceEntry::Kind::Time,
                         .at = first,
                         .time = TimeText(now.addMSecs((first - at).count())).toStdString()});
    if (m_missing > 0)
        lines += LineOf({.kind = map27::TraceEntry::Kind::Lost, .at = first, .number = m_missing});
    if (isNew || isFull)
        for (const map27::TraceEntry& entry : m_head.Lines(first))
            lines += LineOf(entry);
    for (const map27::TraceEntry& entry : entries)
        lines += LineOf(entry);
    const qint64 end = m_file.size();
    if (m_file.write(lines) != lines.size()) {
        Fail(entries.size());
        QFile::resize(m_name + QLatin1String(Suffix), end); // all of them or none
        return;
    }
    if (m_since.isNull())
        m_since = now;
    m_missing = 0;
    m_failed = false;
}

QString TraceFile::TimeText(const QDateTime& time)
{
    return time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

bool TraceFile::Open()
{
    if (!m_place && !TakePlace())
        return false;
    m_file.setFileName(m_name + QLatin1String(Suffix));
    const QFileInfo before(m_file.fileName());
    m_since = before.exists() && before.size() > 0 ? before.birthTime() : QDateTime();
    if (!m_file.open(QIODevice::ReadWrite | QIODevice::Append | QIODevice::Unbuffered, dao::OwnerOnly))
        return false;
    m_file.setPermissions(dao::OwnerOnly);
    EndAtALine();
    return true;
}

// The computer may have stopped in the middle of one.
void TraceFile::EndAtALine()
{
    constexpr qint64 longest = 65536;
    const qint64 begin = std::max<qint64>(0, m_file.size() - longest);
    m_file.seek(begin);
    const QByteArray end = m_file.read(longest);
    if (!end.isEmpty() && !end.endsWith('\n'))
        m_file.resize(begin + end.lastIndexOf('\n') + 1);
}

bool TraceFile::TakePlace()
{
    dao::MakePrivateFolder(QFileInfo(m_name).path());
    for (int number = 1; number <= MostConsoles; ++number) {
        const QString name = number == 1 ? m_name : m_name + QStringLiteral("-%1").arg(number);
        auto place = std::make_unique<FileLock>(name + QStringLiteral(".lock"));
        const FileLock::Result result = place->TryLock();
        if (result == FileLock::Result::Failed)
            return false;
        if (result == FileLock::Result::Locked) {
            m_place = std::move(place);
            m_name = name;
            return true;
        }
    }
    return false;
}

bool TraceFile::Rotate()
{
    m_file.close();
    const QString older = m_name + QLatin1String(OlderSuffix);
    QFile::remove(older);
    return m_file.rename(older);
}

QByteArray TraceFile::LineOf(const map27::TraceEntry& entry)
{
    return QByteArray::fromStdString(map27::WriteTraceEntry(entry)) + '\n';
}

void TraceFile::Fail(std::size_t entries)
{
    m_missing += static_cast<qint64>(entries);
    if (!m_failed)
        ProgramLog::Write(QStringLiteral("The trace of the radio's line is not kept: %1: %2")
                              .arg(m_name + QLatin1String(Suffix), m_file.errorString()));
    m_failed = true;
    m_file.close();
}
