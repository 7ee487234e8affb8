#pragma once

class EventLog;
class FleetDataSource;
class Settings;
class StatusTexts;
struct Clock;
struct IBeeper;
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
    IBeeper& beeper;
};
