#include "core/eventlog/EventSpool.h"

#include "core/base/ProgramLog.h"
#include "core/eventlog/ConsoleName.h"
#include "core/texts/Errors.h"
#include "dao/base/FileAccess.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int MostConsoles = 20;

[[noreturn]] void Fail(const QString& file)
{
    throw Error(ErrorCode::General,
                QStringLiteral("%1: %2").arg(file, QString::fromLocal8Bit(strerror(errno))));
}

} // namespace

EventSpool::EventSpool(const QString& folder, const QString& databaseId) : m_folder(folder)
{
    dao::MakePrivateFolder(folder);
    for (int number = 1; number <= MostConsoles; ++number) {
        const QString file =
            QDir(folder).filePath(QStringLiteral("log-%1-%2.waiting").arg(databaseId).arg(number));
        if (!m_files.empty() && !QFile::exists(file))
            continue;
        auto lock = std::make_unique<FileLock>(file + ".lock");
        if (lock->TryLock() != FileLock::Result::Locked)
            continue;
        if (m_files.empty())
            m_console = ConsoleName(folder, number);
        Load(file);
        m_files.push_back({file, std::move(lock)});
    }
    if (m_files.empty())
        m_console = ConsoleName({}, 1);
}

EventSpool::~EventSpool() = default;

void EventSpool::Load(const QString& name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (line.isEmpty())
            continue;
        if (const auto record = ParseLine(line))
            m_records.append(*record);
        else // it was being written when the machine failed, and never accepted
            ProgramLog::Write(
                QStringLiteral("%1: %2 octets that are no record are left out").arg(name).arg(line.size()));
    }
}

void EventSpool::Append(const QList<LogRecord>& records)
{
    if (m_files.empty()) { // too many consoles, or the folder cannot be written to
        errno = ENOLCK;
        Fail(m_folder);
    }
    const QString& file = m_files.front().name;
    const bool isNew = !QFile::exists(file);
    const int handle =
        open(QFile::encodeName(file).constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (handle < 0)
        Fail(file);
    // A line that a failure cut short must not spoil this one: an empty line does no harm.
    QByteArray lines("\n");
    for (const LogRecord& record : records)
        lines += LineOf(record);
    const off_t end = lseek(handle, 0, SEEK_END);
    const bool written = write(handle, lines.constData(), static_cast<size_t>(lines.size())) == lines.size();
    if (!written || fsync(handle) != 0) {
        const int reason = errno;
        [[maybe_unused]] const int cut = ftruncate(handle, end);
        close(handle);
        errno = reason;
        Fail(file);
    }
    close(handle);
    if (isNew)
        dao::SyncFolder(QFileInfo(file).path());
    m_records.append(records);
}

void EventSpool::Clear()
{
    for (const LockedFile& file : m_files)
        if (QFile::exists(file.name) && !QFile::remove(file.name))
            Fail(file.name);
    m_records.clear();
    if (m_files.size() > 1)
        m_files.erase(m_files.begin() + 1, m_files.end()); // another console may use these again
}
