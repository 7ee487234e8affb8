#pragma once

#include "logbook/query/LogFacts.h"

#include <QString>

struct IStringSource;

// How a record is shown to people: on the screen and on paper alike.
class LogbookLine {
public:
    enum Column { Time, Way, Kind, From, To, Text, Operator, Console };
    static constexpr int Columns = 8;

    explicit LogbookLine(const IStringSource& strings);

    QString Heading(int column) const { return m_headings.value(column); }
    QStringList Headings() const { return m_headings; }
    QString Cell(const dao::EventRecord& record, const LogFacts& facts, int column) const;
    QStringList Cells(const dao::EventRecord& record, const LogFacts& facts) const;

private:
    QString KindOf(const dao::EventRecord& record, const LogFacts& facts) const;
    QString PartyOf(const QString& name, const QString& number) const;

    QStringList m_headings;
    QStringList m_ways;
    QStringList m_kinds;
    QString m_emergency;
    QString m_unknown;
};
