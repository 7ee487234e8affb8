#include "core/eventlog/RecordLine.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

// Nothing for a number that none of them has.
template <typename Enum> std::optional<Enum> OneOf(const QJsonValue& value, Enum first, Enum last)
{
    const int number = value.toInt(-1);
    if (number < static_cast<int>(first) || number > static_cast<int>(last))
        return {};
    return static_cast<Enum>(number);
}

QJsonObject ToJson(const RegroupChange& change)
{
    return {{"kind", static_cast<int>(change.kind)},
            {"group", change.groupId},
            {"oldGroup", change.oldGroupId},
            {"member", change.memberId},
            {"pos", change.pos},
            {"request", change.request}};
}

std::optional<RegroupChange> RegroupOf(const QJsonObject& object)
{
    using Kind = RegroupChange::Kind;
    const auto kind = OneOf(object["kind"], Kind::Withdrawn, Kind::Dissolved);
    const int pos = object["pos"].toInt(-1);
    if (!kind || pos != static_cast<quint8>(pos))
        return {};
    return RegroupChange{.kind = *kind,
                         .groupId = object["group"].toInt(),
                         .oldGroupId = object["oldGroup"].toInt(),
                         .memberId = object["member"].toInt(),
                         .pos = static_cast<quint8>(pos),
                         .request = object["request"].toString()};
}

QJsonObject ToJson(const AttentionAct& act)
{
    return {{"act", static_cast<int>(act.kind)},
            {"caller", act.entry.caller},
            {"kind", static_cast<int>(act.entry.kind)},
            {"entry", act.entry.id},
            {"what", act.entry.what},
            {"callBack", act.entry.callBack},
            {"messageType", static_cast<int>(act.entry.again)},
            {"message", act.entry.message},
            {"times", act.entry.times},
            {"away", act.away}};
}

std::optional<AttentionAct> AttentionOf(const QJsonObject& object)
{
    using Act = AttentionAct::Kind;
    using Entry = dao::AttentionRecord;
    const auto act = OneOf(object["act"], Act::Heard, Act::Done);
    const auto kind = OneOf(object["kind"], Entry::Kind::Emergency, Entry::Kind::Failed);
    const auto again = OneOf(object["messageType"], Entry::Again::Nothing, Entry::Again::TextInEightBits);
    if (!act || !kind || !again)
        return {};
    return AttentionAct{.kind = *act,
                        .entry = {.caller = object["caller"].toString(),
                                  .kind = *kind,
                                  .id = object["entry"].toString(),
                                  .what = object["what"].toString(),
                                  .callBack = object["callBack"].toString(),
                                  .again = *again,
                                  .message = object["message"].toString(),
                                  .times = object["times"].toInt()},
                        .away = object["away"].toBool()};
}

} // namespace

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
        object.insert("regroup", ToJson(*record.regroup));
    if (record.attention)
        object.insert("attention", ToJson(*record.attention));
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
    if (object.contains("regroup")) {
        record.regroup = RegroupOf(object["regroup"].toObject());
        if (!record.regroup)
            return {};
    }
    if (object.contains("attention")) {
        record.attention = AttentionOf(object["attention"].toObject());
        if (!record.attention)
            return {};
    }
    const bool dated = record.IsEvent() || record.attention;
    if (record.id.isEmpty() || (dated && !record.time.isValid()))
        return {};
    return record;
}
