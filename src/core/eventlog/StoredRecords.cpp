#include "core/eventlog/StoredRecords.h"

#include "core/base/ProgramLog.h"
#include "dao/base/FileAccess.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int MostConsoles = 20;
constexpr qsizetype MostMarks = 50;
constexpr QLatin1String ServerKey("server");
constexpr QLatin1String OlderKey("older");
constexpr QLatin1String TimeKey("time");

QByteArray ServerLine(const QString& server)
{
    return QJsonDocument(QJsonObject{{ServerKey, server}}).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray OlderLine(const StoredRecords::Mark& mark)
{
    const QJsonObject object{{OlderKey, mark.recordId},
                             {TimeKey, mark.time.toUTC().toString(Qt::ISODateWithMs)}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

StoredRecords::Mark MarkOf(const LogRecord& record)
{
    return {record.id, record.time};
}

// What the lines of a file say.
struct Lines {
    QList<LogRecord> records;
    QList<StoredRecords::Mark> older;
    QString server;
};

Lines ReadLines(const QString& name)
{
    Lines lines;
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return lines;
    int unreadable = 0;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (const auto record = ParseLine(line)) {
            lines.records.append(*record);
            continue;
        }
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        const QDateTime time = QDateTime::fromString(object[TimeKey].toString(), Qt::ISODateWithMs);
        if (object.contains(ServerKey))
            lines.server = object[ServerKey].toString();
        else if (object.contains(OlderKey) && time.isValid())
            lines.older.append({object[OlderKey].toString(), time});
        else if (!line.isEmpty())
            ++unreadable;
    }
    if (unreadable > 0) // the machine failed before they had reached the disk
        ProgramLog::Write(QStringLiteral("%1: %2 lines are not readable").arg(name).arg(unreadable));
    return lines;
}

QString Reason()
{
    return QString::fromLocal8Bit(strerror(errno));
}

} // namespace

StoredRecords::StoredRecords(const QString& folder, const QString& databaseId, int kept) : m_kept(kept)
{
    dao::MakePrivateFolder(folder);
    for (int number = 1; number <= MostConsoles && m_file.isEmpty(); ++number) {
        const QString file =
            QDir(folder).filePath(QStringLiteral("log-%1-%2.stored").arg(databaseId).arg(number));
        m_lock = std::make_unique<FileLock>(file + ".lock");
        if (m_lock->TryLock() == FileLock::Result::Locked)
            m_file = file;
    }
    if (m_file.isEmpty()) {
        ProgramLog::Write(QStringLiteral("Stored log records are not kept: no file in %1").arg(folder));
        return;
    }
    Load();
    OpenFile();
}

StoredRecords::~StoredRecords()
{
    if (m_handle >= 0)
        close(m_handle);
}

void StoredRecords::Load()
{
    const Lines older = ReadLines(OlderFile());
    const Lines lines = ReadLines(m_file);
    m_server = lines.server.isEmpty() ? older.server : lines.server;
    m_older = lines.server.isEmpty() ? older.older : lines.older; // a new file begins with those of the old
    m_count = static_cast<int>(lines.records.size());
    if (!lines.records.isEmpty())
        m_last = MarkOf(lines.records.last());
    if (!older.records.isEmpty())
        m_lastOlder = MarkOf(older.records.last());
}

void StoredRecords::OpenFile()
{
    m_handle = open(QFile::encodeName(m_file).constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (m_handle < 0) {
        Fail();
        return;
    }
    // A line that was cut short must not spoil the next one: an empty line does no harm.
    Write(lseek(m_handle, 0, SEEK_END) > 0 ? QByteArray("\n") : Header());
}

QByteArray StoredRecords::Header() const
{
    QByteArray lines;
    if (!m_server.isEmpty())
        lines += ServerLine(m_server);
    for (const Mark& mark : m_older)
        lines += OlderLine(mark);
    return lines;
}

// All or nothing.
bool StoredRecords::Write(const QByteArray& lines)
{
    if (m_handle < 0 || lines.isEmpty())
        return false;
    const off_t end = lseek(m_handle, 0, SEEK_END);
    if (write(m_handle, lines.constData(), static_cast<size_t>(lines.size())) != lines.size()) {
        Fail();
        [[maybe_unused]] const int cut = ftruncate(m_handle, end);
        return false;
    }
    m_failed = false;
    return true;
}

// Tells it once.
void StoredRecords::Fail()
{
    if (!m_failed)
        ProgramLog::Write(QStringLiteral("Stored log records are not kept: %1: %2").arg(m_file, Reason()));
    m_failed = true;
}

void StoredRecords::Add(const QList<LogRecord>& records)
{
    if (m_file.isEmpty() || records.isEmpty())
        return;
    if (m_handle < 0)
        OpenFile();
    if (m_count >= m_kept)
        BeginFile();
    QByteArray lines;
    for (const LogRecord& record : records)
        lines += LineOf(record);
    if (!Write(lines))
        return;
    m_count += static_cast<int>(records.size());
    m_last = MarkOf(records.last());
}

// The file becomes the older one; of that one a mark remains.
void StoredRecords::BeginFile()
{
    QList<Mark> older = m_older;
    if (!m_lastOlder.recordId.isEmpty())
        older.append(m_lastOlder);
    if (older.size() > MostMarks)
        older.removeFirst();
    if (rename(QFile::encodeName(m_file).constData(), QFile::encodeName(OlderFile()).constData()) != 0)
        return; // it grows, and the next record tries again
    if (m_handle >= 0)
        close(m_handle);
    m_older = older;
    m_lastOlder = m_last;
    m_count = 0;
    OpenFile();
}

void StoredRecords::SetServer(const QString& server)
{
    m_server = server;
    Write(ServerLine(server));
}

void StoredRecords::AddOlder(const Mark& mark)
{
    m_older.append(mark);
    Write(OlderLine(mark));
}

StoredRecords::Content StoredRecords::Read() const
{
    if (m_file.isEmpty())
        return {};
    return {ReadLines(OlderFile()).records + ReadLines(m_file).records, m_older};
}
