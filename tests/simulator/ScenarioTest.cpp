#include "simulator/script/ScenarioReader.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// The document with the part named replaced; "radio" alone is enough for a scenario.
QByteArray Document(const QByteArray& more)
{
    return R"({"radio": {"prefix": 0, "ident": 3},)" + more + "}";
}

QByteArray FleetOf(const QByteArray& member)
{
    return Document(R"("fleet": [{"name": "A", "prefix": 0, "ident": 2}, )" + member + "]");
}

QByteArray EventOf(const QByteArray& event)
{
    return Document(R"("fleet": [{"name": "A", "prefix": 0, "ident": 2},
                                 {"name": "P", "prefix": 0, "ident": 8, "kind": "outstation"},
                                 {"name": "G", "prefix": 0, "ident": 7000, "kind": "group"}],
                       "events": [)" +
                    event + "]");
}

struct ErrorCase {
    QByteArray document;
    std::string expected; // the whole message
};

} // namespace

TEST(Scenario, ErrorsNameThePlaceAndTheReason)
{
    const ErrorCase cases[] = {
        {"{\n\"radio\":\n{,\n}", "line 3: not valid JSON: unterminated object"},
        {"", "line 1: not valid JSON: illegal value"},
        {"[]", "top level: must be an object, not a list"},
        {"{}", "top level: field \"radio\" is missing"},
        {R"({"radio": 3})", "radio: must be an object, not a number"},
        {R"({"radio": {"prefix": 0}})", "radio: field \"ident\" is missing"},
        {R"({"radio": {"prefix": 128, "ident": 3}})", "radio.prefix: must be 0 to 127, not 128"},
        {R"({"radio": {"prefix": 0, "ident": 8101}})", "radio.ident: must be 1 to 8100, not 8101"},
        {R"({"radio": {"prefix": 0.5, "ident": 3}})", "radio.prefix: must be a whole number, not 0.5"},
        {R"({"radio": {"prefix": 0, "ident": 3, "units": {"base": 20, "max": 10, "digits": 2}}})",
         "radio.units.max: must be 20 to 8100, not 10"},
        {R"({"radio": {"prefix": 0, "ident": 3, "units": {"base": 20, "max": 30, "digits": 4}}})",
         "radio.units.digits: must be 2 to 3, not 4"},
        {R"({"base": "no-day"})", "base: no-day: cannot be read: No such file or directory"},
        {R"({"base": "storm"})", "base: storm: base: a base may not have a base of its own"},
        {R"({"base": "tour", "fleet": [{"name": "Unit20", "prefix": 0, "ident": 70}]})",
         "fleet[0].name: there is another \"Unit20\""},
        {Document(R"("flet": [])"), "top level: unknown field \"flet\"; known are base, radio, network, "
                                    "fleet, strangers, pstn, pabx, events, "
                                    "faults"},
        {Document(R"("network": {"systemIdentity": "8000"})"),
         "network.systemIdentity: must be a hexadecimal text, \"0000\" to \"7FFF\""},
        {Document(R"("network": {"fieldStrength": [10]})"),
         "network.fieldStrength: must be a number, or a list of the lowest and the highest one"},
        {Document(R"("network": {"fieldStrength": [100, 50]})"),
         "network.fieldStrength[1]: must be 100 to 255, not 50"},
        {Document(R"("network": {"maxCallSeconds": 290})"),
         "network.maxCallSeconds: must be 0 (no limit), 10 to 254 seconds, or whole minutes of 300 to 780 "
         "seconds"},
        {R"({"radio": {"prefix": 0, "ident": 3, "facilities": ["diversion"]}})",
         "radio.facilities[0]: must be \"data\", not \"diversion\""},
        {Document(R"("network": {"mediumTexts": "lost"})"),
         "network.mediumTexts: must be \"carried\", \"refused\" or \"split\", not \"lost\""},
        {Document(R"("faults": {"noise": 2})"), "faults.noise: must be 0 to 1, not 2"},
        {FleetOf(R"({"name": "B", "prefix": 0, "ident": 4, "divertTo": "B"})"),
         "fleet[1].divertTo: there is no other \"B\" in the fleet"},
        {Document(R"("fleet": {})"), "fleet: must be a list, not an object"},
        {FleetOf(R"({"name": "a", "prefix": 0, "ident": 4})"), "fleet[1].name: there is another \"a\""},
        {FleetOf(R"({"name": "B", "prefix": 0, "ident": 2})"), "fleet[1]: \"A\" has the same address"},
        {FleetOf(R"({"name": "B", "prefix": 0, "ident": 3})"),
         "fleet[1]: this is the address of the radio itself"},
        {FleetOf(R"({"name": "B 1", "prefix": 0, "ident": 4})"),
         "fleet[1].name: must be a name of 1 to 32 characters without blank, slash and quotation mark"},
        {FleetOf(R"({"name": "B", "prefix": 0, "ident": 4, "kind": "car"})"),
         "fleet[1].kind: must be \"unit\", \"group\" or \"outstation\", not \"car\""},
        {FleetOf(R"({"name": "B", "prefix": 0, "ident": 4, "call": {"behaviour": true}})"),
         "fleet[1].call.behaviour: must be a text, not true or false"},
        {FleetOf(R"({"name": "B", "prefix": 0, "ident": 4, "status": "asleep"})"),
         "fleet[1].status: unknown behaviour \"asleep\"; known are answers, slow, rings, queued, busy, "
         "refuses, "
         "engaged, no-answer, call-back, out-of-reach, rejects, overload, diverted, diverted-away, "
         "diverted-nowhere, diverted-to-group, silent"},
        {FleetOf(R"({"name": "B", "prefix": 0, "ident": 4, "outstation": {}})"),
         "fleet[1].outstation: belongs to the kind \"outstation\" only"},
        {FleetOf(R"({"name": "B", "prefix": 0, "ident": 4, "kind": "outstation",
                     "outstation": {"sensors": "0101"}})"),
         "fleet[1].outstation.sensors: must be eight characters, number 7 first: 0 off, 1 on, any other "
         "unknown"},
        {Document(R"("pstn": {"numbers": {"12a": "rings"}})"),
         "pstn.numbers.12a: the number must be 1 to 24 characters 0-9 * #"},
        {EventOf(R"({"do": "hangup"})"), "events[0]: field \"at\" is missing"},
        {EventOf(R"({"at": -1, "do": "hangup"})"), "events[0].at: must be 0 to 2592000, not -1"},
        {EventOf(R"({"at": 1, "every": 0, "do": "hangup"})"), "events[0].every: must be 0.1 seconds or more"},
        {EventOf(R"({"at": 1, "do": "sleep"})"), "events[0].do: unknown command \"sleep\"; help lists them"},
        {EventOf(R"({"at": 1, "do": "state"})"),
         "events[0].do: this is a question, and nobody would have the answer"},
        {EventOf(R"({"at": 1, "do": "status A 1", "code": 1})"),
         "events[0]: unknown field \"code\"; known are at, every, do"},
        {EventOf(R"({"at": 1, "do": "status B 1"})"),
         "events[0].do: there is no \"B\" in the fleet, and it is no prefix/ident"},
        {EventOf(R"({"at": 1, "do": "status G 1"})"),
         "events[0].do: G is a group, and only a radio sends and calls"},
        {EventOf(R"({"at": 1, "do": "text A 8 )" + QByteArray(89, 'x') + R"("})"),
         "events[0].do: the text has 89 characters, and 88 are possible"},
        {EventOf(R"({"at": 1, "do": "numbering 0/2"})"), "events[0].do: A has this address"},
    };
    for (const auto& [document, expected] : cases) {
        try {
            sim::ReadScenario(document);
            ADD_FAILURE() << "accepted: " << document.toStdString();
        } catch (const sim::ScenarioError& error) {
            EXPECT_EQ(error.what(), expected);
        }
    }
}

// What was an object of fields before is shown as the line that it should be, and that line is taken.
TEST(Scenario, AnEventOfFieldsIsShownAsALine)
{
    const std::pair<QByteArray, std::string> cases[] = {
        {R"("do": "status", "from": "A", "code": 1)", "status A 1"},
        {R"("do": "text", "from": "A", "text": "say \"ä\"", "bits": 8)", R"(text A 8 say \"ä\")"},
        {R"("do": "text", "from": "A", "text": "8 are here")", "text A 7 8 are here"},
        {R"("do": "call", "from": "A", "to": "radio", "emergency": false, "hangUpAfter": 2.5)",
         "call A for 2.5"},
        {R"("do": "call", "from": "5/9", "to": "group", "emergency": true, "rings": true, "data": true)",
         "call 5/9 ring emergency group data"},
        {R"("do": "pstn-call", "rings": false)", "pstn-call connected"},
        {R"("do": "contact-lost")", "contact lost"},
        {R"("do": "field", "strength": 20)", "field 20"},
        {R"("do": "behave", "who": "A", "behaviour": "busy", "service": "text")", "behave A text busy"},
        {R"("do": "sensor", "who": "P", "number": 3, "is": "unknown")", "sensor P 3 unknown"},
        {R"("do": "numbering", "prefix": 1, "ident": 9, "groups": {"base": 10, "max": 20, "digits": 3})",
         "numbering 1/9 groups 10 20 3"},
        {R"("do": "storm", "texts": 0.5)", "storm 500 0.5"},
        {R"("do": "fault", "name": "noise", "value": 0.3)", "fault noise 0.3"},
        {R"("do": "silence", "seconds": 30)", "silent on 30"},
    };
    for (const auto& [fields, line] : cases) {
        try {
            sim::ReadScenario(EventOf(R"({"at": 1, )" + fields + "}"));
            ADD_FAILURE() << "accepted: " << fields.toStdString();
        } catch (const sim::ScenarioError& error) {
            EXPECT_EQ(error.what(), "events[0]: an event is a line as of a command: \"do\": \"" + line + '"');
        }
        EXPECT_EQ(sim::ReadScenario(EventOf(R"({"at": 1, "do": ")" + QByteArray::fromStdString(line) + "\"}"))
                      .events.size(),
                  1U);
    }
}

TEST(Scenario, ReactionsBuildUponTheMembersOwn)
{
    const sim::Scenario scenario = sim::ReadScenario(FleetOf(R"(
        {"name": "B", "prefix": 0, "ident": 4, "behaviour": "rings", "reactAfterMs": 100,
         "answerAfterMs": 1000,
         "status": "slow", "text": {"reactAfterMs": 5}, "call": {"talkMs": 7}})"));
    const sim::Reactions& reactions = scenario.fleet.Find("b")->reactions;
    using std::chrono::milliseconds;
    EXPECT_EQ(reactions.status, sim::Reaction::Of(sim::Behaviour::Slow));
    EXPECT_EQ(reactions.text,
              (sim::Reaction{sim::Behaviour::Rings, milliseconds(5), milliseconds(1000), {}}));
    EXPECT_EQ(reactions.call,
              (sim::Reaction{sim::Behaviour::Rings, milliseconds(100), milliseconds(1000), milliseconds(7)}));
}

// The tour's members are those of the demonstration's directory, and behave in the busy day as they do there.
TEST(Scenario, TheShippedOnesShareTheirFleet)
{
    const sim::Scenario busy = sim::LoadScenario("busy-day");
    EXPECT_GE(busy.fleet.members.size(), 40U);
    for (const char* name : {"quiet-day", "storm", "failing-network", "training", "tour"}) {
        const sim::Scenario scenario = sim::LoadScenario(name);
        EXPECT_EQ(scenario.events.empty(), std::string(name) == "tour");
        for (const sim::Subscriber& member : scenario.fleet.members) {
            const sim::Subscriber* same = busy.fleet.Find(member.name);
            ASSERT_TRUE(same) << member.name;
            EXPECT_EQ(same->address, member.address);
            EXPECT_EQ(same->reactions.call, member.reactions.call);
        }
    }
    EXPECT_TRUE(
        std::ranges::any_of(busy.fleet.members, [](const auto& one) { return one.divertedTo.has_value(); }));
}

// Whatever lies in the working folder: the demonstration relies on the name.
TEST(Scenario, ABuiltInNameGoesBeforeAFile)
{
    const QTemporaryDir folder;
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path()) && QDir().mkdir("tour"));
    QFile file("storm");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_FALSE(sim::LoadScenario("tour").fleet.members.empty());
    EXPECT_FALSE(sim::LoadScenario("storm").events.empty());
    EXPECT_THROW(sim::LoadScenario("./storm"), sim::ScenarioError);
    QDir::setCurrent(before);
}

TEST(Scenario, AFileWithoutEndIsRefused)
{
    try {
        sim::LoadScenario("/dev/zero");
        ADD_FAILURE() << "read";
    } catch (const sim::ScenarioError& error) {
        EXPECT_STREQ(error.what(), "/dev/zero: is larger than 16 MiB");
    }
}

TEST(Scenario, EveryMemberIsInTheDemonstrationsDirectory)
{
    QFile file(":/veltorkyn/demonstration/directory.json");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonObject directory = QJsonDocument::fromJson(file.readAll()).object();
    std::map<std::string, std::string> idents;
    for (const char* list : {"individuals", "talkgroups"}) {
        for (const auto& entry : directory[list].toArray())
            idents[entry[QString("callsign")].toString().toStdString()] =
                entry[QString("ident")].toString().toStdString();
    }
    const sim::Scenario scenario = sim::LoadScenario("busy-day");
    for (const sim::Subscriber& member : scenario.fleet.members) {
        const bool isGroup = member.kind == sim::SubscriberKind::Group;
        // Two digits from the base of the radio's range: units from 20, groups from 90.
        const int number = isGroup ? member.address.ident - scenario.radio.groups.base + 90
                                   : member.address.ident - scenario.radio.units.base + 20;
        EXPECT_EQ(idents[member.name], (isGroup ? "2005500" : "2002001") + std::to_string(number));
    }
    EXPECT_EQ(idents.size(), scenario.fleet.members.size() + 1); // and the control room
}

TEST(Scenario, MaximumCallTimesThatTheMessageCanTell)
{
    const std::pair<int, std::optional<int>> cases[] = {{0, 255},  {9, {}},  {10, 10}, {254, 254}, {255, {}},
                                                        {299, {}}, {300, 1}, {780, 9}, {840, {}}};
    for (const auto& [seconds, code] : cases) {
        const auto found = sim::MaxCallTimeCode(seconds);
        EXPECT_EQ(found ? std::optional<int>(*found) : std::nullopt, code) << seconds;
        map27::OperatingConditionMessage condition;
        condition.maxCallTimeCode = found.value_or(255);
        if (found && seconds > 0) {
            EXPECT_EQ(condition.MaxCallSeconds(), static_cast<unsigned>(seconds));
        }
    }
}
