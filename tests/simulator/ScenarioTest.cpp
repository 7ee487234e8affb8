#include "simulator/script/ScenarioReader.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(Scenario, WhatIsNoJsonIsToldWithItsLine)
{
    for (const auto& [document, expected] :
         {std::pair("{\n\"radio\":\n{,\n}", "line 3: not valid JSON: unterminated object"),
          std::pair("", "line 1: not valid JSON: illegal value")}) {
        try {
            sim::ReadScenario(document);
            ADD_FAILURE() << "accepted: " << document;
        } catch (const sim::ScenarioError& error) {
            EXPECT_STREQ(error.what(), expected);
        }
    }
}

TEST(Scenario, ReactionsBuildUponTheMembersOwn)
{
    const sim::Scenario scenario = sim::ReadScenario(R"({"radio": {"prefix": 0, "ident": 3}, "fleet": [
        {"name": "B", "prefix": 0, "ident": 4, "behaviour": "rings", "reactAfterMs": 100,
         "answerAfterMs": 1000,
         "status": "slow", "text": {"reactAfterMs": 5}, "call": {"talkMs": 7}}]})");
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
