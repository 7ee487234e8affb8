#pragma once

#include "core/eventlog/EventLog.h"

struct RadioViews;

// One message or call in the log.
struct LogEntry {
    QDateTime time;
    EventType type;
    QString desc; // a status code, a text, or the description of a call
    QString from; // callsigns
    QString to;
    MessageWay way;
};

// Writes what happened on the air into the database and onto the screen.
class EventRecorder {
public:
    // Both must outlive it.
    EventRecorder(EventLog& eventLog, const RadioViews& views) : m_eventLog(eventLog), m_views(views) {}

    // Into the database, sooner or later.
    void Store(const LogEntry& entry);
    // What was stored last, onto the screen, where the text takes the place of the description, and `party`,
    // unless empty, of the other party's name.
    void Show(const LogEntry& entry, const QString& text, const QString& party = {});

private:
    EventLog& m_eventLog;
    const RadioViews& m_views;
    QString m_record;
};
