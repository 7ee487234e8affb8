#pragma once

class EventLog;
class Map27Executive;
class Settings;
struct Clock;
struct IDbSession;
struct IPrompt;
struct IStringSource;

// What the talkgroups work with; all outlive them.
struct TalkgroupServices {
    const IStringSource& strings;
    IPrompt& prompt;
    Map27Executive& executive;
    Settings& settings;
    IDbSession& session;
    EventLog& eventLog;
    Clock& clock;
};
