#pragma once

#include "dao/tables/EventIndex.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

struct IStringSource;

// What is needed to read the log's records: a status stands there as its code, an emergency only as its
// words, and which way a record of an older program went follows from who we are. A value: it may be used on
// any thread.
class LogFacts {
public:
    // `own`: the names of our own radio, callsign and number; may be empty.
    LogFacts(const IStringSource& strings, const QStringList& own);

    // The texts of the statuses as they are now. Raises dao::Error.
    void ReadStatuses(dao::Database& database);

    // 1 in, 2 out, 0 when it cannot be known.
    int DirectionOf(const dao::EventRecord& record) const;
    // The text of a status, of a text message or of a call. A status of which nobody knows the direction has
    // the text of one that came in.
    QString TextOf(const dao::EventRecord& record) const;
    // A call, or a status that came in and is marked as one now, whenever that was.
    bool IsEmergency(const dao::EventRecord& record) const;
    // Whether one party of it is nobody that is known.
    static bool IsUnknown(const QString& party);

    const QSet<QString>& EmergencyCalls() const { return m_emergencies; }
    // The codes of the statuses whose sender needs help, as they are marked now.
    const QSet<int>& EmergencyStatuses() const { return m_emergencyStatuses; }
    // The codes of statuses with a word that begins so.
    QStringList StatusesWith(const QString& beginning) const;
    // The words of a status's texts, whichever way it goes.
    QStringList WordsOfStatus(int code) const { return m_statusWords.value(code); }

private:
    void Put(int code, const QString& in, const QString& out);

    QStringList m_own;
    QSet<QString> m_emergencies;
    QSet<int> m_emergencyStatuses;
    QHash<int, QString> m_in;
    QHash<int, QString> m_out;
    QHash<int, QStringList> m_statusWords;
};
