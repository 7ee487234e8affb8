#include "health/SupportReport.h"

#include "core/texts/Errors.h"
#include "dao/base/FileAccess.h"
#include "dao/base/Location.h"
#include "map27/trace/TextMask.h"
#include "map27/trace/TraceHead.h"

#include <QDir>
#include <QSaveFile>
#include <optional>

namespace {

using map27::TraceEntry;

constexpr qint64 LongestLine = qint64{1} << 20;
constexpr qint64 Hour = 3600 * 1000; // ms

QFileInfoList FilesOf(const QString& folder, const QStringList& names)
{
    return QDir(folder).entryInfoList(names, QDir::Files, QDir::Time | QDir::Reversed);
}

class Report {
public:
    Report(QSaveFile& file, bool withTexts) : m_file(file), m_withTexts(withTexts) {}

    void Head(const QString& text) { Line("\n== " + text.toUtf8() + " =="); }
    void Line(const QByteArray& line)
    {
        m_file.write(line);
        m_file.write("\n");
    }
    void Entry(const TraceEntry& entry)
    {
        Line(QByteArray::fromStdString(
            map27::WriteTraceEntry(m_withTexts ? entry : map27::WithoutText(entry))));
    }

private:
    QSaveFile& m_file; // remembers what fails
    bool m_withTexts;
};

// The files of one console, the oldest first; what is older than `from` is only looked at.
class LastHour {
public:
    LastHour(Report& report, const QDateTime& from) : m_report(report), m_from(from.toMSecsSinceEpoch()) {}

    void Take(QFile& file)
    {
        while (!file.atEnd()) {
            const QByteArray line = file.readLine(LongestLine).trimmed();
            const auto read = map27::ReadTraceEntry(line.toStdString());
            if (const auto* entry = std::get_if<TraceEntry>(&read))
                Take(*entry);
            else if (!line.isEmpty())
                ++m_broken;
        }
    }
    void Sum()
    {
        if (m_broken > 0)
            m_report.Line("(lines that are no part of a trace, left out: " + QByteArray::number(m_broken) +
                          ")");
    }

private:
    void Take(const TraceEntry& entry)
    {
        const QDateTime told = QDateTime::fromString(QString::fromStdString(entry.time), Qt::ISODateWithMs);
        const qint64 at = entry.at.time_since_epoch().count();
        if (told.isValid())
            m_offset = told.toMSecsSinceEpoch() - at;
        if (!m_begun && m_offset && *m_offset + at < m_from) {
            m_head.Take(entry);
            return;
        }
        if (!m_begun && m_offset && entry.kind != TraceEntry::Kind::Opened) {
            const QDateTime time = QDateTime::fromMSecsSinceEpoch(*m_offset + at, Qt::UTC);
            m_report.Entry({.kind = TraceEntry::Kind::Time,
                            .at = entry.at,
                            .time = time.toString(Qt::ISODateWithMs).toStdString()});
            for (const TraceEntry& line : m_head.Lines(entry.at))
                m_report.Entry(line);
        }
        m_begun = true;
        m_report.Entry(entry);
    }

    Report& m_report;
    qint64 m_from; // ms, wall clock
    map27::TraceHead m_head;
    std::optional<qint64> m_offset; // of the wall clock from the entries' time, ms
    bool m_begun = false;
    int m_broken = 0;
};

void AddLog(Report& report, const QString& folder)
{
    for (const QFileInfo& info : FilesOf(folder, {"veltorkyn*.log", "veltorkyn*.log.?"})) {
        report.Head(info.fileName());
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly))
            report.Line("(cannot be read: " + file.errorString().toUtf8() + ")");
        while (file.isOpen() && !file.atEnd())
            report.Line(
                dao::WithoutPassword(QString::fromUtf8(file.readLine(LongestLine)).trimmed()).toUtf8());
    }
}

void AddTrace(Report& report, const QString& folder, const QDateTime& now)
{
    QMap<QString, QFileInfoList> consoles;
    for (const QFileInfo& info : FilesOf(folder, {"line-trace*.jsonl"}))
        consoles[info.fileName().section(u'.', 0, 0)].append(info);
    for (const QString& console : consoles.keys()) {
        report.Head(console);
        LastHour hour(report, now.addMSecs(-Hour));
        for (const QFileInfo& info : consoles[console]) {
            QFile file(info.filePath());
            if (file.open(QIODevice::ReadOnly))
                hour.Take(file);
            else
                report.Line("(cannot be read: " + file.errorString().toUtf8() + ")");
        }
        hour.Sum();
    }
}

} // namespace

void SupportReport::Write(const QString& path) const
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw Error(ErrorCode::General, file.errorString());
    file.setPermissions(dao::OwnerOnly);
    Report report(file, withTexts);
    report.Line("VeltorKyn support report, " + now.toUTC().toString(Qt::ISODate).toUtf8());
    report.Line(withTexts ? "Texts of messages stand in it as they were sent."
                          : "Texts of messages are zeros of the same length.");
    report.Line("");
    report.Line(diagnostics.toUtf8());
    AddLog(report, stateFolder);
    AddTrace(report, stateFolder, now);
    if (!file.commit())
        throw Error(ErrorCode::General, file.errorString());
}
