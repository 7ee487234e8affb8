#pragma once

#include "core/base/Lane.h"

#include <QString>
#include <memory>

class AttentionAlarm;
class AttentionBook;
class DailyBackup;
class EventLog;
class FleetDataSource;
class Map27Control;
class Map27Executive;
class Settings;
class Sounds;
class StatusTexts;
class UserProfile;
class frmPassword;
class frmSettings;
struct Clock;
struct IBeeper;
struct IDbLogon;
struct IDbSession;
struct IPrompt;
struct ISerialPortList;
struct IStringSource;
struct Services;

// What the console stands on: the system, or what a test puts in its place. All must outlive the console.
struct ConsoleBase {
    const IStringSource& strings;
    Settings& settings;
    Clock& clock;
    IPrompt& prompt;
    IBeeper& beeper;
    IDbSession& session;
    IDbLogon& logon;
    const ISerialPortList* ports = nullptr; // null: only the fixed ones are offered
    QString dataFolder;                     // where log records wait while the database is away
    Lane::Kind lanes = Lane::Kind::Callers; // who stores them
};

// The console's own objects, wired as the program has them; the main window is made on top of them.
class Console {
public:
    // `stage` is set to the class of the object being built. Raises what could not be built.
    Console(const ConsoleBase& base, std::unique_ptr<Map27Control> control, QString& stage);
    ~Console();

    // For the main window, still without the windows of other rooms.
    Services MainWindowServices() const;
    // Closes the dialogs and disconnects the radio: the first step of taking everything down.
    void CloseDialogs();

    const std::unique_ptr<StatusTexts> statusTexts;
    const std::unique_ptr<EventLog> eventLog;
    const std::unique_ptr<Sounds> sounds;
    const std::unique_ptr<AttentionBook> attention;
    const std::unique_ptr<AttentionAlarm> alarm;
    const std::unique_ptr<DailyBackup> dailyBackup;
    const std::unique_ptr<UserProfile> profile;
    std::unique_ptr<FleetDataSource> fleetData;
    std::unique_ptr<Map27Executive> executive;
    std::unique_ptr<frmSettings> settingsDialog;
    std::unique_ptr<frmPassword> passwordDialog;

private:
    ConsoleBase m_base;
};
