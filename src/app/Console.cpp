#include "app/Console.h"

#include "core/attention/AttentionAlarm.h"
#include "core/attention/AttentionBook.h"
#include "core/backup/DailyBackup.h"
#include "core/base/ProgramLog.h"
#include "core/eventlog/EventLog.h"
#include "core/logon/frmPassword.h"
#include "core/logon/frmSettings.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/session/UserProfile.h"
#include "core/sounds/Sounds.h"
#include "mainwindow/frame/Services.h"
#include "radio/base/StatusTexts.h"
#include "radio/facade/FleetDataSource.h"
#include "radio/facade/Map27Executive.h"
#include "radio/line/Map27Control.h"

Console::Console(const ConsoleBase& base, std::unique_ptr<Map27Control> control, QString& stage)
    : statusTexts(std::make_unique<StatusTexts>(base.strings)),
      eventLog(std::make_unique<EventLog>(base.session, base.strings, base.dataFolder, base.lanes)),
      sounds(std::make_unique<Sounds>(base.settings, base.clock, base.beeper, base.strings)),
      attention(std::make_unique<AttentionBook>(base.session, *eventLog, base.clock, base.strings)),
      alarm(std::make_unique<AttentionAlarm>(*attention, *sounds, base.session)),
      dailyBackup(std::make_unique<DailyBackup>(
          [this] {
              return dao::Location{m_base.logon.DatabaseFile(), m_base.logon.WorkgroupFile()};
          },
          base.settings, base.strings, base.clock, base.lanes)),
      profile(std::make_unique<UserProfile>(base.session, base.prompt, base.strings)),
      m_base(base)
{
    QObject::connect(&base.session.Changes(), &DatabaseChanges::Opened, eventLog.get(),
                     &EventLog::WriteWaiting);
    QObject::connect(&base.session.Changes(), &DatabaseChanges::Opened, dailyBackup.get(),
                     &DailyBackup::Begin);
    QObject::connect(&base.session.Changes(), &DatabaseChanges::Closed, dailyBackup.get(), &DailyBackup::End);
    const auto note = [](const char* text) {
        return [text] { ProgramLog::Write(QStringLiteral("Database: ") + QLatin1String(text)); };
    };
    QObject::connect(&base.session.Changes(), &DatabaseChanges::Opened, eventLog.get(), note("opened"));
    QObject::connect(&base.session.Changes(), &DatabaseChanges::Closed, eventLog.get(), note("closed"));
    QObject::connect(&base.session.Changes(), &DatabaseChanges::AwayChanged, eventLog.get(), [](bool away) {
        ProgramLog::Write(away ? QStringLiteral("Database: does not answer")
                               : QStringLiteral("Database: answers again"));
    });
    stage = QStringLiteral("FleetDataSource");
    fleetData = std::make_unique<FleetDataSource>(base.session, base.strings);
    stage = QStringLiteral("Map27Executive");
    executive = std::make_unique<Map27Executive>(RadioServices{base.strings, base.prompt, base.settings,
                                                               base.session, *fleetData, *statusTexts,
                                                               *eventLog, base.clock, *attention, *sounds},
                                                 std::move(control));
    // The strip shows what the executive says has failed.
    QObject::connect(dailyBackup.get(), &DailyBackup::Failed, executive.get(), &Map27Executive::Failed);
    stage.clear();
    settingsDialog = std::make_unique<frmSettings>(SettingsServices{
        base.logon, *executive, base.settings, base.prompt, base.beeper, base.strings, base.ports});
    passwordDialog = std::make_unique<frmPassword>(base.session, base.prompt, base.strings);
}

Console::~Console() = default;

Services Console::MainWindowServices() const
{
    return {m_base.strings,      m_base.prompt, m_base.session,  m_base.logon,
            *fleetData,          *executive,    m_base.settings, m_base.clock,
            m_base.beeper,       *statusTexts,  *profile,        *eventLog,
            *attention,          *alarm,        *sounds,         settingsDialog.get(),
            passwordDialog.get()};
}

void Console::CloseDialogs()
{
    passwordDialog.reset();
    settingsDialog.reset();
    executive->Disconnect();
}
