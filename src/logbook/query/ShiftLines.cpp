#include "logbook/query/ShiftLines.h"

#include "core/eventlog/EventLog.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "logbook/query/LogLines.h"
#include "logbook/query/ShiftTextIds.h"

#include <QLocale>

namespace {

constexpr EventType RecordKinds[] = {EventType::Status, EventType::Text, EventType::Call};

QStringList Texts(const IStringSource& strings, int first, int count)
{
    QStringList texts;
    for (int i = 0; i < count; ++i)
        texts.append(strings.LoadString(first + i));
    return texts;
}

QString Number(qlonglong number)
{
    return QLocale().toString(number);
}

QString TimeOf(const QDateTime& time)
{
    const QDateTime local = time.toLocalTime();
    return time.isValid() ? QLocale().toString(local.date(), QLocale::ShortFormat) +
                                local.toString(QStringLiteral(" HH:mm:ss"))
                          : QString();
}

// Hours, minutes and seconds; -1 is none.
QString Duration(qint64 seconds)
{
    constexpr qint64 Minute = 60;
    constexpr qint64 Hour = 60 * Minute;
    return seconds < 0 ? QString()
                       : QStringLiteral("%1:%2:%3")
                             .arg(seconds / Hour)
                             .arg(seconds / Minute % 60, 2, 10, QLatin1Char('0'))
                             .arg(seconds % Minute, 2, 10, QLatin1Char('0'));
}

QString CsvKind(ShiftReport::Kind kind)
{
    switch (kind) {
    case ShiftReport::Kind::Emergency:
        return QStringLiteral("emergency");
    case ShiftReport::Kind::MissedCall:
        return QStringLiteral("missed_call");
    case ShiftReport::Kind::CallBack:
        return QStringLiteral("call_back");
    case ShiftReport::Kind::Failed:
        return QStringLiteral("failed_message");
    }
    return {};
}

QString CsvState(ShiftWait::State state)
{
    switch (state) {
    case ShiftWait::State::Open:
        return QStringLiteral("open");
    case ShiftWait::State::Taken:
        return QStringLiteral("taken");
    case ShiftWait::State::Done:
        return QStringLiteral("done");
    case ShiftWait::State::HeardAgain:
        return QStringLiteral("heard_again");
    }
    return {};
}

QString CsvCount(const QString& kind, qlonglong count)
{
    QStringList fields{QStringLiteral("count"), kind, QString::number(count)};
    fields.resize(14);
    return LogLines::CsvOf(fields);
}

QString CsvWait(const ShiftWait& wait)
{
    return LogLines::CsvOf({QStringLiteral("wait"), CsvKind(wait.kind), QString::number(wait.times),
                            wait.caller, wait.what, LogLines::CsvTime(wait.since), wait.takenBy, wait.takenOn,
                            LogLines::CsvTime(wait.takenAt),
                            wait.Waited() < 0 ? QString() : QString::number(wait.Waited()), wait.doneBy,
                            wait.doneOn, LogLines::CsvTime(wait.endedAt), CsvState(wait.state)});
}

} // namespace

ShiftLines::ShiftLines(const IStringSource& strings)
    : m_title(strings.LoadString(ShiftText::Title)),
      m_records(Texts(strings, ShiftText::FirstRecords, 3)),
      m_wayUnknown(strings.LoadString(ShiftText::WayUnknown)),
      m_emergencyCalls(strings.LoadString(ShiftText::EmergencyCalls)),
      m_kinds(Texts(strings, ShiftText::FirstKind, 4)),
      m_answered(strings.LoadString(ShiftText::Answered)),
      m_noneAnswered(strings.LoadString(ShiftText::NoneAnswered)),
      m_open(strings.LoadString(ShiftText::Open)),
      m_headings(Texts(strings, ShiftText::FirstColumn, Columns)),
      m_states(Texts(strings, ShiftText::FirstState, 4))
{
}

QString ShiftLines::Title(const ShiftReport& report) const
{
    return FormatMessage(m_title, {TimeOf(report.Since()), TimeOf(report.Until())});
}

QStringList ShiftLines::Summary(const ShiftReport& report) const
{
    QStringList lines;
    for (const EventType type : RecordKinds) {
        const int kind = static_cast<int>(type);
        const ShiftReport::Ways ways = report.RecordsOf(kind);
        QString line = FormatMessage(m_records.value(kind - 1), {Number(ways[1]), Number(ways[2])});
        if (ways[0] > 0)
            line += FormatMessage(m_wayUnknown, {Number(ways[0])});
        lines.append(line);
    }
    lines.append(FormatMessage(m_emergencyCalls, {Number(report.EmergencyCalls())}));
    for (const ShiftReport::Kind kind : ShiftReport::Kinds)
        lines.append(Answers(report, kind));
    lines.append(FormatMessage(m_open, {Number(report.OpenBefore()), Number(report.OpenAfter())}));
    return lines;
}

QString ShiftLines::Answers(const ShiftReport& report, ShiftReport::Kind kind) const
{
    const ShiftReport::Answers answers = report.AnswersOf(kind);
    if (answers.answered == 0)
        return FormatMessage(m_noneAnswered, {KindOf(kind), Number(answers.waits)});
    return FormatMessage(m_answered, {KindOf(kind), Number(answers.waits), Number(answers.answered),
                                      Duration(answers.median), Duration(answers.longest)});
}

QString ShiftLines::KindOf(ShiftReport::Kind kind) const
{
    return m_kinds.value(static_cast<int>(kind) - 1);
}

QString ShiftLines::Cell(const ShiftWait& wait, int column) const
{
    switch (column) {
    case Kind:
        return KindOf(wait.kind);
    case Caller:
        return wait.caller;
    case What:
        return wait.what.simplified();
    case Since:
        return TimeOf(wait.since);
    case Times:
        return Number(wait.times);
    case TakenBy:
        return LogLines::Party(wait.takenBy, wait.takenOn);
    case TakenAt:
        return TimeOf(wait.takenAt);
    case AnsweredAfter:
        return Duration(wait.Waited());
    case DoneBy:
        return LogLines::Party(wait.doneBy, wait.doneOn);
    case DoneAt:
        return wait.state == ShiftWait::State::Done ? TimeOf(wait.endedAt) : QString();
    case State:
        return m_states.value(static_cast<int>(wait.state));
    default:
        return {};
    }
}

QStringList ShiftLines::Cells(const ShiftWait& wait) const
{
    QStringList cells;
    for (int column = 0; column < Columns; ++column)
        cells.append(Cell(wait, column));
    return cells;
}

QString ShiftLines::Csv(const ShiftReport& report)
{
    QString csv =
        LogLines::CsvOf({"line", "kind", "count", "caller", "what", "since", "taken_by", "taken_on",
                         "taken_at", "seconds_to_answer", "done_by", "done_on", "ended_at", "state"});
    const QStringList kinds{"status", "text", "call"};
    const QStringList ways{"unknown", "in", "out"};
    for (const EventType type : RecordKinds) {
        const int kind = static_cast<int>(type);
        const ShiftReport::Ways counts = report.RecordsOf(kind);
        for (int way = 0; way < ways.size(); ++way)
            csv += CsvCount(kinds[kind - 1] + u'_' + ways[way], counts[static_cast<std::size_t>(way)]);
    }
    csv += CsvCount(QStringLiteral("emergency_calls_in_log"), report.EmergencyCalls());
    csv += CsvCount(QStringLiteral("open_before"), report.OpenBefore());
    csv += CsvCount(QStringLiteral("open_after"), report.OpenAfter());
    for (const ShiftWait& wait : report.Waits())
        csv += CsvWait(wait);
    return csv;
}
