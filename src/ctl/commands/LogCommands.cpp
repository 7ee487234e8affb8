// The commands "log show", "log export" and "log follow".

#include "core/texts/Errors.h"
#include "ctl/commands/AccountOptions.h"
#include "ctl/commands/LogOptions.h"
#include "ctl/commands/PasswordReader.h"
#include "ctl/program/Console.h"
#include "dao/base/FileAccess.h"
#include "logbook/query/LogSearch.h"

#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>
#include <chrono>
#include <set>
#include <thread>

namespace {

constexpr int PageSize = 1000;
constexpr int ShownUnlessSaid = 100;
// A record that another console stores may be there after one with a later number.
constexpr qlonglong LookedAtAgain = 256;
constexpr std::chrono::milliseconds BetweenLooks{500};

using Format = LogOptions::Format;
using Order = LogSearch::Order;

std::unique_ptr<dao::Workspace> Open(const Request& request)
{
    PasswordReader passwords(request.options.isSet("password-stdin"));
    return AccountOptions::OpenAs(request.options.value("as"), request, passwords);
}

qlonglong NumberOf(const Request& request, const QString& option, qlonglong otherwise, qlonglong least)
{
    if (!request.options.isSet(option))
        return otherwise;
    bool isNumber = false;
    const qlonglong number = request.options.value(option).toLongLong(&isNumber);
    if (!isNumber || number < least)
        throw UsageError(QStringLiteral("--%1 %2: expected a number from %3 on")
                             .arg(option, request.options.value(option))
                             .arg(least));
    return number;
}

void Print(const QString& lines)
{
    if (!lines.isEmpty())
        Console::Print(lines.chopped(1)); // which adds the last line's end
}

int Show(const Request& request)
{
    const LogFilter filter = LogOptions::FilterOf(request);
    const Format format = LogOptions::FormatOf(request, Format::Text);
    const qlonglong most = NumberOf(request, "last", ShownUnlessSaid, 1);
    const auto workspace = Open(request);
    const LogFacts facts = LogOptions::FactsOf(request, workspace->Database());
    const LogSearch search(filter, facts);
    std::vector<dao::EventRecord> records;
    LogSearch::Page page{.records = {}, .bound = LogSearch::FromNewest};
    while (!page.isLast && static_cast<qlonglong>(records.size()) < most) {
        const auto left = most - static_cast<qlonglong>(records.size());
        page = search.Next(workspace->Database(), Order::NewestFirst, page.bound,
                           static_cast<int>(std::min<qlonglong>(left, PageSize)));
        records.insert(records.end(), page.records.begin(), page.records.end());
    }
    Print(LogOptions::Header(format));
    for (auto record = records.rbegin(); record != records.rend(); ++record)
        Print(LogOptions::Line(*record, facts, format));
    return exitOk;
}

Error CannotWrite(const QString& path, const QString& reason)
{
    return Error(ErrorCode::General, QStringLiteral("%1: %2").arg(path, reason));
}

int Export(const Request& request)
{
    const QString path = request.arguments[1];
    if (path.isEmpty())
        throw UsageError(QStringLiteral("FILE is empty"));
    const LogFilter filter = LogOptions::FilterOf(request);
    const Format format = LogOptions::FormatOf(request, Format::Csv);
    if (QFileInfo::exists(path))
        throw CannotWrite(path, QStringLiteral("the file exists already, nothing was overwritten"));
    const auto workspace = Open(request);
    const LogFacts facts = LogOptions::FactsOf(request, workspace->Database());
    const LogSearch search(filter, facts);
    QSaveFile file(path);
    const auto write = [&](const QString& lines) {
        const QByteArray bytes = lines.toUtf8();
        if (file.write(bytes) != bytes.size())
            throw CannotWrite(path, file.errorString());
    };
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(dao::OwnerOnly))
        throw CannotWrite(path, file.errorString());
    write(LogOptions::Header(format));
    qlonglong count = 0;
    const qlonglong newest = dao::EventIndex::StateOf(workspace->Database()).newest;
    LogSearch::Page page{.records = {}, .bound = -1};
    while (!page.isLast && page.bound < newest) { // what comes meanwhile is left for the next time
        page = search.Next(workspace->Database(), Order::OldestFirst, page.bound, PageSize);
        for (const dao::EventRecord& record : page.records) {
            if (record.id > newest)
                break;
            write(LogOptions::Line(record, facts, format));
            ++count;
        }
    }
    if (!dao::Commit(file))
        throw CannotWrite(path, file.errorString());
    Console::Print(QStringLiteral("Exported %1 records").arg(count));
    return exitOk;
}

class Follower {
public:
    Follower(const Request& request, dao::Workspace& workspace)
        : m_workspace(workspace),
          m_facts(LogOptions::FactsOf(request, workspace.Database())),
          m_search(LogOptions::FilterOf(request), m_facts),
          m_format(LogOptions::FormatOf(request, Format::Text)),
          m_last(NumberOf(request, "after", -1, 0))
    {
        if (m_last < 0)
            m_last = dao::EventIndex::StateOf(workspace.Database()).newest;
        m_first = m_last;
        Print(LogOptions::Header(m_format));
        Console::Flush();
    }

    void Look()
    {
        const qlonglong newest = dao::EventIndex::StateOf(m_workspace.Database()).newest;
        LogSearch::Page page{.records = {}, .bound = std::max(m_first, m_last - LookedAtAgain)};
        while (!page.isLast) {
            page = m_search.Next(m_workspace.Database(), Order::OldestFirst, page.bound, PageSize);
            for (const dao::EventRecord& record : page.records)
                if (m_printed.insert(record.id).second)
                    Print(LogOptions::Line(record, m_facts, m_format));
            Console::Flush();
        }
        m_last = std::max(m_last, newest);
        m_printed.erase(m_printed.begin(), m_printed.lower_bound(m_last - LookedAtAgain));
    }

private:
    dao::Workspace& m_workspace;
    const LogFacts m_facts;
    const LogSearch m_search;
    const Format m_format;
    qlonglong m_first = 0; // nothing before it is wanted
    qlonglong m_last;
    std::set<qlonglong> m_printed;
};

// Ends only with a signal, or when nobody reads any more.
int Follow(const Request& request)
{
    LogOptions::FilterOf(request);
    LogOptions::FormatOf(request, Format::Text);
    const auto workspace = Open(request);
    Follower follower(request, *workspace);
    bool away = false;
    while (true) {
        try {
            follower.Look();
            if (std::exchange(away, false))
                Console::PrintError(QStringLiteral("veltorkynctl: the database is there again"));
        } catch (const dao::Error& failure) {
            if (failure.kind != dao::Kind::ServerAway && failure.kind != dao::Kind::Locked)
                throw;
            if (!std::exchange(away, true))
                Console::PrintError(
                    QStringLiteral("veltorkynctl: waiting: %1").arg(DescribeError(failure, request.strings)));
        }
        std::this_thread::sleep_for(BetweenLooks);
    }
}

} // namespace

Command LogShowCommand()
{
    return {.words = "log show",
            .synopsis = "TARGET [FILTERS] [--last N] [--format FORMAT] [--as NAME] [--password-stdin]",
            .summary = "print records of the log",
            .help = AccountOptions::AboutTarget() +
                    "Prints the newest records that all filters let through, oldest first.\n" +
                    LogOptions::About(),
            .options = LogOptions::All() + QList<QCommandLineOption>{{"last", "at most so many (100)", "N"}},
            .fewestArguments = 1,
            .mostArguments = 1,
            .run = Show};
}

Command LogExportCommand()
{
    return {
        .words = "log export",
        .synopsis = "TARGET FILE [FILTERS] [--format FORMAT] [--as NAME] [--password-stdin]",
        .summary = "write records of the log to a file",
        .help =
            AccountOptions::AboutTarget() +
            "FILE must not exist yet; it is written in UTF-8, as CSV unless --format says otherwise, with\n"
            "all records that the filters let through, oldest first. In CSV a field that a spreadsheet\n"
            "would take for a formula has an apostrophe before it.\n" +
            LogOptions::About(),
        .options = LogOptions::All(),
        .fewestArguments = 2,
        .mostArguments = 2,
        .run = Export};
}

Command LogFollowCommand()
{
    return {
        .words = "log follow",
        .synopsis = "TARGET [FILTERS] [--after RECORD] [--format FORMAT] [--as NAME] [--password-stdin]",
        .summary = "print records of the log as they come",
        .help =
            AccountOptions::AboutTarget() +
            "Prints each new record that all filters let through within a second, until it is\n"
            "interrupted. While a server is away it waits and then goes on without a gap; --after with\n"
            "the number of the last record that was printed (\"record\") does so after an interruption.\n" +
            LogOptions::About(),
        .options = LogOptions::All() +
                   QList<QCommandLineOption>{{"after", "begin behind the record of this number", "RECORD"}},
        .fewestArguments = 1,
        .mostArguments = 1,
        .run = Follow};
}
