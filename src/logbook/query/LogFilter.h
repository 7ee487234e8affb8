#pragma once

#include "logbook/query/LogFacts.h"

#include <QDateTime>
#include <QSet>
#include <QString>
#include <QStringList>

// Which records of the log are wanted. What is left empty does not matter.
struct LogFilter {
    QString
        party; // how a callsign or number of either party begins; with "*" or "?" what one of them has in it
    QSet<int> kinds;   // EventType
    int direction = 0; // MessageWay
    QDateTime since;
    QDateTime until; // exclusive
    QString text;    // words, each of which has to begin a word of the text or of a party
    bool emergency = false;

    bool operator==(const LogFilter&) const = default;
    bool IsEmpty() const { return *this == LogFilter(); }
};

// A filter made ready for many records.
class LogMatch {
public:
    // The facts outlive it.
    LogMatch(const LogFilter& filter, const LogFacts& facts);

    bool Matches(const dao::EventRecord& record) const;
    // Which blocks of the log's index can have such a record.
    dao::EventIndex::Wanted Wanted() const;

private:
    bool MatchesParty(const dao::EventRecord& record) const;
    bool MatchesText(const dao::EventRecord& record) const;
    QString IndexWords() const;

    const LogFilter m_filter;
    const LogFacts& m_facts;
    QStringList m_words;
    QString m_party; // folded
    bool m_isPattern;
};
