#include "map27/Json.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace testing_json {

namespace {

class Parser {
public:
    explicit Parser(std::string text) : m_text(std::move(text)) {}

    Value Document()
    {
        Value value = Any();
        Skip();
        Demand(m_at == m_text.size());
        return value;
    }

private:
    Value Any()
    {
        Skip();
        Demand(m_at < m_text.size());
        Value value;
        if (m_text[m_at] == '{') {
            value.kind = Value::Kind::Object;
            List('{', '}', [&] {
                Skip();
                const std::string name = String();
                Take(':');
                value.members.emplace(name, Any());
            });
        } else if (m_text[m_at] == '[') {
            value.kind = Value::Kind::Array;
            List('[', ']', [&] { value.items.push_back(Any()); });
        } else if (m_text[m_at] == '"') {
            value.kind = Value::Kind::String;
            value.text = String();
        } else {
            while (m_at < m_text.size() &&
                   std::string("+-.0123456789aeflnrstuE").find(m_text[m_at]) != std::string::npos)
                value.text += m_text[m_at++];
            Demand(!value.text.empty());
        }
        return value;
    }

    template <typename Element> void List(char open, char close, Element element)
    {
        Take(open);
        Skip();
        if (m_text.at(m_at) == close) {
            ++m_at;
            return;
        }
        for (;;) {
            element();
            Skip();
            if (m_text.at(m_at) == close)
                break;
            Take(',');
        }
        ++m_at;
    }

    std::string String()
    {
        Take('"');
        std::string text;
        while (m_text.at(m_at) != '"') {
            if (m_text[m_at] == '\\')
                ++m_at;
            text += m_text.at(m_at++);
        }
        ++m_at;
        return text;
    }

    void Take(char expected)
    {
        Skip();
        Demand(m_at < m_text.size() && m_text[m_at] == expected);
        ++m_at;
    }

    void Skip()
    {
        while (m_at < m_text.size() && std::string(" \t\r\n").find(m_text[m_at]) != std::string::npos)
            ++m_at;
    }

    void Demand(bool condition) const
    {
        if (!condition)
            throw std::runtime_error("no JSON at offset " + std::to_string(m_at));
    }

    std::string m_text;
    std::size_t m_at = 0;
};

void FlattenInto(std::map<std::string, std::string>& flat, const std::string& name, const Value& value)
{
    const std::string dotted = name.empty() ? name : name + ".";
    if (value.kind == Value::Kind::Object) {
        for (const auto& [key, member] : value.members)
            FlattenInto(flat, dotted + key, member);
    } else if (value.kind == Value::Kind::Array) {
        for (std::size_t index = 0; index < value.items.size(); ++index)
            FlattenInto(flat, dotted + std::to_string(index), value.items[index]);
    } else {
        flat[name] = value.text;
    }
}

} // namespace

const Value& Value::operator[](const std::string& name) const
{
    return members.at(name);
}

Value ReadFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    return Parser(std::string(std::istreambuf_iterator<char>(file), {})).Document();
}

std::map<std::string, std::string> Flatten(const Value& value)
{
    std::map<std::string, std::string> flat;
    FlattenInto(flat, "", value);
    return flat;
}

} // namespace testing_json
