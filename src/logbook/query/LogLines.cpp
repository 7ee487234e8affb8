#include "logbook/query/LogLines.h"

#include "core/eventlog/EventLog.h"
#include "core/texts/CsvLine.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

QString WithOffset(const QDateTime& time)
{
    return time.toOffsetFromUtc(time.toLocalTime().offsetFromUtc()).toString(Qt::ISODateWithMs);
}

QString KindOf(const dao::EventRecord& record)
{
    switch (static_cast<EventType>(record.kind)) {
    case EventType::Status:
        return QStringLiteral("status");
    case EventType::Text:
        return QStringLiteral("text");
    case EventType::Call:
        return QStringLiteral("call");
    }
    return QString::number(record.kind);
}

QString DirectionOf(const dao::EventRecord& record, const LogFacts& facts)
{
    switch (static_cast<MessageWay>(facts.DirectionOf(record))) {
    case MessageWay::In:
        return QStringLiteral("in");
    case MessageWay::Out:
        return QStringLiteral("out");
    case MessageWay::Unknown:
        break;
    }
    return {};
}

// What a spreadsheet would calculate.
QString Harmless(const QString& field)
{
    static const QString signs = QStringLiteral("=+-@\t\r");
    return !field.isEmpty() && signs.contains(field.front()) ? u'\'' + field : field;
}

QString NumberOrNothing(qlonglong number)
{
    return number == 0 ? QString() : QString::number(number);
}

} // namespace

QString LogLines::Printable(const QString& text)
{
    QString printable;
    for (const QChar character : text)
        if (character.category() == QChar::Other_Control || character.category() == QChar::Other_Format)
            printable += QStringLiteral("\\x%1").arg(character.unicode(), 2, 16, QLatin1Char('0'));
        else
            printable += character;
    return printable;
}

QString LogLines::Party(const QString& name, const QString& number)
{
    return number.isEmpty() || number == name ? name : QStringLiteral("%1 (%2)").arg(name, number);
}

QString LogLines::Text(const dao::EventRecord& record, const LogFacts& facts)
{
    QStringList line{record.time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")),
                     DirectionOf(record, facts).leftJustified(3), KindOf(record).leftJustified(6),
                     Party(record.from, record.fromNumber) + QLatin1String(" > ") +
                         Party(record.to, record.toNumber),
                     facts.TextOf(record)};
    if (facts.IsEmergency(record))
        line.insert(1, QStringLiteral("EMERGENCY"));
    if (!record.operatorName.isEmpty())
        line.append(u'[' + record.operatorName + u']');
    return Printable(line.join(QLatin1String("  ")));
}

QString LogLines::CsvHeader()
{
    return CsvLine({"record", "time", "direction", "kind", "emergency", "from", "from_number", "to",
                    "to_number", "text", "operator", "console", "console_number", "record_id"});
}

QString LogLines::Csv(const dao::EventRecord& record, const LogFacts& facts)
{
    return CsvOf({QString::number(record.id), WithOffset(record.time), DirectionOf(record, facts),
                  KindOf(record), facts.IsEmergency(record) ? "yes" : "no", record.from, record.fromNumber,
                  record.to, record.toNumber, facts.TextOf(record), record.operatorName, record.console,
                  NumberOrNothing(record.consoleNumber), record.recordId});
}

QString LogLines::CsvOf(QStringList fields)
{
    for (QString& field : fields)
        field = Harmless(field);
    return CsvLine(fields);
}

QString LogLines::CsvTime(const QDateTime& time)
{
    return time.isValid() ? WithOffset(time) : QString();
}

QString LogLines::Json(const dao::EventRecord& record, const LogFacts& facts)
{
    QJsonObject object{{"record", record.id},         {"time", WithOffset(record.time)},
                       {"kind", KindOf(record)},      {"emergency", facts.IsEmergency(record)},
                       {"from", record.from},         {"to", record.to},
                       {"text", facts.TextOf(record)}};
    const auto addKnown = [&](const char* name, const QString& value) {
        if (!value.isEmpty())
            object.insert(QLatin1String(name), value);
    };
    addKnown("direction", DirectionOf(record, facts));
    addKnown("from_number", record.fromNumber);
    addKnown("to_number", record.toNumber);
    if (record.kind == static_cast<int>(EventType::Status))
        addKnown("status", record.desc);
    addKnown("operator", record.operatorName);
    addKnown("console", record.console);
    addKnown("record_id", record.recordId);
    if (record.consoleNumber != 0)
        object.insert(QLatin1String("console_number"), record.consoleNumber);
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}
