#include "map27/check/RadioCheck.h"
#include "simulator/program/Simulation.h"
#include "simulator/replay/Replay.h"
#include "simulator/script/ScenarioReader.h"

#include <gtest/gtest.h>

using map27::CheckReport;
using map27::Milliseconds;

namespace {

// What the simulated radio is told, and when.
struct Told {
    int ms;
    const char* command;
};

// The check at one end of a line of 9600 bit/s and a radio at the other, in virtual time.
template <typename RadioSide> class Bench {
public:
    template <typename... Arguments>
    Bench(bool transmits, bool connected, std::vector<Told> told, Arguments&&... arguments)
        : m_check({.transmitTo = transmits ? std::optional(map27::Address{0, 2}) : std::nullopt}),
          m_radio(std::forward<Arguments>(arguments)...)
    {
        Deliver(m_check.Start(m_now));
        if (connected)
            Deliver(m_radio.ConsoleCame(m_now));
        while (!m_check.IsOver() && m_now < map27::TimePoint{Milliseconds{1200000}}) {
            map27::Deadline next = map27::Earlier(m_check.NextDeadline(), m_radio.NextDeadline());
            if (!told.empty())
                next = map27::Earlier(next, map27::TimePoint{Milliseconds{told.front().ms}});
            m_now = std::max(m_now, *next);
            if (!told.empty() && m_now >= map27::TimePoint{Milliseconds{told.front().ms}}) {
                const auto answer = m_radio.Execute(told.front().command, m_now);
                EXPECT_TRUE(answer.text.starts_with("ok")) << answer.text;
                Deliver(answer.output);
                told.erase(told.begin());
            }
            Deliver(m_radio.OnTime(m_now));
            Deliver(m_check.OnTime(m_now));
        }
    }

    const CheckReport& Report() const { return m_check.Report(); }
    bool IsOver() const { return m_check.IsOver(); }
    std::string Text() const { return CheckReportText(Report(), {"test", "now", "line", 9600}); }
    const std::vector<std::string>& Requests() const { return m_requests; }

    const std::vector<map27::TraceEntry>& Traced() const { return m_traced; }
    RadioSide& Radio() { return m_radio; }

private:
    void Deliver(const map27::CheckOutput& output)
    {
        for (const map27::Octets& frame : output.frames)
            Deliver(m_radio.Feed(frame, m_now));
        m_traced.insert(m_traced.end(), output.traced.begin(), output.traced.end());
        if constexpr (std::is_same_v<RadioSide, sim::Simulation>) {
            const std::string& last = m_radio.SimulatedRadio().LastRequest();
            if (!last.empty() && (m_requests.empty() || m_requests.back() != last))
                m_requests.push_back(last);
        }
    }

    template <typename Output> void Deliver(const Output& output)
    {
        if (!output.toConsole.empty())
            Deliver(m_check.Feed(output.toConsole, m_now));
    }

    map27::TimePoint m_now{};
    map27::RadioCheck m_check;
    RadioSide m_radio;
    std::vector<std::string> m_requests;
    std::vector<map27::TraceEntry> m_traced; // by the check
};

sim::SimulationSettings SettingsWith(const std::string& fault)
{
    sim::SimulationSettings settings;
    std::string problem;
    const std::size_t equals = fault.find('=');
    if (equals != std::string::npos) {
        const auto choice = sim::ChooseFault(fault.substr(0, equals), fault.substr(equals + 1), problem);
        EXPECT_TRUE(choice) << problem;
        settings.faults.Set(choice->kind, choice->value);
    }
    return settings;
}

// Against the simulated radio.
class CheckBench : public Bench<sim::Simulation> {
public:
    CheckBench(const std::string& fault, bool transmits, bool connected = true, std::vector<Told> told = {})
        : Bench(transmits, connected, std::move(told), sim::LoadScenario("tour"), SettingsWith(fault))
    {
    }
};

bool HasDeviation(const CheckReport& report, std::string_view name)
{
    for (const CheckReport::Item& item : report.items)
        if (item.name == name && item.verdict >= CheckReport::Verdict::Deviates)
            return true;
    for (const CheckReport::Struck& one : report.struck)
        if (one.first.kind == name)
            return true;
    return false;
}

// Late, too.
TEST(RadioCheck, ASoundRadioHasNothingToShow)
{
    for (const char* delay : {"delay=150", "delay=500", "delay=3000"}) {
        const CheckBench late(delay, true);
        EXPECT_EQ(late.Report().Deviations(), 0) << late.Text();
        EXPECT_TRUE(late.IsOver());
    }
    const CheckBench bench("", true);
    EXPECT_EQ(bench.Report().Deviations(), 0) << bench.Text();
    EXPECT_TRUE(bench.Report().struck.empty()) << bench.Text();
    EXPECT_EQ(bench.Report().linksLost, 0);
    EXPECT_GT(bench.Report().answers.all.size(), 20U);
    EXPECT_FALSE(bench.Requests().empty());
}

TEST(RadioCheck, NothingGoesOverTheAirUnlessARadioIsNamed)
{
    EXPECT_TRUE(CheckBench("", false).Requests().empty());
}

// Each fault of the simulated radio by what the check says of it.
TEST(RadioCheck, EveryFaultIsFound)
{
    struct Row {
        const char* fault;
        const char* found;
        bool transmits = false;
        bool isAllowed = false;
    };
    constexpr Row rows[] = {
        {"wrong-fcs=0.2", "fcs", false, true},
        {"lost-la=0.3", "unacknowledged"},
        {"duplicate-lt=0.3", "early-repetition"},
        {"noise=0.3", "noise"},
        {"no-credit=0.2", "no-credit", false, true},
        {"no-credit=0.3", "no-credit", false, true},
        {"stray-lr=0.05", "new-link"},
        {"extra-octets=1", "extra-octets"},
        {"unknown-types=0.5", "reserved-type"},
        {"short-settings=1", "short-settings"},
        {"high-network-bits=1", "network-bits"},
        {"high-network-bits=1", "network"},
        {"no-ident=1", "unnamed-answer", true},
        {"drop-frames=1", "link"},
    };
    for (const Row& row : rows) {
        const CheckBench bench(row.fault, row.transmits);
        EXPECT_TRUE(bench.IsOver()) << row.fault;
        EXPECT_TRUE(HasDeviation(bench.Report(), row.found)) << row.fault << '\n' << bench.Text();
        EXPECT_TRUE(!row.isAllowed || bench.Report().Deviations() == 0) << row.fault << '\n' << bench.Text();

        // Its trace, played again, shows the same fault to another check, frame by frame.
        if (std::string(row.fault).starts_with("drop-frames"))
            continue;
        Bench<sim::Replay> again(row.transmits, true, {}, sim::ToReplay(bench.Traced()),
                                 sim::ReplaySettings{});
        EXPECT_TRUE(again.Radio().TheEnd() && again.Radio().TheEnd()->isFaithful)
            << row.fault << ": " << (again.Radio().TheEnd() ? again.Radio().TheEnd()->text : "no end");
        EXPECT_EQ(again.Text(), bench.Text()) << row.fault;
    }
}

// Only what the radio has looked at and does not want is refused.
TEST(RadioCheck, NothingIsTakenForARefusal)
{
    struct Row {
        const char* behaviour;
        const char* status;
        const char* refused; // the first that has to be, and is by any radio
    };
    constexpr Row rows[] = {
        {"behave Unit20 silent", "  no answer status", "  ok        reserved-ident"},
        {"behave Unit20 out-of-reach", "  note      status", "  ok        reserved-ident"},
    };
    for (const Row& row : rows) {
        const CheckBench bench("", true, true, {{200, row.behaviour}});
        EXPECT_NE(bench.Text().find(row.status), std::string::npos) << bench.Text();
        EXPECT_NE(bench.Text().find(row.refused), std::string::npos) << bench.Text();
        EXPECT_EQ(bench.Text().find("present state"), std::string::npos) << bench.Text();
    }
}

// Nobody but the check's user can learn of it.
TEST(RadioCheck, WhatComesInIsShown)
{
    struct Row {
        Told told;
        const char* words;
        bool isEmergency = false;
    };
    constexpr Row rows[] = {
        {{200, "status Unit20 5"}, "RECEIVE STATUS from 0/2: 5"},
        {{6000, "text 0/21 HELP ME"}, "\"HELP ME\""},
        {{6000, "call 0/20"}, "INCOMING CALL from 0/20: to be answered"},
        {{6000, "call 0/20 connected emergency"}, "INCOMING EMERGENCY CALL from 0/20: connected", true},
    };
    for (const Row& row : rows) {
        const CheckBench bench("", false, true, {row.told});
        ASSERT_EQ(bench.Report().received.size(), 1U) << row.words;
        EXPECT_NE(bench.Text().find(row.words), std::string::npos) << bench.Text();
        EXPECT_EQ(bench.Report().HasEmergency(), row.isEmergency);
        EXPECT_EQ(bench.Report().items.back().verdict == CheckReport::Verdict::LeftOut, row.isEmergency)
            << bench.Text();
    }
}

TEST(RadioCheck, ADeadLineEndsTheCheck)
{
    const CheckBench bench("", true, false);
    ASSERT_TRUE(bench.IsOver());
    EXPECT_TRUE(HasDeviation(bench.Report(), "link"));
    EXPECT_NE(CheckReportJson(bench.Report(), {}).find("\"no answer\""), std::string::npos);
}

} // namespace
