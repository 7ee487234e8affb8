#include "logbook/window/LogbookLine.h"

#include "core/texts/StringSource.h"
#include "logbook/query/LogLines.h"
#include "logbook/window/TextIds.h"
#include "radio/base/TextIds.h"

#include <QLocale>

LogbookLine::LogbookLine(const IStringSource& strings)
    : m_ways{{}, strings.LoadString(LogbookText::WayIn), strings.LoadString(LogbookText::WayOut)},
      m_kinds{{},
              strings.LoadString(LogbookText::FirstKind),
              strings.LoadString(LogbookText::FirstKind + 1),
              strings.LoadString(LogbookText::FirstKind + 2)},
      m_emergency(strings.LoadString(LogbookText::EmergencyCall)),
      m_unknown(strings.LoadString(RadioText::UnknownCaller))
{
    for (int column = 0; column < Columns; ++column)
        m_headings.append(strings.LoadString(LogbookText::FirstColumn + column));
}

QString LogbookLine::Cell(const dao::EventRecord& record, const LogFacts& facts, int column) const
{
    switch (column) {
    case Time: {
        const QDateTime local = record.time.toLocalTime();
        return QLocale().toString(local.date(), QLocale::ShortFormat) +
               local.toString(QStringLiteral(" HH:mm:ss"));
    }
    case Way:
        return m_ways.value(facts.DirectionOf(record));
    case Kind:
        return KindOf(record, facts);
    case From:
        return PartyOf(record.from, record.fromNumber);
    case To:
        return PartyOf(record.to, record.toNumber);
    case Text:
        return facts.TextOf(record).simplified();
    case Operator:
        return record.operatorName;
    case Console:
        return record.console;
    default:
        return {};
    }
}

QStringList LogbookLine::Cells(const dao::EventRecord& record, const LogFacts& facts) const
{
    QStringList cells;
    for (int column = 0; column < Columns; ++column)
        cells.append(Cell(record, facts, column));
    return cells;
}

QString LogbookLine::KindOf(const dao::EventRecord& record, const LogFacts& facts) const
{
    return facts.IsEmergency(record) ? m_emergency : m_kinds.value(record.kind, QString::number(record.kind));
}

QString LogbookLine::PartyOf(const QString& name, const QString& number) const
{
    return LogFacts::IsUnknown(name) ? m_unknown : LogLines::Party(name, number);
}
