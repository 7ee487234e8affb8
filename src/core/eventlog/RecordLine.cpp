#include "core/eventlog/RecordLine.h"

#include <QJsonDocument>
#include <QJsonObject>

QByteArray LineOf(const LogRecord& record)
{
    QJsonObject object{{"id", record.id},
                       {"time", record.time.toUTC().toString(Qt::ISODateWithMs)},
                       {"type", record.type},
                       {"desc", record.desc},
                       {"from", record.from},
                       {"to", record.to},
                       {"duty", record.isDuty},
                       {"operator", record.operatorName},
                       {"console", record.console},
                       {"fromNumber", record.fromNumber},
                       {"toNumber", record.toNumber},
                       {"way", static_cast<int>(record.way)}};
    if (record.regroup)
        object.insert("regroup", record.regroup->ToJson());
    if (record.attention)
        object.insert("attention", record.attention->ToJson());
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<LogRecord> ParseLine(const QByteArray& line)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    LogRecord record{
        object["id"].toString(),   QDateTime::fromString(object["time"].toString(), Qt::ISODateWithMs),
        object["type"].toInt(),    object["desc"].toString(),
        object["from"].toString(), object["to"].toString(),
        object["duty"].toBool()};
    record.operatorName = object["operator"].toString();
    record.console = object["console"].toString();
    record.fromNumber = object["fromNumber"].toString();
    record.toNumber = object["toNumber"].toString();
    const int way = object["way"].toInt();
    if (way == static_cast<int>(MessageWay::In) || way == static_cast<int>(MessageWay::Out))
        record.way = static_cast<MessageWay>(way);
    if (object.contains("regroup"))
        record.regroup = RegroupChange::FromJson(object["regroup"].toObject());
    if (object.contains("attention"))
        record.attention = AttentionAct::FromJson(object["attention"].toObject());
    const bool dated = record.IsEvent() || record.attention;
    if (record.id.isEmpty() || (dated && !record.time.isValid()))
        return {};
    return record;
}
