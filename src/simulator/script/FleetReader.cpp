#include "simulator/script/FleetReader.h"

#include "map27/codec/Messages.h"

namespace sim {

namespace {

constexpr std::size_t LongestName = 32;
constexpr int LongestMs = 3600 * 1000;

Behaviour ReadBehaviour(const JsonNode& node)
{
    const std::string word = node.Text();
    const auto behaviour = BehaviourOfWord(word);
    if (!behaviour)
        node.Fail("unknown behaviour \"" + word + "\"; known are " + BehaviourWords());
    return *behaviour;
}

// The node's behaviour, or that of `usual` when it names none, with the times given there.
Reaction ReadReactionFields(const JsonNode& node, const Reaction& usual)
{
    Reaction reaction = usual;
    if (const auto behaviour = node.Find("behaviour"))
        reaction = Reaction::Of(ReadBehaviour(*behaviour));
    if (const auto react = node.Find("reactAfterMs"))
        reaction.reactAfter = Milliseconds(react->Integer(0, LongestMs));
    if (const auto answer = node.Find("answerAfterMs"))
        reaction.answerAfter = Milliseconds(answer->Integer(0, LongestMs));
    if (const auto talk = node.Find("talkMs"))
        reaction.talk = Milliseconds(talk->Integer(0, LongestMs));
    return reaction;
}

Reaction ReadReactionOr(const JsonNode& node, const Reaction& usual)
{
    if (node.IsText())
        return Reaction::Of(ReadBehaviour(node));
    node.RequireMembers({"behaviour", "reactAfterMs", "answerAfterMs", "talkMs"});
    return ReadReactionFields(node, usual);
}

Reactions ReadReactions(const JsonNode& member)
{
    const Reaction own = ReadReactionFields(member, Reaction::Of(Behaviour::Answers));
    Reactions reactions = Reactions::All(own);
    if (const auto status = member.Find("status"))
        reactions.status = ReadReactionOr(*status, own);
    if (const auto text = member.Find("text"))
        reactions.text = ReadReactionOr(*text, own);
    if (const auto call = member.Find("call"))
        reactions.call = ReadReactionOr(*call, own);
    if (const auto regroup = member.Find("regroup"))
        reactions.regroup = ReadReactionOr(*regroup, own);
    return reactions;
}

std::string ReadName(const JsonNode& node, const Fleet& fleet)
{
    std::string name = node.Text();
    if (name.empty() || name.size() > LongestName || name.find_first_of(" \t\r\n/\"") != std::string::npos)
        node.Fail("must be a name of 1 to 32 characters without blank, slash and quotation mark");
    if (std::as_const(fleet).Find(name))
        node.Fail("there is another \"" + name + "\"");
    return name;
}

SubscriberKind ReadKind(const JsonNode& node)
{
    const std::string word = node.Text();
    for (const auto kind : {SubscriberKind::Unit, SubscriberKind::Group, SubscriberKind::Outstation})
        if (word == WordOf(kind))
            return kind;
    node.Fail("must be \"unit\", \"group\" or \"outstation\", not \"" + word + "\"");
}

Signals ReadSignals(const JsonNode& node)
{
    const auto signals = SignalsOfText(node.Text());
    if (!signals)
        node.Fail("must be eight characters, number 7 first: 0 off, 1 on, any other unknown");
    return *signals;
}

OutstationSettings ReadOutstation(const JsonNode& node)
{
    constexpr double aDay = 86400;
    node.RequireMembers({"sensors", "controls", "bits", "changeEvery", "reportEvery", "reportAfterMs"});
    OutstationSettings settings;
    if (const auto sensors = node.Find("sensors"))
        settings.sensors = ReadSignals(*sensors);
    if (const auto controls = node.Find("controls"))
        settings.controls = ReadSignals(*controls);
    if (const auto bits = node.Find("bits"))
        settings.coding =
            bits->Integer(7, 8) == 8 ? map27::TextCoding::EightBit : map27::TextCoding::SevenBit;
    if (const auto every = node.Find("changeEvery"))
        settings.changeEvery = Milliseconds(every->SecondsAsMilliseconds(aDay));
    if (const auto every = node.Find("reportEvery"))
        settings.reportEvery = Milliseconds(every->SecondsAsMilliseconds(aDay));
    if (const auto after = node.Find("reportAfterMs"))
        settings.reportAfter = Milliseconds(after->Integer(1, 60000));
    return settings;
}

Subscriber ReadSubscriber(const JsonNode& node, const Scenario& scenario)
{
    node.RequireMembers({"name", "prefix", "ident", "kind", "behaviour", "reactAfterMs", "answerAfterMs",
                         "talkMs", "status", "text", "call", "regroup", "outstation", "divertTo"});
    Subscriber member;
    member.name = ReadName(node.Member("name"), scenario.fleet);
    member.address = ReadAddress(node);
    if (member.address == scenario.radio.address)
        node.Fail("this is the address of the radio itself");
    if (const Subscriber* other = scenario.fleet.Find(member.address))
        node.Fail("\"" + other->name + "\" has the same address");
    if (const auto kind = node.Find("kind"))
        member.kind = ReadKind(*kind);
    member.reactions = ReadReactions(node);
    if (const auto outstation = node.Find("outstation")) {
        if (member.kind != SubscriberKind::Outstation)
            outstation->Fail("belongs to the kind \"outstation\" only");
        member.outstation = ReadOutstation(*outstation);
    }
    return member;
}

// After all members are known by name.
void ReadDiversions(const JsonNode& list, std::size_t first, Fleet& fleet)
{
    std::size_t index = first;
    for (const JsonNode& node : list.Items()) {
        Subscriber& member = fleet.members[index++];
        const auto divertTo = node.Find("divertTo");
        if (!divertTo)
            continue;
        const Subscriber* target = std::as_const(fleet).Find(divertTo->Text());
        if (!target || target == &member)
            divertTo->Fail("there is no other \"" + divertTo->Text() + "\" in the fleet");
        member.divertedTo = target->address;
    }
}

} // namespace

map27::Address ReadAddress(const JsonNode& node)
{
    return {static_cast<std::uint8_t>(node.Member("prefix").Integer(0, map27::HighestPrefix)),
            static_cast<std::uint16_t>(node.Member("ident").Integer(1, HighestSubscriberIdent))};
}

Reaction ReadReaction(const JsonNode& node)
{
    return ReadReactionOr(node, Reaction::Of(Behaviour::Answers));
}

TelephoneNetwork ReadTelephones(const JsonNode& node)
{
    node.RequireMembers({"others", "numbers"});
    TelephoneNetwork network;
    if (const auto others = node.Find("others"))
        network.others = ReadReaction(*others);
    if (const auto numbers = node.Find("numbers")) {
        for (const auto& [digits, entry] : numbers->Entries()) {
            if (digits.empty() || digits.size() > map27::MostDigits || !map27::PackDigits(digits))
                entry.Fail("the number must be 1 to 24 characters 0-9 * #");
            network.numbers.emplace(digits, ReadReaction(entry));
        }
    }
    return network;
}

void ReadFleet(const JsonNode& node, Scenario& scenario)
{
    const std::size_t before = scenario.fleet.members.size();
    for (const JsonNode& member : node.Items())
        scenario.fleet.members.push_back(ReadSubscriber(member, scenario));
    ReadDiversions(node, before, scenario.fleet);
    if (scenario.GroupList().size() > MostGroups)
        node.Fail("has more than " + std::to_string(MostGroups) + " groups");
}

} // namespace sim
