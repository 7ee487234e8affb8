#include "simulator/script/ScenarioReader.h"

#include "simulator/script/EventReader.h"
#include "simulator/script/FleetReader.h"

#include <QFile>

#include <charconv>

namespace sim {

namespace {

constexpr qint64 LargestScenario = 16 * 1024 * 1024; // octets; a device may never end

void AddFacility(OwnRadio& radio, const JsonNode& node)
{
    if (node.Text() != "data")
        node.Fail("must be \"data\", not \"" + node.Text() + "\"");
    radio.dataCalls = true;
}

map27::IdentRange ReadRange(const JsonNode& node)
{
    node.RequireMembers({"base", "max", "digits"});
    map27::IdentRange range;
    range.base = static_cast<std::uint16_t>(node.Member("base").Integer(1, HighestSubscriberIdent));
    range.highest =
        static_cast<std::uint16_t>(node.Member("max").Integer(range.base, HighestSubscriberIdent));
    range.threeDigits = node.Member("digits").Integer(2, 3) == 3;
    return range;
}

OwnRadio ReadRadio(const JsonNode& node)
{
    node.RequireMembers({"prefix", "ident", "units", "groups", "facilities"});
    OwnRadio radio;
    radio.address = ReadAddress(node);
    // A radio that lacks one of them reports a range of zeros.
    if (const auto units = node.Find("units"))
        radio.units = ReadRange(*units);
    if (const auto groups = node.Find("groups"))
        radio.groups = ReadRange(*groups);
    if (const auto facilities = node.Find("facilities"))
        for (const JsonNode& facility : facilities->Items())
            AddFacility(radio, facility);
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
            value.Fail("unknown fault \"" + word + "\"; known are " + FaultWords());
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
    if (const auto events = root.Find("events"))
        for (const JsonNode& event : events->Items())
            scenario.events.push_back(ReadEvent(event, scenario));
    return scenario;
}

Scenario Load(const QString& name, bool mayHaveBase)
{
    const QString builtIn = QStringLiteral(":/veltorkyn/scenarios/%1.json").arg(name);
    const bool bare = !name.contains(QLatin1Char('/'));
    QFile file(bare && QFile::exists(builtIn) ? builtIn : name);
    if (!file.open(QIODevice::ReadOnly))
        throw ScenarioError(name.toStdString() + ": cannot be read: " + file.errorString().toStdString());
    const QByteArray text = file.read(LargestScenario + 1);
    if (file.error() != QFileDevice::NoError)
        throw ScenarioError(name.toStdString() + ": cannot be read: " + file.errorString().toStdString());
    if (text.size() > LargestScenario)
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
