#include "core/backup/DailyBackup.h"

#include "core/backup/TextIds.h"
#include "core/base/Clock.h"
#include "core/base/ProgramLog.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "dao/Backup.h"

#include <QDir>
#include <utility>

namespace {

constexpr std::chrono::minutes LookPause{1};
constexpr int LongestWork = 15 * 60;   // seconds
constexpr int PauseAfterFailure = 600; // seconds
constexpr int SecondsOfADay = 86400;

int Number(const Settings& settings, const QString& key, int fallback)
{
    bool valid = false;
    const int number = settings.Read(DailyBackup::Section, key, {}).toInt(&valid);
    return valid && number > 0 ? number : fallback;
}

class FolderMissing : public std::exception {};

} // namespace

DailyBackup::DailyBackup(std::function<dao::Location()> location, const Settings& settings,
                         const IStringSource& strings, const Clock& clock, Lane::Kind lane)
    : m_location(std::move(location)),
      m_settings(settings),
      m_strings(strings),
      m_clock(clock),
      m_lane(lane)
{
    connect(&m_timer, &QTimer::timeout, this, &DailyBackup::Look);
    m_timer.setInterval(LookPause);
}

BackupPlan DailyBackup::PlanIn(const Settings& settings)
{
    const BackupPlan plan;
    return {Number(settings, NewestKey, plan.newest), Number(settings, DaysKey, plan.days)};
}

void DailyBackup::Begin()
{
    try {
        m_database = m_location();
    } catch (const std::exception&) { // whoever has logged on was told
        return;
    }
    m_timer.start();
    Look();
}

void DailyBackup::End()
{
    m_timer.stop();
    m_database = {};
}

void DailyBackup::Look()
{
    const QDateTime now = m_clock.Now();
    if (m_working) {
        if (m_working->secsTo(now) > LongestWork)
            Fail(m_strings.LoadString(BackupText::Hangs));
        return;
    }
    if (m_database.database.isEmpty() || dao::IsServerTarget(m_database.database) ||
        (m_failed && m_failed->secsTo(now) < PauseAfterFailure))
        return;
    BackupPlan plan;
    try {
        m_folder = m_settings.Read(Section, FolderKey, {});
        plan = PlanIn(m_settings);
    } catch (const std::exception& failure) {
        return Fail(DescribeError(failure, m_strings));
    }
    if (m_folder.isEmpty())
        return;
    m_working = now;
    m_lane.Do([this, database = m_database, folder = m_folder, plan, now]() -> Lane::Answer {
        return [this, outcome = Work(database, folder, plan, now)] { Take(outcome); };
    });
}

// On the lane.
DailyBackup::Outcome DailyBackup::Work(const dao::Location& database, const QString& folder,
                                       const BackupPlan& plan, const QDateTime& now)
{
    Outcome outcome;
    try {
        // Made by nobody: what is missing is the other disk, and this one would be filled in its place.
        if (!QDir(folder).exists())
            throw FolderMissing();
        const auto times = [&] {
            QList<QDateTime> made;
            for (const dao::Generation& generation : dao::GenerationsIn(folder, database))
                made.append(generation.time);
            return made;
        };
        if (!plan.IsDue(times(), now))
            return outcome;
        outcome.made = dao::MakeBackupOfFiles(database, folder, now).generation;
        const QList<QDateTime> made = times();
        for (const dao::Generation& generation : dao::GenerationsIn(folder, database))
            if (!plan.IsKept(generation.time, made, now) && QDir(generation.path).removeRecursively())
                ++outcome.givenUp;
    } catch (const std::exception&) {
        outcome.failure = std::current_exception();
    }
    return outcome;
}

void DailyBackup::Take(const Outcome& outcome)
{
    m_working.reset();
    m_failed.reset();
    if (outcome.failure) {
        try {
            std::rethrow_exception(outcome.failure);
        } catch (const FolderMissing&) {
            Fail(m_strings.LoadString(BackupText::NoFolder));
        } catch (const std::exception& failure) {
            Fail(DescribeError(failure, m_strings));
        }
        return;
    }
    m_told.reset();
    if (!outcome.made.isEmpty())
        ProgramLog::Write(
            QStringLiteral("Backup: made %1, gave up %2 older").arg(outcome.made).arg(outcome.givenUp));
}

void DailyBackup::Fail(const QString& cause)
{
    m_failed = m_clock.Now();
    const QString text = FormatMessage(m_strings, BackupText::Failed, {m_folder, cause});
    if (m_told && m_told->secsTo(*m_failed) < SecondsOfADay)
        return;
    m_told = m_failed;
    ProgramLog::Write(QStringLiteral("Backup: ") + text);
    Q_EMIT Failed(text);
}
