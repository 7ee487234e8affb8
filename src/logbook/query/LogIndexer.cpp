#include "logbook/query/LogIndexer.h"

#include "core/base/ProgramLog.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "dao/Workspace.h"
#include "dao/tables/EventIndex.h"

#include <functional>
#include <utility>

namespace {

constexpr int RecordsAtOnce =
    4 * dao::EventIndex::BlockSize;                    // which locks a file for a few hundredths of a second
constexpr std::chrono::seconds BeforeTheFirst{5};      // after a logon, which has enough to do
constexpr std::chrono::milliseconds BetweenSteps{200}; // so that records get their turn
constexpr std::chrono::seconds BetweenLooks{10};

} // namespace

struct LogIndexer::Reader {
    std::function<std::unique_ptr<dao::Workspace>()> open;
    std::unique_ptr<dao::Workspace> workspace{};
    bool failed = false;

    // True when there may be more to do.
    bool Step()
    {
        try {
            if (!workspace)
                workspace = open();
            dao::Database& database = workspace->Database();
            const auto before = dao::EventIndex::StateOf(database);
            failed = false;
            if (before.newest - before.next < dao::EventIndex::BlockSize)
                return false;
            dao::EventIndex::Extend(database, RecordsAtOnce);
            return dao::EventIndex::StateOf(database).next > before.next;
        } catch (const std::exception& failure) {
            // Searches read what is not indexed, and the next look tries again.
            if (!std::exchange(failed, true))
                ProgramLog::Write(
                    QStringLiteral("Index of the log: %1").arg(QString::fromUtf8(failure.what())));
            workspace.reset();
            return false;
        }
    }
};

LogIndexer::LogIndexer(IDbSession& session) : m_session(session)
{
    m_due.setSingleShot(true);
    connect(&m_due, &QTimer::timeout, this, &LogIndexer::Look);
    connect(&session.Changes(), &DatabaseChanges::Opened, this, &LogIndexer::Begin);
    connect(&session.Changes(), &DatabaseChanges::Closing, this, &LogIndexer::End);
}

LogIndexer::~LogIndexer()
{
    End();
}

void LogIndexer::Begin()
{
    m_due.start(BeforeTheFirst);
}

void LogIndexer::End()
{
    m_due.stop();
    if (!m_lane)
        return;
    m_lane->Do([reader = std::exchange(m_reader, nullptr)]() mutable -> Lane::Answer {
        reader.reset(); // on the thread that opened it
        return {};
    });
    m_lane.reset();
}

void LogIndexer::Look()
{
    if (!m_session.IsOpen())
        return;
    if (!m_lane) {
        try {
            m_reader = std::make_shared<Reader>(Reader{m_session.Workspace().Again()});
        } catch (const std::exception&) {
            m_due.start(BetweenLooks);
            return;
        }
        m_lane = std::make_unique<Lane>(Lane::Kind::OwnThread);
    }
    m_lane->Do([this, reader = m_reader]() -> Lane::Answer {
        const bool more = reader->Step();
        return [this, more] { m_due.start(more ? BetweenSteps : std::chrono::milliseconds(BetweenLooks)); };
    });
}
