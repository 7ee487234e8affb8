#include "radio/agent/EventRecorder.h"

#include "radio/agent/Views.h"

void EventRecorder::Store(const LogEntry& entry)
{
    m_record =
        m_eventLog.AppendLogRecord(entry.time, entry.type, entry.desc, entry.from, entry.to, entry.way);
}

void EventRecorder::Show(const LogEntry& entry, const QString& text, const QString& party)
{
    if (m_views.log)
        m_views.log->LogShowNewLine(entry.time, entry.type, text, entry.from, entry.to, m_record, party);
}
