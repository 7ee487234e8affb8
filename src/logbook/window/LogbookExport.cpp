#include "logbook/window/LogbookExport.h"

#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "dao/Workspace.h"
#include "logbook/query/LogLines.h"
#include "logbook/window/ExportTable.h"
#include "logbook/window/TextIds.h"

#include <QLocale>
#include <algorithm>
#include <exception>
#include <utility>

namespace {

constexpr int PageSize = 1000;
constexpr std::chrono::milliseconds BetweenSigns{100};

// Of the width, in the order of the columns: nobody needs the console's whole identity on paper.
constexpr int Shares[] = {15, 5, 8, 15, 15, 28, 8, 6};

// Where the lines go.
struct Sink {
    virtual ~Sink() = default;
    virtual void Add(const dao::EventRecord& record, const LogFacts& facts) = 0;
    virtual void Keep() = 0;
};

class CsvSink : public Sink {
public:
    explicit CsvSink(const QString& path) : m_file(path) { m_file.Write(LogLines::CsvHeader()); }

    void Add(const dao::EventRecord& record, const LogFacts& facts) override
    {
        m_file.Write(LogLines::Csv(record, facts));
    }
    void Keep() override { m_file.Keep(); }

private:
    ExportFile m_file;
};

class TableSink : public Sink {
public:
    TableSink(std::unique_ptr<ExportTable> table, const LogbookLine& line)
        : m_table(std::move(table)),
          m_line(line)
    {
    }

    void Add(const dao::EventRecord& record, const LogFacts& facts) override
    {
        m_table->Paper().Add(m_line.Cells(record, facts), facts.IsEmergency(record));
    }
    void Keep() override { m_table->Keep(); }

private:
    std::unique_ptr<ExportTable> m_table;
    LogbookLine m_line;
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
      m_line(strings),
      m_texts{.headings = m_line.Headings(),
              .shares = {std::begin(Shares), std::end(Shares)},
              .title = {},
              .introduction = {},
              .page = strings.LoadString(LogbookText::Page),
              .failure = strings.LoadString(LogbookText::CannotPaint)}
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
    TablePaper::Texts texts = m_texts;
    texts.title = FormatMessage(m_strings, LogbookText::PaperTitle,
                                {QLocale().toString(QDateTime::currentDateTime(), QLocale::ShortFormat)});
    m_lane = std::make_unique<Lane>(Lane::Kind::OwnThread);
    m_progress.start();
    m_lane->Do([this, open, target, file, printer, filter, facts, texts, line = m_line,
                run = m_run]() -> Lane::Answer {
        try {
            const auto workspace = open();
            std::unique_ptr<Sink> sink;
            if (target == Target::Csv)
                sink = std::make_unique<CsvSink>(file);
            else if (target == Target::Pdf)
                sink = std::make_unique<TableSink>(std::make_unique<PdfTable>(file, texts), line);
            else
                sink = std::make_unique<TableSink>(std::make_unique<PrintedTable>(*printer, texts), line);
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
