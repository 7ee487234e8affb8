#pragma once

#include "core/eventlog/EventLog.h"
#include "mainwindow/log/LogModel.h"

#include <QDateTime>
#include <QSet>
#include <optional>

class StatusTexts;
struct IStringSource;

// How text messages are shown.
enum class LogDataView {
    Text, // as they are
    Hex   // each character as two hexadecimal digits and a blank, by its Windows-1252 code (3F where it has
          // none)
};

QString FormatLogData(const QString& data, LogDataView view);

// This console's radio, by the two names that a record may give it.
struct OwnRadio {
    QString callsign;
    QString address;

    bool Is(const QString& party) const { return party == callsign || party == address; }
};

// A record of the log as it is read back from the database.
struct StoredEvent {
    QDateTime time;
    int eventType = 0; // as stored; other values than those of EventType have no text of their own
    QString from;
    QString to;
    QString desc;
    QString iconKey; // "status", "text" or "call"

    static QString KeyOf(EventType type); // as iconKey; empty for another type
};

// Makes the lines of the message log: text, picture, party, and a date line before the first line of each
// day. Times are shown in local time. A line of the dummy address names nobody, and nothing can be sent to
// it.
class LogLineFormatter {
public:
    LogLineFormatter(const StatusTexts& statusTexts, const IStringSource& strings);

    // The date line that has to precede a line of this time; nothing within the same day.
    std::optional<LogLine> CheckDayChange(const QDateTime& time);
    // The next line starts with its date.
    void ForgetDay() { m_lastDay = {}; }

    // desc is the display text of a status or call, and the text of a text message; `shown` what the other
    // party is called instead of its name, if not empty.
    LogLine LiveLine(const QDateTime& time, EventType type, const QString& desc, const QString& from,
                     const QString& to, const OwnRadio& own, LogDataView view,
                     const QString& shown = {}) const;
    LogLine StoredLine(const StoredEvent& event, const OwnRadio& own, LogDataView view) const;

private:
    LogLine Line(const QDateTime& time, const QString& desc, const QString& iconKey, const QString& party,
                 const QString& shown, bool emergency) const;
    QString StoredText(const StoredEvent& event, bool in, LogDataView view) const;

    bool IsEmergency(EventType type, const QString& text, bool in) const; // as it is shown

    const StatusTexts& m_statusTexts;
    QSet<QString> m_emergencies; // descriptions of emergency calls
    QString m_unknownCaller;
    QDate m_lastDay; // null: no date line yet
};
