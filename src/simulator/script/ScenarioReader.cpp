#include "simulator/script/ScenarioReader.h"

#include "simulator/script/EventReader.h"
#include "simulator/script/NumberReader.h"
#include "simulator/script/ReactionReader.h"

#include <QFile>

#include <charconv>

namespace sim {

namespace {

constexpr std::size_t longestName = 32;
constexpr qint64 largestScenario = 16 * 1024 * 1024; // octets; a device may never end

void AddFacility(OwnRadio& radio, const JsonNode& node)
{
    if (node.Text() != "data")
        node.Fail("must be \"data\", not \"" + node.Text() + "\"");
    radio.dataCalls = true;
}

OwnRadio ReadRadio(const JsonNode& node)
{
    node.RequireMembers({"prefix", "ident", "units", "groups", "facilities"});
    OwnRadio radio;
    radio.address = ReadAddress(node);
    // A radio without one of them reports a range of zeros.
    if (const auto units = node.Find("units"))
        radio.units = ReadRange(*units);
    if (const auto groups = node.Find("groups"))
        radio.groups = ReadRange(*groups);
    if (const auto facilities = node.Find("facilities")) {
        for (const JsonNode& facility : facilities->Items())
            AddFacility(radio, facility);
    }
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

MediumTexts ReadMediumTexts(const JsonNode& node)
{
    const std::string word = node.Text();
    if (word == "refused")
        return MediumTexts::Refused;
    if (word == "split")
        return MediumTexts::Split;
    if (word != "carried")
        node.Fail("must be \"carried\", \"refused\" or \"split\", not \"" + word + "\"");
    return MediumTexts::Carried;
}

FaultSettings ReadFaults(const JsonNode& node)
{
    FaultSettings faults;
    for (const auto& [word, value] : node.Entries()) {
        const FaultDescription* fault = FaultOfWord(word);
        if (!fault)
            value.Fail("unknown fault \"" + word + "\"; there are " + FaultWords());
        faults.Set(fault->kind, value.Number(0, fault->highest));
    }
    return faults;
}

NetworkProperties ReadNetwork(const JsonNode& node)
{
    node.RequireMembers({"channel", "systemIdentity", "fieldStrength", "fieldStrengthEvery", "maxCallSeconds",
                         "callWarning", "ringing", "mediumTexts"});
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
    if (const auto medium = node.Find("mediumTexts"))
        network.mediumTexts = ReadMediumTexts(*medium);
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

SubscriberKind ReadKind(const JsonNode& node)
{
    const std::string word = node.Text();
    for (const auto kind : {SubscriberKind::Unit, SubscriberKind::Group, SubscriberKind::Outstation}) {
        if (word == WordOf(kind))
            return kind;
    }
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

// A base is read like any scenario, but for a base of its own.
Scenario Load(const QString& name, bool mayHaveBase);

Scenario ReadBase(const JsonNode& node)
{
    try {
        Scenario base = Load(QString::fromStdString(node.Text()), false);
        base.events.clear();
        return base;
    } catch (const ScenarioError& error) {
        node.Fail(error.what());
    }
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

Scenario Read(const QByteArray& json, bool mayHaveBase)
{
    const JsonNode root = JsonNode::Parse(json);
    root.RequireMembers(
        {"base", "radio", "network", "fleet", "strangers", "pstn", "pabx", "events", "faults"});
    const auto base = root.Find("base");
    if (base && !mayHaveBase)
        base->Fail("a base may not have a base of its own");
    Scenario scenario = base ? ReadBase(*base) : Scenario{};
    if (!base || root.Find("radio"))
        scenario.radio = ReadRadio(root.Member("radio"));
    if (const auto network = root.Find("network"))
        scenario.network = ReadNetwork(*network);
    if (const auto fleet = root.Find("fleet"))
        ReadFleet(*fleet, scenario);
    if (const auto strangers = root.Find("strangers"))
        scenario.fleet.strangers = ReadReaction(*strangers);
    if (const auto pstn = root.Find("pstn"))
        scenario.fleet.pstn = ReadTelephones(*pstn);
    if (const auto pabx = root.Find("pabx"))
        scenario.fleet.pabx = ReadTelephones(*pabx);
    if (const auto faults = root.Find("faults"))
        scenario.faults = ReadFaults(*faults);
    if (const auto events = root.Find("events")) {
        for (const JsonNode& event : events->Items())
            scenario.events.push_back(ReadEvent(event, scenario));
    }
    return scenario;
}

Scenario Load(const QString& name, bool mayHaveBase)
{
    const QString builtIn = QStringLiteral(":/veltorkyn/scenarios/%1.json").arg(name);
    const bool bare = !name.contains(QLatin1Char('/'));
    QFile file(bare && QFile::exists(builtIn) ? builtIn : name);
    if (!file.open(QIODevice::ReadOnly))
        throw ScenarioError(name.toStdString() + ": cannot be read: " + file.errorString().toStdString());
    const QByteArray text = file.read(largestScenario + 1);
    if (file.error() != QFileDevice::NoError)
        throw ScenarioError(name.toStdString() + ": cannot be read: " + file.errorString().toStdString());
    if (text.size() > largestScenario)
        throw ScenarioError(name.toStdString() + ": is larger than 16 MiB");
    try {
        return Read(text, mayHaveBase);
    } catch (const ScenarioError& error) {
        throw ScenarioError(name.toStdString() + ": " + error.what());
    }
}

} // namespace

Scenario ReadScenario(const QByteArray& json)
{
    return Read(json, true);
}

Scenario LoadScenario(const QString& name)
{
    return Load(name, true);
}

} // namespace sim
