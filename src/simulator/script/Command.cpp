#include "simulator/script/Command.h"

#include <algorithm>
#include <array>
#include <optional>

namespace sim {

namespace {

constexpr int LongestMs = 3600 * 1000;
constexpr int MostAtOnce = 5000;

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
    // A lone 7 or 8 is the text.
    Words ahead = words;
    const bool eight = ahead.Skip("8");
    if ((eight || ahead.Skip("7")) && !ahead.AtEnd()) {
        words = ahead;
        action.coding = eight ? map27::TextCoding::EightBit : map27::TextCoding::SevenBit;
    }
    action.text = words.Remainder();
    return Action(action);
}

// What is said of any call, in any order.
void ParseCallWords(Words& words, CallAction& action)
{
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
        else if (word == "data")
            action.data = true;
        else if (word == "for")
            action.hangUpAfter = words.Seconds("the number of seconds");
        else
            throw CommandProblem{"\"" + word +
                                 "\" is none of ring, connected, emergency, group, system, data, for"};
    }
    action.rings = rings.value_or(action.scope == CallScope::Individual);
}

Command ParseCall(Words& words, const Scenario&)
{
    CallAction action;
    action.from = words.Sender();
    ParseCallWords(words, action);
    return Action(action);
}

template <std::uint16_t ident> Command ParseTelephoneCall(Words& words, const Scenario& scenario)
{
    // MAP27 does not tell the caller's number, so the digits are for the reader of the command only.
    if (const std::string_view digits = words.Peek();
        !words.AtEnd() && map27::PackDigits(digits.substr(0, 1))) {
        if (!map27::PackDigits(digits))
            throw CommandProblem{"\"" + std::string(digits) + "\" is no telephone number"};
        words.Next("");
    }
    CallAction action;
    action.from = {scenario.radio.address.prefix, ident};
    ParseCallWords(words, action);
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
        throw CommandProblem{"contact must be lost or found, not \"" + word + '"'};
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
    action.service = ServiceOfWord(words.Peek());
    if (action.service)
        words.Next("");
    const std::string word(words.Next("the behaviour"));
    const auto behaviour = BehaviourOfWord(word);
    if (!behaviour)
        throw CommandProblem{"unknown behaviour \"" + word + "\"; known are " + BehaviourWords()};
    action.reaction = Reaction::Of(*behaviour);
    if (!words.AtEnd())
        action.reaction.reactAfter = Milliseconds(words.Number("the time to react", 0, LongestMs));
    if (!words.AtEnd())
        action.reaction.answerAfter = Milliseconds(words.Number("the time to answer", 0, LongestMs));
    return Action(action);
}

template <bool isControl> Command ParseSignal(Words& words, const Scenario&)
{
    SignalAction action;
    action.who = words.Next("the outstation");
    action.isControl = isControl;
    action.number = static_cast<std::uint8_t>(words.Number("the number", 0, 7));
    const std::string word(words.Next("on, off or unknown"));
    const auto signal = SignalOfWord(word);
    if (!signal)
        throw CommandProblem{"the state must be on, off or unknown, not \"" + word + '"'};
    action.signal = *signal;
    return Action(action);
}

map27::IdentRange ParseRange(Words& words)
{
    map27::IdentRange range;
    range.base = static_cast<std::uint16_t>(words.Number("the base", 1, HighestSubscriberIdent));
    range.highest =
        static_cast<std::uint16_t>(words.Number("the highest number", range.base, HighestSubscriberIdent));
    range.threeDigits = words.Number("the digits", 2, 3) == 3;
    return range;
}

Command ParseNumbering(Words& words, const Scenario&)
{
    const std::string own(words.Next("the own number"));
    const auto address = ParseAddress(own);
    if (!address)
        throw CommandProblem{"\"" + own + "\" is no prefix/ident"};
    NumberingAction action{*address, std::nullopt, std::nullopt};
    while (!words.AtEnd())
        if (words.Skip("units"))
            action.units = ParseRange(words);
        else if (words.Skip("groups"))
            action.groups = ParseRange(words);
        else
            throw CommandProblem{"\"" + std::string(words.Peek()) + "\" is neither units nor groups"};
    return Action(action);
}

template <typename About> Command ParseMember(Words& words, const Scenario& scenario)
{
    const std::string name(words.Next("the name"));
    const Subscriber* member = scenario.fleet.Find(name);
    if (!member)
        throw CommandProblem{"there is no \"" + name + "\" in the fleet"};
    return About{member->address};
}

Command ParseRestart(Words&, const Scenario&)
{
    return Action(RestartAction{});
}

Command ParseSilent(Words& words, const Scenario&)
{
    const std::string word(words.Next("on or off"));
    if (word != "on" && word != "off")
        throw CommandProblem{"silent must be on or off, not \"" + word + '"'};
    SilenceAction action{word == "on", {}};
    if (action.silent && !words.AtEnd()) {
        action.duration = words.Seconds("the number of seconds");
        if (action.duration == Milliseconds(0))
            throw CommandProblem{"the number of seconds must be more than 0"};
    }
    return Action(action);
}

Command ParseFault(Words& words, const Scenario&)
{
    const std::string word(words.Next("the fault"));
    const std::string value(words.AtEnd() ? "" : words.Next(""));
    std::string problem;
    const auto choice = ChooseFault(word, value, problem);
    if (!choice)
        throw CommandProblem{problem};
    return Action(FaultAction{choice->kind, choice->value});
}

Command ParseStorm(Words& words, const Scenario&)
{
    StormAction action;
    if (!words.AtEnd())
        action.count = words.Number("the number of messages", 1, MostAtOnce);
    if (!words.AtEnd())
        action.texts = words.Real("the share of texts", 1);
    return Action(action);
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

constexpr std::array Kinds{
    CommandKind{"status", ParseStatus, "FROM CODE", "a status 0..31 arrives"},
    CommandKind{"text", ParseText, "FROM [7|8] TEXT", "a text arrives, in 7-bit or 8-bit characters (7)"},
    CommandKind{"call", ParseCall, "FROM [ring|connected] [emergency] [group|system] [data] [for S]",
                "a call comes in"},
    CommandKind{"pstn-call", ParseTelephoneCall<map27::Ident::Pstn>,
                "[DIGITS] [ring|connected] [emergency] [data] [for S]", "a call from the public telephone"},
    CommandKind{"pabx-call", ParseTelephoneCall<map27::Ident::Pabx>,
                "[DIGITS] [ring|connected] [emergency] [data] [for S]", "a call from the private exchange"},
    CommandKind{"hangup", ParseHangUp, "", "the other side hangs up or stops ringing"},
    CommandKind{"contact", ParseContact, "lost|found", "radio contact"},
    CommandKind{"field", ParseField, "N", "field strength 0..255, no longer wandering"},
    CommandKind{"behave", ParseBehave, "NAME [status|text|call|regroup] BEHAVIOUR [REACT_MS [ANSWER_MS]]",
                "how NAME takes requests from now on"},
    CommandKind{"sensor", ParseSignal<false>, "NAME N on|off|unknown", "sensor 0..7 of an outstation"},
    CommandKind{"control", ParseSignal<true>, "NAME N on|off|unknown", "control 0..7 of an outstation"},
    CommandKind{"numbering", ParseNumbering, "PREFIX/IDENT [units BASE MAX DIGITS] [groups BASE MAX DIGITS]",
                "the radio's own number and ranges"},
    CommandKind{"restart", ParseRestart, "", "the radio is switched off and on"},
    CommandKind{"storm", ParseStorm, "[COUNT [TEXTS]]",
                "many messages at once (500), TEXTS of them (0.2) as texts, the rest as statuses"},
    CommandKind{"fault", ParseFault, "NAME [VALUE|off]", "a fault on purpose from now on"},
    CommandKind{"silent", ParseSilent, "on [SECONDS]|off", "nothing gets through the line"},
    CommandKind{"state", ParsePlain<StateCommand>, "", "link, contact, hook, call and message of the radio"},
    CommandKind{"last", ParsePlain<LastCommand>, "", "the console's last status, text or call"},
    CommandKind{"groups", ParseMember<GroupsCommand>, "NAME", "the dynamic groups that NAME holds"},
    CommandKind{"signals", ParseMember<SignalsCommand>, "NAME", "sensors and controls of an outstation"},
    CommandKind{"list", ParsePlain<ListCommand>, "", "the fleet"},
    CommandKind{"help", ParsePlain<HelpCommand>, "", "these commands"},
};

} // namespace

std::variant<Command, CommandProblem> ParseCommand(std::string_view line, const Scenario& scenario)
{
    try {
        Words words(line, scenario);
        const std::string word(words.Next("the command"));
        const auto kind = std::ranges::find(Kinds, word, &CommandKind::word);
        if (kind == Kinds.end())
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
    for (const CommandKind& kind : Kinds) {
        std::string usage =
            std::string(kind.word) + (kind.arguments.empty() ? "" : " ") + std::string(kind.arguments);
        usage.resize(std::max<std::size_t>(usage.size() + 2, 26), ' ');
        help += "  " + usage + std::string(kind.meaning) + '\n';
    }
    for (const FaultDescription& fault : FaultDescriptions)
        help += "  fault " + std::string(fault.word) + ": " + std::string(fault.meaning) + '\n';
    help += "FROM is a name of the fleet or prefix/ident; after S seconds the caller hangs up. Behaviours: " +
            BehaviourWords() + ".\n";
    return help;
}

} // namespace sim
