#include "logbook/window/LogbookFeed.h"

#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "dao/Workspace.h"
#include "logbook/window/LogbookModel.h"

#include <QElapsedTimer>
#include <algorithm>
#include <exception>
#include <utility>

namespace {

constexpr int PageSize = 100;
constexpr int MostNewer = 500;
constexpr int Around = 50; // newer lines than the time that was gone to
constexpr std::chrono::milliseconds BetweenLooks{1000};
constexpr std::chrono::milliseconds Slice{150}; // then what was found is shown, and the search goes on
// A record that another console stores may be there after one with a later number.
constexpr qlonglong LookedAtAgain = 256;

} // namespace

struct LogbookFeed::Reader {
    std::function<std::unique_ptr<dao::Workspace>()> open;
    std::unique_ptr<dao::Workspace> workspace{};

    dao::Database& Database()
    {
        if (!workspace)
            workspace = open();
        return workspace->Database();
    }
};

LogbookFeed::LogbookFeed(IDbSession& session, const IStringSource& strings, LogbookModel& model)
    : m_session(session),
      m_strings(strings),
      m_model(model),
      m_facts(strings, {}),
      m_turn(std::make_shared<std::atomic<int>>(0))
{
    m_look.setInterval(BetweenLooks);
    connect(&m_look, &QTimer::timeout, this, &LogbookFeed::ShowNewer);
}

LogbookFeed::~LogbookFeed()
{
    End();
}

void LogbookFeed::End()
{
    ++*m_turn;
    m_look.stop();
    m_searching = m_looking = m_isComplete = false;
    m_search.reset();
    m_model.Clear();
    if (!m_lane)
        return;
    m_lane->Do([reader = std::exchange(m_reader, nullptr)]() mutable -> Lane::Answer {
        reader.reset(); // on the thread that opened it
        return {};
    });
    m_lane.reset();
}

// The job gets the turn it belongs to. What it raises ends the search.
void LogbookFeed::Do(const std::function<Lane::Answer(Reader&, int)>& job)
{
    if (!m_lane) {
        m_reader = std::make_shared<Reader>(Reader{m_session.Workspace().Again()});
        m_lane = std::make_unique<Lane>(Lane::Kind::OwnThread);
    }
    const int turn = *m_turn;
    m_lane->Do([this, job, turn, reader = m_reader, current = m_turn]() -> Lane::Answer {
        if (*current != turn)
            return {};
        try {
            const Lane::Answer answer = job(*reader, turn);
            return [answer, turn, current] {
                if (*current == turn)
                    answer();
            };
        } catch (...) {
            reader->workspace.reset(); // opened again the next time
            return [this, turn, current, failure = std::current_exception()] {
                if (*current != turn)
                    return;
                try {
                    std::rethrow_exception(failure);
                } catch (const std::exception& reason) {
                    Fail(reason);
                }
            };
        }
    });
}

void LogbookFeed::Fail(const std::exception& failure)
{
    m_searching = m_looking = false;
    m_wanted = 0;
    Q_EMIT Failed(DescribeError(failure, m_strings));
}

void LogbookFeed::Restart()
{
    ++*m_turn;
    m_searching = m_looking = m_isComplete = false;
    m_lookedBackTo = {};
    m_wanted = 0;
}

void LogbookFeed::Show(const LogFilter& filter, const QStringList& own)
{
    Restart();
    m_filter = filter;
    m_searching = true;
    m_model.Clear();
    try {
        Do([this, filter, facts = LogFacts(m_strings, own)](Reader& reader, int) -> Lane::Answer {
            LogFacts read = facts;
            read.ReadStatuses(reader.Database());
            const qlonglong newest = dao::EventIndex::StateOf(reader.Database()).newest;
            return [this, read, filter, newest] {
                m_facts = read;
                m_search = std::make_shared<const LogSearch>(filter, read);
                m_model.Begin(read);
                m_newerBound = newest;
                m_olderBound = newest + 1;
                m_wanted = PageSize;
                Ask(LogSearch::Order::NewestFirst, m_olderBound, PageSize);
            };
        });
    } catch (const std::exception& failure) {
        Fail(failure);
    }
    Follow(m_following);
    Q_EMIT StateChanged();
}

void LogbookFeed::Ask(LogSearch::Order order, qlonglong bound, int most)
{
    Do([this, order, bound, most, search = m_search, current = m_turn](Reader& reader,
                                                                       int turn) -> Lane::Answer {
        QElapsedTimer timer;
        timer.start();
        const LogSearch::Page page = search->Next(
            reader.Database(), order, bound, most,
            [&] { return *current == turn && timer.elapsed() < Slice.count(); });
        return [this, order, page] {
            if (order == LogSearch::Order::NewestFirst)
                TakeOlder(page);
            else
                TakeNewer(page);
        };
    });
}

void LogbookFeed::TakeOlder(const LogSearch::Page& page)
{
    m_olderBound = page.bound;
    m_isComplete = page.isLast;
    m_wanted -= static_cast<int>(page.records.size());
    m_model.AddOlder(page.records);
    if (!m_model.IsEmpty())
        m_lookedBackTo = m_model.At(m_model.rowCount() - 1).time;
    m_searching = !m_isComplete && m_wanted > 0;
    if (m_searching)
        Ask(LogSearch::Order::NewestFirst, m_olderBound, m_wanted);
    Q_EMIT StateChanged();
}

void LogbookFeed::ShowOlder()
{
    if (!m_search || m_searching || m_isComplete)
        return;
    m_searching = true;
    m_wanted = PageSize;
    Ask(LogSearch::Order::NewestFirst, m_olderBound, PageSize);
    Q_EMIT StateChanged();
}

void LogbookFeed::ShowNewer()
{
    if (!m_search || m_looking)
        return;
    m_looking = true;
    Ask(LogSearch::Order::OldestFirst, m_newerBound, MostNewer);
}

void LogbookFeed::TakeNewer(const LogSearch::Page& page)
{
    m_looking = false;
    const int above = m_model.AddNewer(page.records);
    // At the log's end some are looked at again, but none that are older than what is shown.
    const qlonglong oldest = m_model.IsEmpty() ? m_newerBound : m_model.At(m_model.rowCount() - 1).id;
    m_newerBound = page.isLast ? std::max({page.newest - LookedAtAgain, std::min(oldest, page.newest), 0LL})
                               : page.bound;
    if (above > 0) {
        Q_EMIT AddedAbove(above);
        Q_EMIT StateChanged();
    }
}

void LogbookFeed::GoTo(const QDateTime& time)
{
    if (!m_search)
        return;
    Restart();
    Follow(false);
    m_searching = true;
    Do([this, time, search = m_search, facts = m_facts, current = m_turn](Reader& reader,
                                                                          int turn) -> Lane::Answer {
        dao::Database& database = reader.Database();
        const auto found = dao::EventIndex::FirstSince(database, time);
        const qlonglong first = found.value_or(dao::EventIndex::StateOf(database).newest + 1);
        const LogSearch::Page newer = search->Next(database, LogSearch::Order::OldestFirst, first - 1, Around,
                                                   [&] { return *current == turn; });
        return [this, facts, newer, first, isThere = found.has_value()] {
            m_model.Begin(facts);
            m_model.AddNewer(newer.records);
            m_newerBound = newer.isLast ? newer.newest : newer.bound;
            m_olderBound = first;
            m_wanted = PageSize;
            Ask(LogSearch::Order::NewestFirst, m_olderBound, PageSize);
            Q_EMIT WentTo(isThere ? m_model.RowOf(first) : -1);
            Q_EMIT StateChanged();
        };
    });
    Q_EMIT StateChanged();
}

void LogbookFeed::Follow(bool on)
{
    m_following = on;
    if (on)
        m_look.start();
    else
        m_look.stop();
}
