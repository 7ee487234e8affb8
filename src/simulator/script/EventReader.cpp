#include "simulator/script/EventReader.h"

#include "simulator/script/NumberReader.h"
#include "simulator/script/ReactionReader.h"

#include <algorithm>
#include <array>

namespace sim {

namespace {

constexpr double longestSeconds = 30.0 * 86400;

map27::Address ReadSender(const JsonNode& event, const Fleet& fleet)
{
    const JsonNode from = event.Member("from");
    const std::string text = from.Text();
    const auto address = fleet.Resolve(text);
    if (!address)
        from.Fail("there is no \"" + text + "\" in the fleet, and it is no prefix/ident");
    return *address;
}

Action ReadStatus(const JsonNode& event, const Scenario& scenario)
{
    event.RequireMembers({"at", "every", "do", "from", "code"});
    return StatusAction{ReadSender(event, scenario.fleet),
                        static_cast<std::uint8_t>(event.Member("code").Integer(0, 31))};
}

Action ReadText(const JsonNode& event, const Scenario& scenario)
{
    event.RequireMembers({"at", "every", "do", "from", "text", "bits"});
    TextAction action{ReadSender(event, scenario.fleet), map27::TextCoding::SevenBit,
                      event.Member("text").Text()};
    if (const auto bits = event.Find("bits"))
        action.coding = bits->Integer(7, 8) == 8 ? map27::TextCoding::EightBit : map27::TextCoding::SevenBit;
    return action;
}

CallScope ReadScope(const JsonNode& node)
{
    const std::string word = node.Text();
    if (word == "group")
        return CallScope::Group;
    if (word == "system")
        return CallScope::SystemWide;
    if (word != "radio")
        node.Fail("must be \"radio\", \"group\" or \"system\", not \"" + word + "\"");
    return CallScope::Individual;
}

void ReadCallFields(const JsonNode& event, CallAction& action)
{
    if (const auto emergency = event.Find("emergency"))
        action.emergency = emergency->Boolean();
    if (const auto rings = event.Find("rings"))
        action.rings = rings->Boolean();
    if (const auto hangUp = event.Find("hangUpAfter"))
        action.hangUpAfter = Milliseconds(hangUp->SecondsAsMilliseconds(86400));
    if (const auto data = event.Find("data"))
        action.data = data->Boolean();
}

Action ReadCall(const JsonNode& event, const Scenario& scenario)
{
    event.RequireMembers({"at", "every", "do", "from", "to", "emergency", "rings", "hangUpAfter", "data"});
    CallAction action;
    action.from = ReadSender(event, scenario.fleet);
    if (const auto to = event.Find("to"))
        action.scope = ReadScope(*to);
    action.rings = action.scope == CallScope::Individual;
    ReadCallFields(event, action);
    return action;
}

template <std::uint16_t ident> Action ReadTelephoneCall(const JsonNode& event, const Scenario& scenario)
{
    event.RequireMembers({"at", "every", "do", "emergency", "rings", "hangUpAfter"});
    CallAction action;
    action.from = {scenario.radio.address.prefix, ident};
    ReadCallFields(event, action);
    return action;
}

Action ReadHangUp(const JsonNode& event, const Scenario&)
{
    event.RequireMembers({"at", "every", "do"});
    return HangUpAction{};
}

template <bool found> Action ReadContact(const JsonNode& event, const Scenario&)
{
    event.RequireMembers({"at", "every", "do"});
    return ContactAction{found};
}

Action ReadField(const JsonNode& event, const Scenario&)
{
    event.RequireMembers({"at", "every", "do", "strength"});
    return FieldAction{static_cast<std::uint8_t>(event.Member("strength").Integer(0, 255))};
}

Action ReadBehave(const JsonNode& event, const Scenario&)
{
    event.RequireMembers({"at", "every", "do", "who", "service", "behaviour"});
    BehaveAction action{event.Member("who").Text(), std::nullopt,
                        Reaction::Of(ReadBehaviour(event.Member("behaviour")))};
    if (const auto service = event.Find("service")) {
        action.service = ServiceOfWord(service->Text());
        if (!action.service)
            service->Fail("must be \"status\", \"text\", \"call\" or \"regroup\", not \"" + service->Text() +
                          "\"");
    }
    return action;
}

template <bool isControl> Action ReadSignal(const JsonNode& event, const Scenario&)
{
    event.RequireMembers({"at", "every", "do", "who", "number", "is"});
    const JsonNode is = event.Member("is");
    const auto signal = SignalOfWord(is.Text());
    if (!signal)
        is.Fail("must be \"on\", \"off\" or \"unknown\", not \"" + is.Text() + "\"");
    return SignalAction{event.Member("who").Text(), isControl,
                        static_cast<std::uint8_t>(event.Member("number").Integer(0, 7)), *signal};
}

Action ReadNumbering(const JsonNode& event, const Scenario&)
{
    event.RequireMembers({"at", "every", "do", "prefix", "ident", "units", "groups"});
    NumberingAction action{ReadAddress(event), std::nullopt, std::nullopt};
    if (const auto units = event.Find("units"))
        action.units = ReadRange(*units);
    if (const auto groups = event.Find("groups"))
        action.groups = ReadRange(*groups);
    return action;
}

Action ReadStorm(const JsonNode& event, const Scenario&)
{
    event.RequireMembers({"at", "every", "do", "count", "texts"});
    StormAction action;
    if (const auto count = event.Find("count"))
        action.count = count->Integer(1, 5000);
    if (const auto texts = event.Find("texts"))
        action.texts = texts->Number(0, 1);
    return action;
}

Action ReadFault(const JsonNode& event, const Scenario&)
{
    event.RequireMembers({"at", "every", "do", "name", "value"});
    const JsonNode name = event.Member("name");
    const FaultDescription* fault = FaultOfWord(name.Text());
    if (!fault)
        name.Fail("unknown fault \"" + name.Text() + "\"; there are " + FaultWords());
    const auto value = event.Find("value");
    return FaultAction{fault->kind, value ? value->Number(0, fault->highest) : fault->usual};
}

Action ReadSilence(const JsonNode& event, const Scenario&)
{
    event.RequireMembers({"at", "every", "do", "seconds"});
    return SilenceAction{true, Milliseconds(event.Member("seconds").SecondsAsMilliseconds(86400))};
}

Action ReadRestart(const JsonNode& event, const Scenario&)
{
    event.RequireMembers({"at", "every", "do"});
    return RestartAction{};
}

struct EventKind {
    std::string_view word;
    Action (*read)(const JsonNode&, const Scenario&);
};

constexpr std::array kinds{
    EventKind{"status", ReadStatus},
    EventKind{"text", ReadText},
    EventKind{"call", ReadCall},
    EventKind{"pstn-call", ReadTelephoneCall<map27::Ident::Pstn>},
    EventKind{"pabx-call", ReadTelephoneCall<map27::Ident::Pabx>},
    EventKind{"hangup", ReadHangUp},
    EventKind{"contact-lost", ReadContact<false>},
    EventKind{"contact-found", ReadContact<true>},
    EventKind{"field", ReadField},
    EventKind{"behave", ReadBehave},
    EventKind{"sensor", ReadSignal<false>},
    EventKind{"control", ReadSignal<true>},
    EventKind{"numbering", ReadNumbering},
    EventKind{"storm", ReadStorm},
    EventKind{"fault", ReadFault},
    EventKind{"silence", ReadSilence},
    EventKind{"restart", ReadRestart},
};

Action ReadAction(const JsonNode& event, const Scenario& scenario)
{
    const JsonNode what = event.Member("do");
    const std::string word = what.Text();
    const auto kind = std::ranges::find(kinds, word, &EventKind::word);
    if (kind != kinds.end())
        return kind->read(event, scenario);
    std::string words;
    for (const EventKind& known : kinds)
        words += (words.empty() ? "" : ", ") + std::string(known.word);
    what.Fail("unknown event \"" + word + "\"; there are " + words);
}

} // namespace

TimedEvent ReadEvent(const JsonNode& node, const Scenario& scenario)
{
    if (!node.IsObject())
        node.Fail("must be an object");
    TimedEvent event;
    event.at = Milliseconds(node.Member("at").SecondsAsMilliseconds(longestSeconds));
    if (const auto every = node.Find("every")) {
        event.every = Milliseconds(every->SecondsAsMilliseconds(longestSeconds));
        if (event.every < Milliseconds(100))
            every->Fail("must be 0.1 seconds or more");
    }
    event.action = ReadAction(node, scenario);
    if (const std::string problem = CheckAction(event.action, scenario.fleet); !problem.empty())
        node.Fail(problem);
    return event;
}

} // namespace sim
