#pragma once

#include "simulator/line/Line.h"
#include "simulator/network/Radio.h"
#include "simulator/script/Command.h"
#include "simulator/script/Script.h"

namespace sim {

struct SimulationSettings {
    unsigned bitsPerSecond = 9600;             // 0: the line takes no time
    FaultSettings faults{};                    // override those of the scenario
    std::optional<Milliseconds> silentAfter{}; // since the link first came up
    std::uint64_t seed = 1;
};

struct SimulationOutput {
    map27::Octets toConsole;
    std::vector<TracedFrame> traced;
    std::vector<std::string> notes; // for a log, in English
};

// Radio, network, line and script together: the whole program but for its port, clock and files. Used like
// map27::Link; times must not run backwards.
class Simulation {
public:
    Simulation(const Scenario& scenario, const SimulationSettings& settings);

    SimulationOutput ConsoleCame(TimePoint now);
    SimulationOutput ConsoleWent(TimePoint now);
    SimulationOutput Feed(map27::OctetSpan octets, TimePoint now);
    SimulationOutput OnTime(TimePoint now);
    Deadline NextDeadline() const;

    struct Answer {
        std::string text; // lines, the last one "ok ..." or "error ...", without its line end
        SimulationOutput output;
    };
    Answer Execute(std::string_view commandLine, TimePoint now);

    const Radio& SimulatedRadio() const { return m_radio; }

private:
    void Advance(TimePoint now);
    void Take(RadioOutput output, TimePoint now);
    void Pump(TimePoint now);
    void RunScript(TimePoint now);
    std::string Perform(const Action& action, TimePoint now);
    void BeSilent(bool silent, TimePoint now, Milliseconds duration);
    void FollowLink(TimePoint now);
    std::string Perform(const Command& command, TimePoint now);
    std::string ListText() const;
    std::string StateText() const;
    SimulationOutput TakeOutput() { return std::exchange(m_output, {}); }

    SimulationSettings m_settings;
    Radio m_radio;
    Line m_line;
    Script m_script;
    Deadline m_silentAt;
    Deadline m_silentUntil;
    bool m_linkSeen = false;
    SimulationOutput m_output;
};

} // namespace sim
