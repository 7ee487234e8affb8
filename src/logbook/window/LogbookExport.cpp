#include "logbook/window/LogbookExport.h"

#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "dao/Workspace.h"
#include "dao/base/FileAccess.h"
#include "logbook/query/LogLines.h"
#include "logbook/window/TextIds.h"

#include <QLocale>
#include <QPageLayout>
#include <QPdfWriter>
#include <QPrinter>
#include <QSaveFile>
#include <algorithm>
#include <exception>
#include <utility>

namespace {

constexpr int PageSize = 1000;
constexpr std::chrono::milliseconds BetweenSigns{100};

// Where the lines go.
struct Sink {
    virtual ~Sink() = default;
    virtual void Add(const dao::EventRecord& record, const LogFacts& facts) = 0;
    virtual void Keep() = 0;
};

class FileSink : public Sink {
public:
    explicit FileSink(const QString& path) : m_file(path)
    {
        if (!m_file.open(QIODevice::WriteOnly) || !m_file.setPermissions(dao::OwnerOnly))
            Fail();
    }

protected:
    [[noreturn]] void Fail() const
    {
        throw Error(ErrorCode::General,
                    QStringLiteral("%1: %2").arg(m_file.fileName(), m_file.errorString()));
    }

    QSaveFile m_file;
};

class CsvSink : public FileSink {
public:
    explicit CsvSink(const QString& path) : FileSink(path) { Write(LogLines::CsvHeader()); }

    void Add(const dao::EventRecord& record, const LogFacts& facts) override
    {
        Write(LogLines::Csv(record, facts));
    }
    void Keep() override
    {
        if (!dao::Commit(m_file))
            Fail();
    }

private:
    void Write(const QString& line)
    {
        const QByteArray bytes = line.toUtf8();
        if (m_file.write(bytes) != bytes.size())
            Fail();
    }
};

class PdfSink : public FileSink {
public:
    PdfSink(const QString& path, const LogPaper::Texts& texts)
        : FileSink(path),
          m_writer(&m_file),
          m_paper(Prepared(m_writer, texts), texts)
    {
    }

    void Add(const dao::EventRecord& record, const LogFacts& facts) override { m_paper.Add(record, facts); }
    void Keep() override
    {
        if (!m_paper.End() || !dao::Commit(m_file))
            Fail();
    }

private:
    static QPdfWriter& Prepared(QPdfWriter& writer, const LogPaper::Texts& texts)
    {
        constexpr int Resolution = 300;
        constexpr qreal Margin = 12; // mm
        writer.setResolution(Resolution);
        writer.setTitle(texts.title);
        writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape,
                                         QMarginsF(Margin, Margin, Margin, Margin), QPageLayout::Millimeter));
        return writer;
    }

    QPdfWriter m_writer;
    LogPaper m_paper;
};

class PaperSink : public Sink {
public:
    PaperSink(QPrinter& printer, const LogPaper::Texts& texts) : m_printer(printer), m_paper(printer, texts)
    {
    }
    ~PaperSink() override
    {
        if (!m_kept)
            m_printer.abort();
    }

    void Add(const dao::EventRecord& record, const LogFacts& facts) override { m_paper.Add(record, facts); }
    void Keep() override
    {
        m_kept = true;
        if (!m_paper.End())
            throw Error(ErrorCode::General, m_printer.printerName());
    }

private:
    QPrinter& m_printer;
    LogPaper m_paper;
    bool m_kept = false;
};

} // namespace

// What both threads touch.
struct LogbookExport::Run {
    std::atomic<bool> cancelled = false;
    std::atomic<qlonglong> lines = 0;
    std::atomic<int> percent = 0;

    // False when it was cancelled.
    bool Write(dao::Database& database, const LogSearch& search, const LogFacts& facts, Sink& sink)
    {
        const qlonglong newest = dao::EventIndex::StateOf(database).newest;
        LogSearch::Page page{.records = {}, .bound = -1};
        while (!page.isLast && page.bound < newest) {
            page = search.Next(database, LogSearch::Order::OldestFirst, page.bound, PageSize,
                               [this] { return !cancelled; });
            for (const dao::EventRecord& record : page.records) {
                if (cancelled)
                    return false;
                if (record.id > newest)
                    break;
                sink.Add(record, facts);
                ++lines;
            }
            if (cancelled)
                return false;
            percent = static_cast<int>(100 * std::min(page.bound, newest) / std::max(newest, 1LL));
        }
        return true;
    }
};

LogbookExport::LogbookExport(IDbSession& session, const IStringSource& strings)
    : m_session(session),
      m_strings(strings),
      m_texts{LogbookLine(strings),
              {},
              strings.LoadString(LogbookText::Page),
              strings.LoadString(LogbookText::CannotPaint)}
{
    m_progress.setInterval(BetweenSigns);
    connect(&m_progress, &QTimer::timeout, this, [this] { Q_EMIT Progress(m_run->percent, m_run->lines); });
}

LogbookExport::~LogbookExport()
{
    Cancel();
}

void LogbookExport::Begin(Target target, const QString& file, const std::shared_ptr<QPrinter>& printer,
                          const LogFilter& filter, const LogFacts& facts)
{
    const auto open = m_session.Workspace().Again();
    m_target = target;
    m_file = file;
    m_run = std::make_shared<Run>();
    LogPaper::Texts texts = m_texts;
    texts.title = FormatMessage(m_strings, LogbookText::PaperTitle,
                                {QLocale().toString(QDateTime::currentDateTime(), QLocale::ShortFormat)});
    m_lane = std::make_unique<Lane>(Lane::Kind::OwnThread);
    m_progress.start();
    m_lane->Do([this, open, target, file, printer, filter, facts, texts, run = m_run]() -> Lane::Answer {
        try {
            const auto workspace = open();
            std::unique_ptr<Sink> sink;
            if (target == Target::Csv)
                sink = std::make_unique<CsvSink>(file);
            else if (target == Target::Pdf)
                sink = std::make_unique<PdfSink>(file, texts);
            else
                sink = std::make_unique<PaperSink>(*printer, texts);
            const LogSearch search(filter, facts);
            if (!run->Write(workspace->Database(), search, facts, *sink))
                return [this] {
                    End();
                    Q_EMIT Cancelled();
                };
            sink->Keep();
            return [this, lines = run->lines.load()] {
                End();
                Q_EMIT Finished(lines);
            };
        } catch (...) {
            return [this, failure = std::current_exception()] {
                End();
                try {
                    std::rethrow_exception(failure);
                } catch (const std::exception& reason) {
                    Q_EMIT Failed(DescribeError(reason, m_strings));
                }
            };
        }
    });
}

void LogbookExport::Cancel()
{
    if (m_run)
        m_run->cancelled = true;
}

void LogbookExport::End()
{
    m_progress.stop();
    m_run.reset();
}
