#include "simulator/script/JsonNode.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

std::string Plain(double number)
{
    return QString::number(number, 'g', 12).toStdString();
}

const char* KindOf(const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return "true or false";
    case QJsonValue::Double:
        return "a number";
    case QJsonValue::String:
        return "a text";
    case QJsonValue::Array:
        return "a list";
    case QJsonValue::Object:
        return "an object";
    default:
        return "null";
    }
}

std::string NotA(const char* wanted, const QJsonValue& value)
{
    return std::string("must be ") + wanted + ", not " + KindOf(value);
}

} // namespace

JsonNode JsonNode::Parse(const QByteArray& text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError) {
        const auto end = text.begin() + std::clamp<qsizetype>(error.offset, 0, text.size());
        const auto line = 1 + std::count(text.begin(), end, '\n');
        throw ScenarioError("line " + std::to_string(line) +
                            ": not valid JSON: " + error.errorString().toStdString());
    }
    const QJsonValue root =
        document.isObject() ? QJsonValue(document.object()) : QJsonValue(document.array());
    return {root, {}};
}

void JsonNode::RequireMembers(std::initializer_list<const char*> known) const
{
    if (!IsObject())
        Fail(NotA("an object", m_value));
    const QJsonObject object = m_value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        const bool isKnown =
            std::ranges::any_of(known, [&](const char* name) { return member.key() == QLatin1String(name); });
        if (isKnown)
            continue;
        std::string names;
        for (const char* name : known)
            names += (names.empty() ? "" : ", ") + std::string(name);
        Fail("unknown field \"" + member.key().toStdString() + "\"; known are " + names);
    }
}

std::optional<JsonNode> JsonNode::Find(const char* member) const
{
    const QString name = QLatin1String(member);
    const QJsonObject object = m_value.toObject();
    if (!object.contains(name))
        return std::nullopt;
    return JsonNode{object.value(name), m_path.isEmpty() ? name : m_path + QLatin1Char('.') + name};
}

JsonNode JsonNode::Member(const char* member) const
{
    auto found = Find(member);
    if (!found)
        Fail("field \"" + std::string(member) + "\" is missing");
    return *found;
}

std::vector<JsonNode> JsonNode::Items() const
{
    if (!IsArray())
        Fail(NotA("a list", m_value));
    std::vector<JsonNode> items;
    const QJsonArray array = m_value.toArray();
    for (qsizetype i = 0; i < array.size(); ++i)
        items.push_back({array.at(i), m_path + QStringLiteral("[%1]").arg(i)});
    return items;
}

std::vector<std::pair<std::string, JsonNode>> JsonNode::Entries() const
{
    if (!IsObject())
        Fail(NotA("an object", m_value));
    std::vector<std::pair<std::string, JsonNode>> entries;
    const QJsonObject object = m_value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member)
        entries.emplace_back(member.key().toStdString(),
                             JsonNode{member.value(), m_path + QLatin1Char('.') + member.key()});
    return entries;
}

int JsonNode::Integer(int lowest, int highest) const
{
    const double number = Number(lowest, highest);
    if (number != std::floor(number))
        Fail("must be a whole number, not " + Plain(number));
    return static_cast<int>(number);
}

double JsonNode::Number(double lowest, double highest) const
{
    if (!m_value.isDouble())
        Fail(NotA("a number", m_value));
    const double number = m_value.toDouble();
    if (number < lowest || number > highest)
        Fail("must be " + Plain(lowest) + " to " + Plain(highest) + ", not " + Plain(number));
    return number;
}

std::string JsonNode::Text() const
{
    if (!IsText())
        Fail(NotA("a text", m_value));
    return m_value.toString().toStdString();
}

std::string JsonNode::AsWritten() const
{
    return m_value.toVariant().toString().toStdString();
}

std::string JsonNode::Quoted(const std::string& text)
{
    const QByteArray list =
        QJsonDocument(QJsonArray{QString::fromStdString(text)}).toJson(QJsonDocument::Compact);
    return list.mid(1, list.size() - 2).toStdString();
}

std::int64_t JsonNode::SecondsAsMilliseconds(double highest) const
{
    return std::llround(Number(0, highest) * 1000);
}

void JsonNode::Fail(const std::string& reason) const
{
    throw ScenarioError((m_path.isEmpty() ? "top level" : m_path.toStdString()) + ": " + reason);
}

} // namespace sim
