#pragma once

#include <QJsonValue>
#include <QString>

#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace sim {

// A scenario that cannot be used; what() says where and why, for a person.
class ScenarioError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A value of a JSON document that knows its place there ("fleet[3].ident"). Every member that reads throws
// ScenarioError with that place when the value is not what was asked for.
class JsonNode {
public:
    // The root of a document. Throws, naming the line, when the text is not JSON.
    static JsonNode Parse(const QByteArray& text);

    bool IsObject() const { return m_value.isObject(); }
    bool IsArray() const { return m_value.isArray(); }
    bool IsText() const { return m_value.isString(); }

    // Throws unless the node is an object with no members but these.
    void RequireMembers(std::initializer_list<const char*> known) const;
    std::optional<JsonNode> Find(const char* member) const;
    JsonNode Member(const char* member) const;

    std::vector<JsonNode> Items() const;
    // The members of an object that may have any names, with their names.
    std::vector<std::pair<std::string, JsonNode>> Entries() const;

    int Integer(int lowest, int highest) const;
    double Number(double lowest, double highest) const;
    std::string Text() const; // UTF-8
    // A text, number or boolean as it is written, the text without its quotation marks; empty for all else.
    std::string AsWritten() const;
    // A text as JSON has it.
    static std::string Quoted(const std::string& text);

    // Whole milliseconds of a number of seconds.
    std::int64_t SecondsAsMilliseconds(double highest) const;

    [[noreturn]] void Fail(const std::string& reason) const;

private:
    JsonNode(QJsonValue value, QString path) : m_value(std::move(value)), m_path(std::move(path)) {}

    QJsonValue m_value;
    QString m_path;
};

} // namespace sim
