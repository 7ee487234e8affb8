#include "map27/Json.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <stdexcept>

namespace testing_json {

namespace {

Value From(const QJsonValue& json)
{
    Value value;
    if (json.isObject()) {
        value.kind = Value::Kind::Object;
        const QJsonObject object = json.toObject();
        for (auto member = object.begin(); member != object.end(); ++member)
            value.members[member.key().toStdString()] = From(member.value());
    } else if (json.isArray()) {
        value.kind = Value::Kind::Array;
        for (const QJsonValue& item : json.toArray())
            value.items.push_back(From(item));
    } else if (json.isString()) {
        value.kind = Value::Kind::String;
        value.text = json.toString().toStdString();
    } else if (json.isBool()) {
        value.text = json.toBool() ? "true" : "false";
    } else {
        value.text = json.isNull() ? "null" : json.toVariant().toString().toStdString();
    }
    return value;
}

void Flatten(const Value& value, const std::string& path, std::map<std::string, std::string>& flat)
{
    const std::string before = path.empty() ? "" : path + '.';
    if (value.kind == Value::Kind::Object) {
        for (const auto& [name, member] : value.members)
            Flatten(member, before + name, flat);
    } else if (value.kind == Value::Kind::Array) {
        for (std::size_t index = 0; index < value.items.size(); ++index)
            Flatten(value.items[index], before + std::to_string(index), flat);
    } else {
        flat[path] = value.text;
    }
}

} // namespace

const Value& Value::operator[](const std::string& name) const
{
    return members.at(name);
}

Value ReadFile(const std::string& path)
{
    QFile file(QString::fromStdString(path));
    QJsonParseError error{};
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(path + " cannot be read");
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError)
        throw std::runtime_error(path + ": " + error.errorString().toStdString());
    return From(document.object());
}

std::map<std::string, std::string> Flatten(const Value& value)
{
    std::map<std::string, std::string> flat;
    Flatten(value, {}, flat);
    return flat;
}

} // namespace testing_json
