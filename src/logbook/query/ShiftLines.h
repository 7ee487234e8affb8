#pragma once

#include "logbook/query/ShiftReport.h"

#include <QString>
#include <QStringList>

struct IStringSource;

// A shift report in words: on the screen, on paper and for a terminal alike, and as CSV.
class ShiftLines {
public:
    enum Column { Kind, Caller, What, Since, Times, TakenBy, TakenAt, AnsweredAfter, DoneBy, DoneAt, State };
    static constexpr int Columns = 11;

    explicit ShiftLines(const IStringSource& strings);

    QString Title(const ShiftReport& report) const;
    // What came, how long answers took, what is open; a sentence each.
    QStringList Summary(const ShiftReport& report) const;
    QString Heading(int column) const { return m_headings.value(column); }
    QStringList Headings() const { return m_headings; }
    QString Cell(const ShiftWait& wait, int column) const;
    QStringList Cells(const ShiftWait& wait) const;

    // A table of two kinds of lines, "count" and "wait"; for programs, so in no language.
    static QString Csv(const ShiftReport& report);

private:
    QString Answers(const ShiftReport& report, ShiftReport::Kind kind) const;
    QString KindOf(ShiftReport::Kind kind) const;

    QString m_title;
    QStringList m_records;
    QString m_wayUnknown;
    QString m_emergencyCalls;
    QStringList m_kinds;
    QString m_answered;
    QString m_noneAnswered;
    QString m_open;
    QStringList m_headings;
    QStringList m_states;
};
