#pragma once

#include "map27/terminal/Terminal.h"
#include "simulator/program/Simulation.h"
#include "simulator/script/ScenarioReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

// A console's end of the link against the simulated radio, in virtual time on a line that takes none.
template <typename End, typename Event> class Bench {
public:
    struct Seen {
        map27::Milliseconds at; // since the last Forget()
        Event event;
    };

    explicit Bench(const sim::Scenario& scenario = sim::LoadScenario("tour"),
                   const sim::SimulationSettings& settings = {.bitsPerSecond = 0})
        : simulation(scenario, settings)
    {
        Deliver(console.Start(now));
        Deliver(simulation.ConsoleCame(now));
        RunFor(map27::Milliseconds(500));
        Forget();
    }

    void RunFor(map27::Milliseconds duration)
    {
        const map27::TimePoint end = now + duration;
        for (;;) {
            const map27::Deadline next = map27::Earlier(console.NextDeadline(), simulation.NextDeadline());
            if (!next || *next > end)
                break;
            now = std::max(now, *next);
            Deliver(simulation.OnTime(now));
            Deliver(console.OnTime(now));
        }
        now = end;
    }

    // What the console does, by its output.
    template <typename Output> void Deliver(const Output& output)
    {
        for (const Event& event : output.events)
            seen.push_back({std::chrono::duration_cast<map27::Milliseconds>(now - m_zero), event});
        for (const map27::Octets& frame : output.frames)
            Deliver(simulation.Feed(frame, now));
        NoteRequest();
    }

    void Deliver(const sim::SimulationOutput& output)
    {
        traced.insert(traced.end(), output.traced.begin(), output.traced.end());
        notes.insert(notes.end(), output.notes.begin(), output.notes.end());
        NoteRequest();
        if (!output.toConsole.empty())
            Deliver(console.Feed(output.toConsole, now));
    }

    std::string Execute(std::string_view command)
    {
        const auto [text, output] = simulation.Execute(command, now);
        Deliver(output);
        return text;
    }

    void Forget()
    {
        m_zero = now;
        seen.clear();
        traced.clear();
        notes.clear();
        requests.clear();
    }

    template <typename Wanted> std::vector<Wanted> Events() const
    {
        std::vector<Wanted> found;
        for (const Seen& one : seen) {
            if (const auto* event = std::get_if<Wanted>(&one.event))
                found.push_back(*event);
        }
        return found;
    }

    map27::TimePoint now{};
    End console;
    sim::Simulation simulation;
    std::vector<Seen> seen;
    std::vector<sim::TracedFrame> traced;
    std::vector<std::string> notes;
    std::vector<std::string> requests; // what reached the network; the same twice in a row counts once

private:
    void NoteRequest()
    {
        const std::string& last = simulation.SimulatedRadio().LastRequest();
        if (last != m_lastRequest)
            requests.push_back(last);
        m_lastRequest = last;
    }

    std::string m_lastRequest;
    map27::TimePoint m_zero{};
};

// The console proper, with the procedures of the standard.
using TerminalBench = Bench<map27::Terminal, map27::TerminalEvent>;

// A console that sends whatever octets it is given.
class RawBench : public Bench<map27::Link, map27::LinkEvent> {
public:
    using Bench::Bench;

    void Send(const std::string& hex)
    {
        auto [result, output] = console.Send(ToOctets(hex), now);
        EXPECT_EQ(result, map27::SendResult::Accepted) << hex;
        Deliver(output);
    }

    // Messages of the radio since the last time asked, "C0 00 00 02 00 00".
    std::vector<std::string> TakeMessages()
    {
        std::vector<std::string> messages;
        for (const auto& received : Events<map27::MessageReceived>())
            messages.push_back(map27::ToHex(received.message));
        seen.clear();
        return messages;
    }

    static map27::Octets ToOctets(const std::string& hex)
    {
        const QByteArray octets = QByteArray::fromHex(QByteArray::fromStdString(hex));
        return {octets.begin(), octets.end()};
    }
};
