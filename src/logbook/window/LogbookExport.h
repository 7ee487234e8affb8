#pragma once

#include "core/base/Lane.h"
#include "logbook/query/LogSearch.h"
#include "logbook/window/LogbookLine.h"
#include "logbook/window/TablePaper.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <atomic>
#include <memory>

class QPrinter;
struct IDbSession;
struct IStringSource;

// Writes all records that a filter lets through, oldest first, into a file or onto paper: beside the window's
// thread, with a session of its own, one at a time. A file is there as a whole or not at all. On the window's
// thread.
class LogbookExport : public QObject {
    Q_OBJECT

public:
    enum class Target { Csv, Pdf, Paper };

    // Both outlive it.
    LogbookExport(IDbSession& session, const IStringSource& strings);
    // Cancels.
    ~LogbookExport() override;

    // `file` for the first two, `printer` for paper. Raises dao::Error when nobody is logged on.
    void Begin(Target target, const QString& file, const std::shared_ptr<QPrinter>& printer,
               const LogFilter& filter, const LogFacts& facts);
    void Cancel();
    bool IsRunning() const { return m_run != nullptr; }
    Target Of() const { return m_target; }
    QString File() const { return m_file; }

Q_SIGNALS:
    void Progress(int percent, qlonglong lines);
    void Finished(qlonglong lines);
    void Cancelled();
    void Failed(const QString& text);

private:
    struct Run;

    void End();

    IDbSession& m_session;
    const IStringSource& m_strings;
    LogbookLine m_line;
    TablePaper::Texts m_texts;
    Target m_target = Target::Csv;
    QString m_file;
    std::shared_ptr<Run> m_run;
    std::unique_ptr<Lane> m_lane;
    QTimer m_progress;
};
