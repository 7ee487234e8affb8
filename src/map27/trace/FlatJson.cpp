#include "map27/trace/FlatJson.h"

#include "map27/codec/Utf8.h"

#include <charconv>

namespace map27 {

namespace {

constexpr std::string_view Escapes = "\"\\/bfnrt";
constexpr std::string_view Meant = "\"\\/\b\f\n\r\t";

// Reads from front to back; throws FlatJson::Problem.
class Parser {
public:
    explicit Parser(std::string_view line) : m_line(line) {}

    template <typename Take> void TakeObject(Take take)
    {
        Expect('{', "a line of a trace is one JSON object; this one does not begin with {");
        if (!Skip('}')) {
            do {
                std::string name = TakeName();
                Expect(':', "a colon is missing after the name");
                take(std::move(name), TakeValue());
            } while (Skip(','));
            Expect('}', "a comma or } is missing here");
        }
        SkipBlanks();
        if (m_at < m_line.size())
            Fail("there is something after the object's end");
    }

private:
    [[noreturn]] void Fail(const char* reason) const { throw FlatJson::Problem{m_at + 1, reason}; }

    void SkipBlanks()
    {
        while (m_at < m_line.size() && (m_line[m_at] == ' ' || m_line[m_at] == '\t' || m_line[m_at] == '\r'))
            ++m_at;
    }

    bool Skip(char c)
    {
        SkipBlanks();
        if (m_at == m_line.size() || m_line[m_at] != c)
            return false;
        ++m_at;
        return true;
    }

    void Expect(char c, const char* reason)
    {
        if (!Skip(c))
            Fail(reason);
    }

    std::string TakeName()
    {
        Expect('"', "a name in quotes is missing here");
        return TakeString();
    }

    FlatJson::Value TakeValue()
    {
        if (Skip('"')) {
            const std::size_t column = m_at + 1;
            return {TakeString(), column};
        }
        const std::size_t begin = m_at;
        std::int64_t number = 0;
        const auto [end, error] =
            std::from_chars(m_line.data() + begin, m_line.data() + m_line.size(), number);
        if (error == std::errc::result_out_of_range)
            Fail("the number is too large");
        if (error != std::errc{})
            Fail("a text in quotes or a whole number is missing here");
        m_at = static_cast<std::size_t>(end - m_line.data());
        return {number, begin + 1};
    }

    // Behind the opening quote.
    std::string TakeString()
    {
        std::string text;
        for (;;) {
            if (m_at == m_line.size())
                Fail("the line ends within a text; was it cut off?");
            const char c = m_line[m_at];
            if (static_cast<unsigned char>(c) < 0x20)
                Fail("a control character within a text");
            std::string_view rest = m_line.substr(m_at);
            if (!TakeUtf8(rest))
                Fail("not UTF-8");
            const std::size_t end = m_line.size() - rest.size();
            const std::string_view character = m_line.substr(m_at, end - m_at);
            m_at = end;
            if (c == '"')
                return text;
            if (c == '\\')
                AppendUtf8(text, TakeEscape());
            else
                text += character;
        }
    }

    char32_t TakeEscape()
    {
        const char c = m_at < m_line.size() ? m_line[m_at] : ' ';
        if (const std::size_t known = Escapes.find(c); known != std::string_view::npos) {
            ++m_at;
            return static_cast<unsigned char>(Meant[known]);
        }
        constexpr std::size_t digits = 4;
        unsigned value = 0;
        const char* begin = m_line.data() + m_at + 1;
        if (c != 'u' || m_line.size() - m_at <= digits ||
            std::from_chars(begin, begin + digits, value, 16).ptr != begin + digits)
            Fail("not an escape of JSON");
        m_at += digits + 1;
        // A trace needs none of the pairs that stand for characters above FFFFh.
        const bool half = value >= 0xD800 && value < 0xE000;
        return half ? ReplacementCharacter : static_cast<char32_t>(value);
    }

    std::string_view m_line;
    std::size_t m_at = 0;
};

} // namespace

std::variant<FlatJson, FlatJson::Problem> FlatJson::Read(std::string_view line)
{
    FlatJson object;
    try {
        Parser(line).TakeObject([&object](std::string name, Value value) {
            object.m_members.push_back({std::move(name), std::move(value)});
        });
    } catch (const Problem& problem) {
        return problem;
    }
    return object;
}

const FlatJson::Value* FlatJson::Find(std::string_view name) const
{
    for (const Member& member : m_members)
        if (member.name == name)
            return &member.value;
    return nullptr;
}

std::string JsonQuoted(std::string_view text)
{
    std::string quoted = "\"";
    while (!text.empty()) {
        const char c = text.front();
        const std::size_t known = Meant.find(c);
        if (static_cast<unsigned char>(c) >= 0x80) {
            if (const auto character = TakeUtf8(text)) {
                AppendUtf8(quoted, *character);
                continue;
            }
            AppendUtf8(quoted, ReplacementCharacter);
        } else if (known != std::string_view::npos && c != '/') {
            quoted += '\\';
            quoted += Escapes[known];
        } else if (static_cast<unsigned char>(c) < 0x20) {
            quoted += "\\u00" + std::string{"01"[c >> 4]} + "0123456789ABCDEF"[c & 0x0F];
        } else {
            quoted += c;
        }
        text.remove_prefix(1);
    }
    return quoted + '"';
}

} // namespace map27
