#include "radio/agent/EventRecorder.h"

#include "core/texts/Errors.h"
#include "radio/agent/RadioBoxes.h"
#include "radio/agent/Views.h"

EventRecorder::EventRecorder(EventLog& eventLog, const RadioViews& views, RadioBoxes& boxes,
                             const IStringSource& strings)
    : m_eventLog(eventLog),
      m_views(views),
      m_boxes(boxes),
      m_strings(strings)
{
}

void EventRecorder::Store(const LogEntry& entry)
{
    try {
        m_eventLog.AppendLogRecord(entry.time, entry.type, entry.desc, entry.from, entry.to);
        m_failing = false;
    } catch (const std::exception& failure) {
        if (!m_failing)
            m_boxes.ShowWarning(DescribeError(failure, m_strings));
        m_failing = true;
    }
}

void EventRecorder::Show(const LogEntry& entry, const QString& text)
{
    if (m_views.log)
        m_views.log->LogShowNewLine(entry.time, entry.type, text, entry.from, entry.to);
}
