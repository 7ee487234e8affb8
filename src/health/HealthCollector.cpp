#include "health/HealthCollector.h"

#include "core/backup/DailyBackup.h"
#include "core/base/Clock.h"
#include "core/eventlog/EventLog.h"
#include "core/session/DbSession.h"
#include "core/settings/Settings.h"
#include "core/sounds/Sounds.h"
#include "dao/Backup.h"
#include "dao/EngineVersions.h"
#include "radio/facade/Map27Executive.h"
#include "radio/line/Map27Control.h"
#include "radio/line/SerialAdapters.h"
#include "radio/line/SerialRadioPort.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStorageInfo>
#include <QSysInfo>

namespace {

constexpr int LateAfter = 5; // seconds

SlowFacts::Disk DiskOf(const QString& folder)
{
    const QStorageInfo disk(folder);
    return disk.isValid() ? SlowFacts::Disk{disk.bytesAvailable(), disk.bytesTotal()} : SlowFacts::Disk{};
}

template <typename Read> auto OrNothing(const Read& read) -> decltype(read())
{
    try {
        return read();
    } catch (const std::exception&) { // it is not known, then
        return {};
    }
}

} // namespace

HealthCollector::HealthCollector(const Sources& sources)
    : m_sources(sources),
      m_linkSince(sources.clock.Now()),
      m_state(sources.executive.Link().state),
      m_lane(sources.lane)
{
    connect(
        &sources.executive, &Map27Executive::LinkChanged, this,
        [this](const LinkStatus& status) {
            if (status.state != m_state)
                m_linkSince = m_sources.clock.Now();
            m_state = status.state;
        });
}

dao::Location HealthCollector::Where() const
{
    return {OrNothing([this] { return m_sources.logon.DatabaseFile(); }),
            OrNothing([this] { return m_sources.logon.WorkgroupFile(); })};
}

QString HealthCollector::BackupFolder() const
{
    return OrNothing(
        [this] { return m_sources.settings.Read(DailyBackup::Section, DailyBackup::FolderKey, {}); });
}

HealthFacts HealthCollector::Facts() const
{
    const Sources& from = m_sources;
    const QString target = Where().database;
    HealthFacts facts{.link = from.executive.Link(),
                      .linkSince = m_linkSince,
                      .line = from.executive.Map27Control().Figures(),
                      .port = OrNothing([&] { return from.executive.DefaultPort(); }),
                      .bitsPerSecond = OrNothing([&] { return from.executive.DefaultBaud(); }),
                      .target = dao::WithoutPassword(target),
                      .isOnServer = dao::IsServerTarget(target),
                      .operatorName = from.eventLog.OperatorName(),
                      .backupFolder = BackupFolder(),
                      .waiting = from.eventLog.Waiting() + from.eventLog.Left(),
                      .waitingCause = from.eventLog.Cause(),
                      .hasSound = from.sounds.HasOutput(),
                      .slow = m_slow};
    // Files anybody who is logged on has backed up every day; a server its administrators do.
    facts.mayBackUp = !facts.isOnServer && !facts.operatorName.isEmpty() && !facts.backupFolder.isEmpty();
    facts.versions =
        QStringList{QStringLiteral("VeltorKyn ") + QCoreApplication::applicationVersion(),
                    QStringLiteral("Qt ") + QLatin1String(qVersion())} +
        dao::EngineVersions() +
        QStringList{QSysInfo::prettyProductName(), QSysInfo::kernelType() + u' ' + QSysInfo::kernelVersion()};
    if (m_asked.isValid() && m_asked.secsTo(from.clock.Now()) >= LateAfter)
        facts.slowSince = m_asked;
    return facts;
}

void HealthCollector::AskSlow()
{
    if (m_asked.isValid())
        return;
    m_asked = m_sources.clock.Now();
    const Question question{OrNothing([this] { return m_sources.executive.DefaultPort(); }), Where(),
                            BackupFolder(), m_sources.stateFolder};
    m_lane.Do([this, question]() -> Lane::Answer {
        return [this, answer = Answer(question)] {
            m_slow = answer;
            m_asked = {};
        };
    });
}

// On the lane.
SlowFacts HealthCollector::Answer(const Question& question)
{
    SlowFacts facts;
    facts.stateDisk = DiskOf(question.stateFolder);
    if (!question.port.isEmpty() && !question.port.startsWith(QLatin1String("tcp:")))
        facts.adapter =
            SerialAdapters::NameOf(QFileInfo(SerialRadioPort::DevicePath(question.port)).canonicalFilePath());
    if (question.database.database.isEmpty() || dao::IsServerTarget(question.database.database))
        return facts;
    const QFileInfo database(question.database.database);
    const QFileInfo workgroup(question.database.workgroup);
    facts.databaseSize = database.exists() ? database.size() + workgroup.size() : -1;
    facts.databaseDisk = DiskOf(database.path());
    if (!question.backupFolder.isEmpty())
        OrNothing([&] {
            for (const dao::Generation& one : dao::GenerationsIn(question.backupFolder, question.database))
                if (!facts.lastBackup.isValid() || one.time > facts.lastBackup)
                    facts.lastBackup = one.time;
            return 0;
        });
    return facts;
}
