#include "map27/trace/TraceEntry.h"

#include "map27/link/Framing.h"
#include "map27/trace/FlatJson.h"

namespace map27 {

namespace {

constexpr std::string_view ToRadioWord = "D>R";
constexpr std::string_view FromRadioWord = "R>D";
// With every octet doubled, and some noise.
constexpr std::size_t MostOctets = 4 * FrameDecoder::LongestBody;

std::optional<unsigned> HexDigit(char c)
{
    static constexpr std::string_view Digits = "0123456789ABCDEF";
    const char upper = c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
    const std::size_t value = Digits.find(upper);
    return value == std::string_view::npos ? std::nullopt : std::optional(static_cast<unsigned>(value));
}

// Throws TraceProblem.
class EntryReader {
public:
    explicit EntryReader(const FlatJson& object) : m_object(object) {}

    TraceEntry Read()
    {
        TraceEntry entry;
        entry.at = TimePoint(Milliseconds(NumberOf("ms")));
        if (const FlatJson::Value* frame = m_object.Find("frame")) {
            ReadOctets(entry, *frame, TraceEntry::Kind::Frame);
            entry.fault = OptionalText("fault");
        } else if (const FlatJson::Value* noise = m_object.Find("noise")) {
            ReadOctets(entry, *noise, TraceEntry::Kind::Noise);
        } else if (m_object.Find("command") != nullptr) {
            entry.kind = TraceEntry::Kind::Command;
            entry.command = TextOf("command");
            entry.answer = OptionalText("answer");
        } else if (m_object.Find("event") != nullptr) {
            ReadEvent(entry);
        } else {
            throw TraceProblem{1, "none of \"frame\", \"noise\", \"event\" and \"command\" is there"};
        }
        return entry;
    }

private:
    void ReadEvent(TraceEntry& entry) const
    {
        const std::string event = TextOf("event");
        if (event == "opened") {
            entry.kind = TraceEntry::Kind::Opened;
            entry.time = OptionalText("time");
            entry.port = OptionalText("port");
            entry.number = m_object.Find("speed") != nullptr ? NumberOf("speed") : 0;
        } else if (event == "closed") {
            entry.kind = TraceEntry::Kind::Closed;
        } else if (event == "time") {
            entry.kind = TraceEntry::Kind::Time;
            entry.time = TextOf("time");
        } else if (event == "lost") {
            entry.kind = TraceEntry::Kind::Lost;
            entry.number = NumberOf("count");
        } else if (event == "continued") {
            ReadContinued(entry);
        } else if (event == "said") {
            entry.kind = TraceEntry::Kind::Said;
            entry.direction = Direction::FromRadio;
            const std::string message = TextOf("message");
            TakeHex(message, m_object.Find("message")->column, entry.octets);
        } else {
            throw TraceProblem{m_object.Find("event")->column,
                               '"' + event + "\" is none of opened, continued, said, closed, time and lost"};
        }
    }

    void ReadContinued(TraceEntry& entry) const
    {
        entry.kind = TraceEntry::Kind::Continued;
        entry.port = OptionalText("port");
        entry.number = m_object.Find("speed") != nullptr ? NumberOf("speed") : 0;
        if (m_object.Find("n1") != nullptr)
            entry.link = LinkStanding{{OctetOf("n1"), OctetOf("k"), OctetOf("version")},
                                      OctetOf("next_to_radio"),
                                      OctetOf("next_from_radio")};
    }

    void ReadOctets(TraceEntry& entry, const FlatJson::Value& value, TraceEntry::Kind kind) const
    {
        entry.kind = kind;
        const std::string direction = TextOf("dir");
        if (direction != ToRadioWord && direction != FromRadioWord)
            throw TraceProblem{m_object.Find("dir")->column, "\"dir\" is neither D>R nor R>D"};
        entry.direction = direction == ToRadioWord ? Direction::ToRadio : Direction::FromRadio;
        if (value.Text() == nullptr)
            throw TraceProblem{value.column, "octets are a text of hexadecimal pairs"};
        TakeHex(*value.Text(), value.column, entry.octets);
    }

    // Pairs with blanks between them.
    static void TakeHex(const std::string& text, std::size_t column, Octets& octets)
    {
        for (std::size_t at = 0; at < text.size(); ++at) {
            if (text[at] == ' ')
                continue;
            const auto high = HexDigit(text[at]);
            const auto low = at + 1 < text.size() ? HexDigit(text[at + 1]) : std::nullopt;
            if (!high || !low)
                throw TraceProblem{column + at, "not a pair of hexadecimal digits"};
            octets.push_back(static_cast<std::uint8_t>((*high << 4) | *low));
            ++at;
        }
        if (octets.empty())
            throw TraceProblem{column, "there are no octets"};
        if (octets.size() > MostOctets)
            throw TraceProblem{column, "there are more octets than the longest frame has"};
    }

    std::int64_t NumberOf(const char* name) const
    {
        const FlatJson::Value* value = m_object.Find(name);
        if (value == nullptr)
            throw TraceProblem{1, '"' + std::string(name) + "\" is missing"};
        constexpr std::int64_t most = std::int64_t{1} << 53;
        if (value->Number() == nullptr || *value->Number() < 0 || *value->Number() > most)
            throw TraceProblem{value->column, '"' + std::string(name) + "\" is not a whole number from 0"};
        return *value->Number();
    }

    std::uint8_t OctetOf(const char* name) const
    {
        const std::int64_t number = NumberOf(name);
        if (number > 0xFF)
            throw TraceProblem{m_object.Find(name)->column, '"' + std::string(name) + "\" is above 255"};
        return static_cast<std::uint8_t>(number);
    }

    std::string TextOf(const char* name) const
    {
        const FlatJson::Value* value = m_object.Find(name);
        if (value == nullptr)
            throw TraceProblem{1, '"' + std::string(name) + "\" is missing"};
        if (value->Text() == nullptr)
            throw TraceProblem{value->column, '"' + std::string(name) + "\" is not a text"};
        return *value->Text();
    }

    std::string OptionalText(const char* name) const
    {
        return m_object.Find(name) != nullptr ? TextOf(name) : std::string{};
    }

    const FlatJson& m_object;
};

std::string Member(const char* name, std::string_view text)
{
    return std::string(",\"") + name + "\":" + JsonQuoted(text);
}

std::string Number(const char* name, std::int64_t number)
{
    return std::string(",\"") + name + "\":" + std::to_string(number);
}

std::string PortMembers(const TraceEntry& entry)
{
    return (entry.port.empty() ? "" : Member("port", entry.port)) +
           (entry.number > 0 ? Number("speed", entry.number) : "");
}

} // namespace

std::string WriteTraceEntry(const TraceEntry& entry)
{
    std::string line = "{\"ms\":" + std::to_string(entry.at.time_since_epoch().count());
    switch (entry.kind) {
    case TraceEntry::Kind::Frame:
    case TraceEntry::Kind::Noise:
        line += Member("dir", entry.direction == Direction::ToRadio ? ToRadioWord : FromRadioWord);
        line += Member(entry.kind == TraceEntry::Kind::Frame ? "frame" : "noise", ToHex(entry.octets));
        if (!entry.fault.empty())
            line += Member("fault", entry.fault);
        break;
    case TraceEntry::Kind::Opened:
        line += Member("event", "opened");
        if (!entry.time.empty())
            line += Member("time", entry.time);
        line += PortMembers(entry);
        break;
    case TraceEntry::Kind::Continued:
        line += Member("event", "continued") + PortMembers(entry);
        if (entry.link)
            line += Number("n1", entry.link->agreed.n1) + Number("k", entry.link->agreed.k) +
                    Number("version", entry.link->agreed.version) +
                    Number("next_to_radio", entry.link->nextToRadio) +
                    Number("next_from_radio", entry.link->nextFromRadio);
        break;
    case TraceEntry::Kind::Said:
        line += Member("event", "said") + Member("message", ToHex(entry.octets));
        break;
    case TraceEntry::Kind::Closed:
        line += Member("event", "closed");
        break;
    case TraceEntry::Kind::Time:
        line += Member("event", "time") + Member("time", entry.time);
        break;
    case TraceEntry::Kind::Lost:
        line += Member("event", "lost") + Number("count", entry.number);
        break;
    case TraceEntry::Kind::Command:
        line += Member("command", entry.command) + Member("answer", entry.answer);
        break;
    }
    return line + '}';
}

std::variant<TraceEntry, TraceProblem> ReadTraceEntry(std::string_view line)
{
    const auto read = FlatJson::Read(line);
    if (const auto* problem = std::get_if<FlatJson::Problem>(&read))
        return TraceProblem{problem->column, problem->reason};
    try {
        return EntryReader(std::get<FlatJson>(read)).Read();
    } catch (const TraceProblem& problem) {
        return problem;
    }
}

} // namespace map27
