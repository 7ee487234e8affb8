#include "simulator/ScenarioReader.h"

#include "simulator/EventReader.h"
#include "simulator/ReactionReader.h"

#include <QFile>

#include <charconv>

namespace sim {

namespace {

constexpr std::size_t longestName = 32;

map27::Address ReadAddress(const JsonNode& node)
{
    return {static_cast<std::uint8_t>(node.Member("prefix").Integer(0, map27::HighestPrefix)),
            static_cast<std::uint16_t>(node.Member("ident").Integer(1, HighestSubscriberIdent))};
}

map27::NumberRange ReadRange(const JsonNode& node)
{
    node.RequireMembers({"base", "max", "digits"});
    map27::NumberRange range;
    range.base = static_cast<std::uint16_t>(node.Member("base").Integer(1, HighestSubscriberIdent));
    range.highest =
        static_cast<std::uint16_t>(node.Member("max").Integer(range.base, HighestSubscriberIdent));
    range.threeDigits = node.Member("digits").Integer(2, 3) == 3;
    return range;
}

OwnRadio ReadRadio(const JsonNode& node)
{
    node.RequireMembers({"prefix", "ident", "units", "groups"});
    OwnRadio radio;
    radio.address = ReadAddress(node);
    // A radio without one of them reports a range of zeros.
    if (const auto units = node.Find("units"))
        radio.units = ReadRange(*units);
    if (const auto groups = node.Find("groups"))
        radio.groups = ReadRange(*groups);
    return radio;
}

std::uint16_t ReadSystemIdentity(const JsonNode& node)
{
    const std::string text = node.Text();
    unsigned value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (error != std::errc{} || end != text.data() + text.size() || value > 0x7FFF)
        node.Fail("must be a hexadecimal text, \"0000\" to \"7FFF\"");
    return static_cast<std::uint16_t>(value);
}

FieldStrength ReadFieldStrength(const JsonNode& node)
{
    FieldStrength field;
    if (!node.IsArray()) {
        field.lowest = field.highest = static_cast<std::uint8_t>(node.Integer(0, 255));
        return field;
    }
    const std::vector<JsonNode> ends = node.Items();
    if (ends.size() != 2)
        node.Fail("must be a number, or a list of the lowest and the highest one");
    field.lowest = static_cast<std::uint8_t>(ends[0].Integer(1, 255));
    field.highest = static_cast<std::uint8_t>(ends[1].Integer(field.lowest, 255));
    return field;
}

std::uint8_t ReadMaxCallTime(const JsonNode& node)
{
    const auto code = MaxCallTimeCode(node.Integer(0, 3600));
    if (!code)
        node.Fail("must be 0 (no limit), 10 to 254 seconds, or whole minutes of 300 to 780 seconds");
    return *code;
}

NetworkProperties ReadNetwork(const JsonNode& node)
{
    node.RequireMembers({"channel", "systemIdentity", "fieldStrength", "fieldStrengthEvery", "maxCallSeconds",
                         "callWarning", "ringing"});
    NetworkProperties network;
    if (const auto channel = node.Find("channel"))
        network.channel = static_cast<std::uint16_t>(channel->Integer(0, 1023));
    if (const auto identity = node.Find("systemIdentity"))
        network.systemIdentity = ReadSystemIdentity(*identity);
    if (const auto field = node.Find("fieldStrength"))
        network.field = ReadFieldStrength(*field);
    if (const auto every = node.Find("fieldStrengthEvery"))
        network.field.every = Milliseconds(static_cast<int>(every->Number(1, 86400) * 1000));
    if (const auto seconds = node.Find("maxCallSeconds"))
        network.maxCallTimeCode = ReadMaxCallTime(*seconds);
    if (const auto warning = node.Find("callWarning"))
        network.callWarning = Milliseconds(warning->SecondsAsMilliseconds(3600));
    if (const auto ringing = node.Find("ringing"))
        network.ringing = Milliseconds(ringing->SecondsAsMilliseconds(3600));
    return network;
}

std::string ReadName(const JsonNode& node, const Fleet& fleet)
{
    std::string name = node.Text();
    if (name.empty() || name.size() > longestName || name.find_first_of(" \t\r\n/\"") != std::string::npos)
        node.Fail("must be a name of 1 to 32 characters without blank, slash and quotation mark");
    if (std::as_const(fleet).Find(name))
        node.Fail("there is another \"" + name + "\"");
    return name;
}

Subscriber ReadSubscriber(const JsonNode& node, const Scenario& scenario)
{
    node.RequireMembers({"name", "prefix", "ident", "kind", "behaviour", "reactAfterMs", "answerAfterMs",
                         "talkMs", "status", "text", "call"});
    Subscriber member;
    member.name = ReadName(node.Member("name"), scenario.fleet);
    member.address = ReadAddress(node);
    if (member.address == scenario.radio.address)
        node.Fail("this is the address of the radio itself");
    if (const Subscriber* other = scenario.fleet.Find(member.address))
        node.Fail("\"" + other->name + "\" has the same address");
    if (const auto kind = node.Find("kind")) {
        const std::string word = kind->Text();
        if (word != "unit" && word != "group")
            kind->Fail("must be \"unit\" or \"group\", not \"" + word + "\"");
        member.kind = word == "group" ? SubscriberKind::Group : SubscriberKind::Unit;
    }
    member.reactions = ReadReactions(node);
    return member;
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

} // namespace

Scenario ReadScenario(const QByteArray& json)
{
    const JsonNode root = JsonNode::Parse(json);
    root.RequireMembers({"radio", "network", "fleet", "strangers", "pstn", "pabx", "events"});
    Scenario scenario;
    scenario.radio = ReadRadio(root.Member("radio"));
    if (const auto network = root.Find("network"))
        scenario.network = ReadNetwork(*network);
    if (const auto fleet = root.Find("fleet")) {
        for (const JsonNode& member : fleet->Items())
            scenario.fleet.members.push_back(ReadSubscriber(member, scenario));
        if (scenario.GroupList().size() > MostGroups)
            fleet->Fail("has more than " + std::to_string(MostGroups) + " groups");
    }
    if (const auto strangers = root.Find("strangers"))
        scenario.fleet.strangers = ReadReaction(*strangers);
    if (const auto pstn = root.Find("pstn"))
        scenario.fleet.pstn = ReadTelephones(*pstn);
    if (const auto pabx = root.Find("pabx"))
        scenario.fleet.pabx = ReadTelephones(*pabx);
    if (const auto events = root.Find("events")) {
        for (const JsonNode& event : events->Items())
            scenario.events.push_back(ReadEvent(event, scenario));
    }
    return scenario;
}

Scenario LoadScenario(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw ScenarioError(path.toStdString() + ": cannot be read: " + file.errorString().toStdString());
    const QByteArray text = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw ScenarioError(path.toStdString() + ": cannot be read: " + file.errorString().toStdString());
    try {
        return ReadScenario(text);
    } catch (const ScenarioError& error) {
        throw ScenarioError(path.toStdString() + ": " + error.what());
    }
}

} // namespace sim
