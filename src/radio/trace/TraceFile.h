#pragma once

#include "core/base/FileLock.h"
#include "map27/trace/TraceHead.h"

#include <QFile>
#include <memory>

// The two files of a WireTrace. Belongs to the thread that writes.
class TraceFile {
public:
    struct Bounds {
        qint64 size; // octets of one file
        qint64 age;  // ms
    };

    // `name` is the files' path without what follows the name.
    TraceFile(QString name, Bounds bounds) : m_name(std::move(name)), m_bounds(bounds) {}

    // At least one, all of them or none; what could not be written is counted in the next that can. `now` is
    // the wall clock and `at` the same moment in the entries' time.
    void Write(const std::vector<map27::TraceEntry>& entries, const QDateTime& now, map27::TimePoint at);

    // With its distance from UTC.
    static QString TimeText(const QDateTime& time);

private:
    void Append(const std::vector<map27::TraceEntry>& entries, const QDateTime& now, map27::TimePoint at);
    bool Open();
    bool TakePlace();
    void EndAtALine();
    bool Rotate();
    static QByteArray LineOf(const map27::TraceEntry& entry);
    void Fail(std::size_t entries);

    map27::TraceHead m_head;
    QString m_name;
    Bounds m_bounds;
    std::unique_ptr<FileLock> m_place; // among the consoles of the same user
    QFile m_file;
    QDateTime m_since;    // when the file began
    qint64 m_missing = 0; // entries that could not be written
    bool m_failed = false;
};
