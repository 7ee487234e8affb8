#include "simulator/Command.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace sim {

namespace {

constexpr std::string_view blanks = " \t";
constexpr int longestMs = 3600 * 1000;

// The words of a line, taken one after another. Throws CommandProblem.
class Words {
public:
    Words(std::string_view line, const Scenario& scenario) : m_scenario(&scenario), m_rest(line) { Trim(); }

    bool AtEnd() const { return m_rest.empty(); }

    std::string_view Peek() const { return m_rest.substr(0, m_rest.find_first_of(blanks)); }

    std::string_view Next(const char* what)
    {
        if (AtEnd())
            throw CommandProblem{std::string(what) + " is missing"};
        const std::string_view word = Peek();
        m_rest.remove_prefix(word.size());
        m_afterWord = m_rest;
        Trim();
        return word;
    }

    bool Skip(std::string_view word)
    {
        if (Peek() != word)
            return false;
        Next("");
        return true;
    }

    int Number(const char* what, int lowest, int highest)
    {
        const std::string word(Next(what));
        int value = 0;
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
        if (error != std::errc{} || end != word.data() + word.size() || value < lowest || value > highest)
            throw CommandProblem{std::string(what) + " must be " + std::to_string(lowest) + " to " +
                                 std::to_string(highest) + ", not \"" + word + '"'};
        return value;
    }

    map27::Address Sender()
    {
        const std::string word(Next("the sender"));
        const auto address = m_scenario->fleet.Resolve(word);
        if (!address)
            throw CommandProblem{"there is no \"" + word + "\" in the fleet, and it is no prefix/ident"};
        return *address;
    }

    // All that is left, but for the one blank after the word before.
    std::string Remainder()
    {
        std::string text(m_afterWord.empty() ? m_afterWord : m_afterWord.substr(1));
        m_rest = {};
        return text;
    }

    void End() const
    {
        if (!AtEnd())
            throw CommandProblem{"\"" + std::string(m_rest) + "\" is too much"};
    }

private:
    void Trim()
    {
        const std::size_t begin = m_rest.find_first_not_of(blanks);
        m_rest.remove_prefix(begin == std::string_view::npos ? m_rest.size() : begin);
    }

    const Scenario* m_scenario;
    std::string_view m_rest;
    std::string_view m_afterWord;
};

Command ParseStatus(Words& words, const Scenario&)
{
    StatusAction action{words.Sender(), 0};
    action.code = static_cast<std::uint8_t>(words.Number("the status", 0, 31));
    return Action(action);
}

Command ParseText(Words& words, const Scenario&)
{
    TextAction action;
    action.from = words.Sender();
    // A text that is nothing but a 7 or 8 is a text.
    Words ahead = words;
    const bool eight = ahead.Skip("8");
    if ((eight || ahead.Skip("7")) && !ahead.AtEnd()) {
        words = ahead;
        action.coding = eight ? map27::TextCoding::EightBit : map27::TextCoding::SevenBit;
    }
    action.text = words.Remainder();
    return Action(action);
}

Command ParseCall(Words& words, const Scenario&)
{
    CallAction action;
    action.from = words.Sender();
    std::optional<bool> rings;
    while (!words.AtEnd()) {
        const std::string word(words.Next(""));
        if (word == "ring" || word == "connected")
            rings = word == "ring";
        else if (word == "emergency")
            action.emergency = true;
        else if (word == "group")
            action.scope = CallScope::Group;
        else if (word == "system")
            action.scope = CallScope::SystemWide;
        else
            throw CommandProblem{"\"" + word + "\" is none of ring, connected, emergency, group, system"};
    }
    action.rings = rings.value_or(action.scope == CallScope::Individual);
    return Action(action);
}

template <std::uint16_t ident> Command ParseTelephoneCall(Words& words, const Scenario& scenario)
{
    // MAP27 does not tell the caller's number, so the digits are for the reader of the command only.
    if (!words.AtEnd()) {
        const std::string digits(words.Next("the number"));
        if (!map27::PackDigits(digits))
            throw CommandProblem{"\"" + digits + "\" is no telephone number"};
    }
    CallAction action;
    action.from = {scenario.radio.address.prefix, ident};
    return Action(action);
}

Command ParseHangUp(Words&, const Scenario&)
{
    return Action(HangUpAction{});
}

Command ParseContact(Words& words, const Scenario&)
{
    const std::string word(words.Next("lost or found"));
    if (word != "lost" && word != "found")
        throw CommandProblem{"contact is lost or found, not \"" + word + '"'};
    return Action(ContactAction{word == "found"});
}

Command ParseField(Words& words, const Scenario&)
{
    return Action(FieldAction{static_cast<std::uint8_t>(words.Number("the field strength", 0, 255))});
}

Command ParseBehave(Words& words, const Scenario&)
{
    BehaveAction action;
    action.who = words.Next("the name");
    if (words.Skip("status"))
        action.service = Service::Status;
    else if (words.Skip("text"))
        action.service = Service::Text;
    else if (words.Skip("call"))
        action.service = Service::Call;
    const std::string word(words.Next("the behaviour"));
    const auto behaviour = BehaviourOfWord(word);
    if (!behaviour)
        throw CommandProblem{"unknown behaviour \"" + word + "\"; there are " + BehaviourWords()};
    action.reaction = Reaction::Of(*behaviour);
    if (!words.AtEnd())
        action.reaction.reactAfter = Milliseconds(words.Number("the time to react", 0, longestMs));
    if (!words.AtEnd())
        action.reaction.answerAfter = Milliseconds(words.Number("the time to answer", 0, longestMs));
    return Action(action);
}

Command ParseRestart(Words&, const Scenario&)
{
    return Action(RestartAction{});
}

Command ParseSilent(Words& words, const Scenario&)
{
    const std::string word(words.Next("on or off"));
    if (word != "on" && word != "off")
        throw CommandProblem{"silent is on or off, not \"" + word + '"'};
    return SilentCommand{word == "on"};
}

template <typename Plain> Command ParsePlain(Words&, const Scenario&)
{
    return Plain{};
}

struct CommandKind {
    std::string_view word;
    Command (*parse)(Words&, const Scenario&);
    std::string_view arguments;
    std::string_view meaning;
};

constexpr std::array kinds{
    CommandKind{"status", ParseStatus, "FROM CODE", "a status 0..31 arrives"},
    CommandKind{"text", ParseText, "FROM [7|8] TEXT", "a text arrives, in 7-bit or 8-bit characters (7)"},
    CommandKind{"call", ParseCall, "FROM [ring|connected] [emergency] [group|system]", "a call comes in"},
    CommandKind{"pstn-call", ParseTelephoneCall<map27::Ident::Pstn>, "[DIGITS]",
                "a call from the public telephone"},
    CommandKind{"pabx-call", ParseTelephoneCall<map27::Ident::Pabx>, "[DIGITS]",
                "a call from the private exchange"},
    CommandKind{"hangup", ParseHangUp, "", "the other side hangs up or stops ringing"},
    CommandKind{"contact", ParseContact, "lost|found", "radio contact"},
    CommandKind{"field", ParseField, "N", "field strength 0..255, no longer wandering"},
    CommandKind{"behave", ParseBehave, "NAME [status|text|call] BEHAVIOUR [REACT_MS [ANSWER_MS]]",
                "how NAME takes requests from now on"},
    CommandKind{"restart", ParseRestart, "", "the radio is switched off and on"},
    CommandKind{"silent", ParseSilent, "on|off", "nothing gets through the line"},
    CommandKind{"state", ParsePlain<StateCommand>, "", "link, contact, hook, call and message of the radio"},
    CommandKind{"last", ParsePlain<LastCommand>, "", "the console's last status, text or call"},
    CommandKind{"list", ParsePlain<ListCommand>, "", "the fleet"},
    CommandKind{"help", ParsePlain<HelpCommand>, "", "these commands"},
};

} // namespace

std::variant<Command, CommandProblem> ParseCommand(std::string_view line, const Scenario& scenario)
{
    try {
        Words words(line, scenario);
        const std::string word(words.Next("the command"));
        const auto kind = std::ranges::find(kinds, word, &CommandKind::word);
        if (kind == kinds.end())
            return CommandProblem{"unknown command \"" + word + "\"; help lists them"};
        Command command = kind->parse(words, scenario);
        words.End();
        return command;
    } catch (const CommandProblem& problem) {
        return problem;
    }
}

std::string CommandHelp()
{
    std::string help;
    for (const CommandKind& kind : kinds) {
        std::string usage =
            std::string(kind.word) + (kind.arguments.empty() ? "" : " ") + std::string(kind.arguments);
        usage.resize(std::max<std::size_t>(usage.size() + 2, 26), ' ');
        help += "  " + usage + std::string(kind.meaning) + '\n';
    }
    help += "FROM is a name of the fleet or prefix/ident. Behaviours: " + BehaviourWords() + ".\n";
    return help;
}

} // namespace sim
