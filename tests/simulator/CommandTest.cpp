#include "Bench.h"

using map27::Milliseconds;

TEST(Command, MistakesAreAnsweredInPlainWords)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", "error the command is missing"},
        {"stattus Unit20 1", "error unknown command \"stattus\"; help lists them"},
        {"status", "error the sender is missing"},
        {"status Unit99 1", "error there is no \"Unit99\" in the fleet, and it is no prefix/ident"},
        {"status 0/8101 1", "error there is no \"0/8101\" in the fleet, and it is no prefix/ident"},
        {"status 128/1 1", "error there is no \"128/1\" in the fleet, and it is no prefix/ident"},
        {"status Unit20", "error the status is missing"},
        {"status Unit20 32", "error the status must be 0 to 31, not \"32\""},
        {"status Unit20 5x", "error the status must be 0 to 31, not \"5x\""},
        {"status Unit20 5 6", "error \"6\" is too much"},
        {"status Group90 5", "error Group90 is a group, and only a radio sends and calls"},
        {"text Unit20", "error the text is empty"},
        {"text Unit20 Grüße", "error the coding has no character \"ü\""},
        {"text Unit20 \xFF\xFE", "error the text is not UTF-8"},
        {"call Unit20 loud",
         "error \"loud\" is none of ring, connected, emergency, group, system, data, for"},
        {"call Group90", "error Group90 is a group, and only a radio sends and calls"},
        {"call Unit20 for", "error the number of seconds is missing"},
        {"call Unit20 for nan", "error the number of seconds must be 0 to 86400, not \"nan\""},
        {"pabx-call group", "error a telephone can call only a single radio"},
        {"pstn-call 12x", "error \"12x\" is no telephone number"},
        {"contact broken", "error contact must be lost or found, not \"broken\""},
        {"field 256", "error the field strength must be 0 to 255, not \"256\""},
        {"behave Nobody busy", "error there is no \"Nobody\" in the fleet"},
        {"behave Unit20 call", "error the behaviour is missing"},
        {"behave Unit20 busy 1 -1", "error the time to answer must be 0 to 3600000, not \"-1\""},
        {"sensor Plant30 8 on", "error the number must be 0 to 7, not \"8\""},
        {"sensor Plant30 0 red", "error the state must be on, off or unknown, not \"red\""},
        {"control Unit20 0 on", "error Unit20 is no outstation"},
        {"groups Nobody", "error there is no \"Nobody\" in the fleet"},
        {"signals Unit20", "error that is not an outstation"},
        {"numbering 0/2", "error Unit20 has this address"},
        {"numbering 5", "error \"5\" is no prefix/ident"},
        {"numbering 1/5 units 20 10 2", "error the highest number must be 20 to 8100, not \"10\""},
        {"silent maybe", "error silent must be on or off, not \"maybe\""},
        {"silent on 0", "error the number of seconds must be more than 0"},
        {"fault noise 2", "error noise must be off or 0 to 1, not \"2\""},
        {"modem 01", "error unknown command \"modem\"; help lists them"},
        {"storm 10 1.5", "error the share of texts must be 0 to 1, not \"1.5\""},
        {"storm 0", "error the number of messages must be 1 to 5000, not \"0\""},
        {"hangup now", "error \"now\" is too much"},
        {"hangup", "error there is no call"},
    };
    TerminalBench bench;
    for (const auto& [command, answer] : cases)
        EXPECT_EQ(bench.Execute(command), answer) << command;
    EXPECT_TRUE(bench.seen.empty());
}

TEST(Command, StateFollowsTheRadio)
{
    TerminalBench bench;
    EXPECT_EQ(bench.Execute("last"), "ok");
    bench.Deliver(bench.console.MakeCall({0, 7000}, false, true, false, bench.now).output);
    EXPECT_EQ(bench.Execute("last"), "ok priority broadcast to Group90 (0/7000)");
    EXPECT_NE(bench.Execute("state").find("call=setting-up"), std::string::npos);
    bench.RunFor(Milliseconds(500));
    bench.Deliver(bench.console.SetTransmit(true, bench.now).output);
    EXPECT_EQ(bench.Execute("state"),
              "ok link=ready contact=yes field=158 hook=off transmit=on call=connected message=idle");
    bench.Execute("contact lost");
    bench.Deliver(bench.simulation.ConsoleWent(bench.now));
    EXPECT_EQ(bench.Execute("state"),
              "ok link=down contact=no field=0 hook=on transmit=off call=idle message=idle");
    EXPECT_EQ(bench.Execute("status Unit20 1"), "error no console is connected");
}

TEST(Command, OneServiceOfAMemberCanChangeItsBehaviour)
{
    TerminalBench bench;
    EXPECT_EQ(bench.Execute("behave unit20 text overload 10"), "ok");
    EXPECT_NE(bench.Execute("list").find("Unit20 0/2 unit status answers text overload call answers "
                                         "regroup answers\n"),
              std::string::npos);
}

TEST(Command, HelpListsEveryCommandItKnows)
{
    TerminalBench bench;
    const std::string help = '\n' + bench.Execute("help");
    for (const char* word :
         {"status", "text",   "call",    "pstn-call", "pabx-call", "hangup",  "contact", "field",
          "behave", "sensor", "control", "numbering", "groups",    "signals", "restart", "storm",
          "fault",  "silent", "state",   "last",      "list",      "help"})
        EXPECT_NE(help.find(std::string("\n  ") + word + ' '), std::string::npos) << word;
    EXPECT_TRUE(help.ends_with("\nok"));
}

TEST(Script, RunsOnlyWhileAConsoleIsThere)
{
    sim::Scenario scenario = sim::LoadScenario("tour");
    const sim::Action status = sim::StatusAction{{0, 2}, 7};
    scenario.events.push_back({Milliseconds(2000), Milliseconds(1000), status});
    scenario.events.push_back({Milliseconds(2500), Milliseconds(0), sim::ContactAction{false}});
    TerminalBench bench(scenario); // the link has been up for 500 ms

    bench.RunFor(Milliseconds(1000));
    bench.Deliver(bench.simulation.ConsoleWent(bench.now));
    bench.console.Stop();
    bench.RunFor(Milliseconds(60000));
    EXPECT_TRUE(bench.Events<map27::StatusReceived>().empty());

    bench.Deliver(bench.console.Start(bench.now));
    bench.Deliver(bench.simulation.ConsoleCame(bench.now));
    bench.RunFor(Milliseconds(900));
    EXPECT_EQ(bench.Events<map27::StatusReceived>().size(), 1U);
    bench.RunFor(Milliseconds(2000)); // two more fall into the time without contact
    EXPECT_EQ(bench.Events<map27::StatusReceived>().size(), 1U);
    EXPECT_EQ(
        std::ranges::count(bench.notes, "status 7 from Unit20 (0/2) left out: the radio is out of contact"),
        2);
}
