#pragma once

class AttentionBook;
class EventLog;
class FleetDataSource;
class Settings;
class Sounds;
class StatusTexts;
struct Clock;
struct IDbSession;
struct IPrompt;
struct IStringSource;

// What the radio link works with; all must outlive the facade.
struct RadioServices {
    const IStringSource& strings;
    IPrompt& prompt;
    Settings& settings;
    IDbSession& session;
    FleetDataSource& fleetData;
    StatusTexts& statusTexts;
    EventLog& eventLog;
    Clock& clock;
    AttentionBook& attention;
    Sounds& sounds;
};
