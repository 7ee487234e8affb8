#include "map27/Describe.h"

#include "map27/codec/CharacterCoding.h"

using namespace map27;

namespace {

// The two directions name some fields differently.
class Describer {
public:
    explicit Describer(bool toRadio) : m_toRadio(toRadio) {}

    void operator()(const EscapeMessage&) {}
    void operator()(const RadioTestMessage&) {}
    void operator()(const ModemDataMessage&) {}

    void operator()(const StatusMessage& message)
    {
        Put(m_toRadio ? "called" : "calling", message.party);
        Put("status", message.status);
    }

    void operator()(const ShortDataMessage& message)
    {
        Put(m_toRadio ? "called" : "calling", message.party);
        Put("coding", static_cast<int>(message.data.coding));
        Put("bitsInLastOctet", message.data.bitsInLastOctet);
        Put("nlb", message.data.bitsInLastOctet - 1);
        Put("dataHex", ToHex(message.data.octets, 0));
        Put("bits", static_cast<int>(message.data.Bits()));
        Put("text", DecodeText(message.data));
    }

    void operator()(const CallMessage& message)
    {
        const CallDetails details = message.details;
        Put(m_toRadio ? "called" : "calling", message.party);
        Put("callDetails.octet", details.octet);
        Put("callDetails.include", details.Include());
        Put("callDetails.data", details.Data());
        Put("callDetails.custom", details.Custom());
        Put("callDetails.noReply", details.OneWay());
        Put("callDetails.highPriority", details.HighPriority());
        Put("callDetails.group", details.Group());
        Put("callDetails.hookRequired", details.OffHookNeeded());
    }

    void operator()(const ClearMessage& message)
    {
        Put("party", message.address);
        Put("cause", message.cause);
    }

    void operator()(const SettingsMessage& message)
    {
        PutFacilities("a", message.facilitiesA);
        Put("b", message.facilitiesB);
        Put("c", message.facilitiesC);
        PutCodings(message.codings.value_or(0));
    }

    void operator()(const ProtocolInfoMessage& message) { Put("reason", message.reason); }
    void operator()(const InterrogationMessage& message) { Put("reason", message.reason); }

    void operator()(const RadioControlMessage& message)
    {
        Put("offHook", message.offHook);
        Put("transmit", message.transmit);
    }

    void operator()(const VolumeMessage& message)
    {
        Put("point.0", (message.points & 0x01) != 0 ? "speech" : "");
        const bool toValue = (message.setting & 0x0F) == 3;
        Put("set", toValue ? "value" : message.setting == 1 ? "up" : "");
        Put("value", toValue ? std::to_string(message.setting >> 4) : "null");
    }

    void operator()(const DialledStringMessage& message) { Put("charsHex", ToHex(message.characters, 0)); }

    void operator()(const DiversionRequestMessage& message)
    {
        Put("target", message.target);
        Put("scope", message.info & 0x18 ? "" : "speech and data");
        Put("thirdParty", (message.info & 0x01) != 0);
    }

    void operator()(const DiversionCancelMessage& message)
    {
        Put("party", message.party);
        Put("scope", message.info & 0x18 ? "" : "speech and data");
        Put("kind", message.info & 0x03 ? "" : "self");
    }

    void operator()(const PersonalityMessage& message)
    {
        Put("radio", message.radio);
        Put("manufacturer", message.manufacturer);
        Put("model", message.model);
        Put("serial", static_cast<int>(message.serial));
        PutFacilities("facilitiesA", message.facilitiesA);
        Put("mpt1327FormatSupported", message.FreeFormatSupported());
        Put("facilitiesB", message.facilitiesB);
        Put("facilitiesC", message.facilitiesC);
        PutCodings(message.codings);
    }

    void operator()(const NumberingMessage& message)
    {
        Put("radio", message.radio);
        PutRange("individual", message.individuals);
        PutRange("group", message.groups);
        for (std::size_t index = 0; index < message.groupList.size(); ++index)
            Put("groups." + std::to_string(index), message.groupList[index]);
    }

    void operator()(const OperatingConditionMessage& message)
    {
        const auto seconds = message.MaxCallSeconds();
        Put("inContact", message.inContact);
        Put("offHook", message.offHook);
        Put("transmitting", message.transmitting);
        Put("fieldStrength", message.fieldStrength == 0 ? "null" : std::to_string(message.fieldStrength));
        Put("mcdtRaw", message.maxCallTimeCode);
        Put("maxCallSeconds", seconds ? std::to_string(*seconds) : "null");
    }

    void operator()(const NetworkInfoMessage& message)
    {
        Put("channel", message.channel);
        Put("sysCode", message.systemIdentity);
    }

    void operator()(const AcknowledgementMessage& message)
    {
        const bool calling = message.subject == AckSubject::Receive;
        Put(calling ? "calling" : "called", message.party);
        Put("cause", message.cause);
        Put("type", message.TypeOctet());
        Put("category", message.outcome == AckOutcome::Positive ? "positive"
                        : message.outcome == AckOutcome::Queued ? "queue/wait"
                                                                : "negative");
    }

    Fields fields;

private:
    void Put(const std::string& name, const std::string& value) { fields[name] = value; }
    void Put(const std::string& name, const char* value) { fields[name] = value; }
    void Put(const std::string& name, int value) { fields[name] = std::to_string(value); }
    void Put(const std::string& name, bool value) { fields[name] = value ? "true" : "false"; }

    void Put(const std::string& name, Address address)
    {
        Put(name + ".pfix", address.prefix);
        Put(name + ".ident", address.ident);
    }

    void Put(const std::string& name, const Party& party)
    {
        const AddressDescription& description = party.description;
        Put(name, party.address);
        Put("ext.adesc", static_cast<int>(description.kind));
        Put("ext.digits", description.digits);
        Put("ext.exchange", description.exchange);
        Put("ext", description.unit);
    }

    void PutRange(const std::string& name, const IdentRange& range)
    {
        Put(name + "Digits", range.threeDigits ? 3 : 2);
        Put(name + "Base", range.base);
        Put(name + "Highest", range.highest);
    }

    void PutFacilities(const std::string& name, std::uint8_t bits)
    {
        Put(name + ".voice", (bits & Facility::Voice) != 0);
        Put(name + ".modem", (bits & Facility::Modem) != 0);
        Put(name + ".status", (bits & Facility::Status) != 0);
        Put(name + ".sst", (bits & Facility::Sst) != 0);
        Put(name + ".mst", (bits & Facility::Mst) != 0);
        Put(name + ".autoDivertCalls", (bits & Facility::AutomaticDiversion) != 0);
        Put(name + ".callBackLogging", (bits & Facility::CallBackLog) != 0);
    }

    void PutCodings(std::uint8_t bits)
    {
        const std::pair<std::uint8_t, const char*> names[] = {
            {CodingBit::BcdAscii, "bcdAsAscii"}, {CodingBit::TelexAscii, "telexAsAscii"},
            {CodingBit::Binary, "binary"},       {CodingBit::Bcd, "bcd"},
            {CodingBit::Telex, "telex"},         {CodingBit::Ccitt5, "ascii7"},
            {CodingBit::PcCharacters, "pc8"}};
        int index = 0;
        for (const auto& [bit, name] : names) {
            if ((bits & bit) != 0)
                Put("codings." + std::to_string(index++), name);
        }
    }

    bool m_toRadio;
};

} // namespace

Fields Describe(const ToRadio& message)
{
    Describer describer(true);
    std::visit(describer, message);
    return describer.fields;
}

Fields Describe(const FromRadio& message)
{
    Describer describer(false);
    std::visit(describer, message);
    return describer.fields;
}
