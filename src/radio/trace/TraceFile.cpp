#include "radio/trace/TraceFile.h"

#include "core/base/ProgramLog.h"
#include "dao/base/FileAccess.h"

#include <QDateTime>
#include <QFileInfo>

namespace {

constexpr int MostConsoles = 9; // of one user
constexpr auto Suffix = ".jsonl";
constexpr auto OlderSuffix = ".1.jsonl";

} // namespace

void TraceFile::Write(const std::vector<map27::TraceEntry>& entries, const QDateTime& now,
                      map27::TimePoint at)
{
    const bool isNew = !m_file.isOpen();
    if (isNew && !Open())
        return Fail();
    const bool isFull = m_file.size() >= m_bounds.size || m_since.msecsTo(now) >= m_bounds.age;
    if (isFull) {
        Rotate();
        if (!Open())
            return Fail();
    }
    bool written = true;
    const map27::TimePoint first = entries.front().at;
    if (isNew || isFull)
        written = WriteLine({.kind = map27::TraceEntry::Kind::Time,
                             .at = first,
                             .time = TimeText(now.addMSecs((first - at).count())).toStdString()});
    if (m_since.isNull())
        m_since = now;
    for (const map27::TraceEntry& entry : entries)
        written = written && WriteLine(entry);
    if (!written || !m_file.flush())
        return Fail();
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
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append, dao::OwnerOnly))
        return false;
    m_file.setPermissions(dao::OwnerOnly);
    return true;
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

void TraceFile::Rotate()
{
    m_file.close();
    const QString older = m_name + QLatin1String(OlderSuffix);
    QFile::remove(older);
    QFile::rename(m_file.fileName(), older);
}

bool TraceFile::WriteLine(const map27::TraceEntry& entry)
{
    const QByteArray line = QByteArray::fromStdString(map27::WriteTraceEntry(entry)) + '\n';
    return m_file.write(line) == line.size();
}

void TraceFile::Fail()
{
    if (!m_failed)
        ProgramLog::Write(QStringLiteral("The trace of the radio's line is not kept: %1: %2")
                              .arg(m_name + QLatin1String(Suffix), m_file.errorString()));
    m_failed = true;
    m_file.close();
}
