#pragma once

#include <QDateTime>
#include <QString>

struct IDbSession;
struct IStringSource;

// Kinds of log record.
enum class EventType { Status = 1, Text = 2, Call = 3 };

// Writes records of the table event. A description longer than the field is cut to its defined size.
class EventLog {
public:
    EventLog(IDbSession& session, const IStringSource& strings);

    // Raises Error with a description when the record could not be stored; the record's content is then in
    // the program's log file, so that nothing is lost silently.
    void AppendLogRecord(const QDateTime& time, EventType type, const QString& desc, const QString& from,
                         const QString& to);

private:
    IDbSession& m_session;
    const IStringSource& m_strings;
};
