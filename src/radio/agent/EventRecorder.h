#pragma once

#include "core/eventlog/EventLog.h"

class RadioBoxes;
struct IStringSource;
struct RadioViews;

// One message or call of the log.
struct LogEntry {
    QDateTime time;
    EventType type;
    QString desc; // of a status its code, or the call's description
    QString from; // callsigns
    QString to;
};

// What happened on the air, into the database and onto the screen.
class EventRecorder {
public:
    // All must outlive it.
    EventRecorder(EventLog& eventLog, const RadioViews& views, RadioBoxes& boxes,
                  const IStringSource& strings);

    // Into the database. A failure is told in a box, the first of several in a row only.
    void Store(const LogEntry& entry);
    // Onto the screen, with the text that is shown there.
    void Show(const LogEntry& entry, const QString& text);

private:
    EventLog& m_eventLog;
    const RadioViews& m_views;
    RadioBoxes& m_boxes;
    const IStringSource& m_strings;
    bool m_failing = false;
};
