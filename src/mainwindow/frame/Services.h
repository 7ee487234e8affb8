#pragma once

class AttentionAlarm;
class AttentionBook;
class EventLog;
class FleetDataSource;
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
struct INumberingView;
struct IPrompt;
struct IStringSource;
struct IWindows;

// The process-wide objects. The application builds and owns them; all of them outlive the main window's
// Unload.
struct Services {
    const IStringSource& strings;
    IPrompt& prompt;
    IDbSession& session;
    IDbLogon& logon;
    FleetDataSource& fleetData;
    Map27Executive& executive;
    Settings& settings;
    Clock& clock;
    IBeeper& beeper;
    StatusTexts& statusTexts;
    UserProfile& profile;
    EventLog& eventLog;
    AttentionBook& attention;
    AttentionAlarm& alarm;
    Sounds& sounds;
    // Loaded at start and kept hidden between uses; null where there is none (tests).
    frmSettings* settingsDialog = nullptr;
    frmPassword* passwordDialog = nullptr;
    // Windows of other rooms; null where there are none (tests).
    IWindows* windows = nullptr;
    // Where the radio's report about its numbering is shown; null where it is not (tests).
    INumberingView* numberingView = nullptr;
};
