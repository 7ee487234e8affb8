#pragma once

#include "core/eventlog/EventLog.h"

class RadioBoxes;
struct IStringSource;
struct RadioViews;

// One message or call in the log.
struct LogEntry {
    QDateTime time;
    EventType type;
    QString desc; // a status code, a text, or the description of a call
    QString from; // callsigns
    QString to;
};

// Writes what happened on the air into the database and onto the screen.
class EventRecorder {
public:
    // All must outlive it.
    EventRecorder(EventLog& eventLog, const RadioViews& views, RadioBoxes& boxes,
                  const IStringSource& strings);

    // Into the database. Of several failures in a row only the first opens a box.
    void Store(const LogEntry& entry);
    // Onto the screen, where the text takes the place of the description.
    void Show(const LogEntry& entry, const QString& text);

private:
    EventLog& m_eventLog;
    const RadioViews& m_views;
    RadioBoxes& m_boxes;
    const IStringSource& m_strings;
    bool m_failing = false;
};
