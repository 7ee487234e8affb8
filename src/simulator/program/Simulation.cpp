#include "simulator/program/Simulation.h"

namespace sim {

namespace {

const char* CallStateText(CallService::State state)
{
    switch (state) {
    case CallService::State::Idle:
        return "idle";
    case CallService::State::SettingUp:
        return "setting-up";
    case CallService::State::Ringing:
        return "ringing";
    case CallService::State::Answering:
        return "answering";
    case CallService::State::Connected:
        break;
    }
    return "connected";
}

Scenario WithFaults(Scenario scenario, const FaultSettings& faults)
{
    scenario.faults.Overlay(faults);
    return scenario;
}

} // namespace

Simulation::Simulation(const Scenario& scenario, const SimulationSettings& settings)
    : m_settings(settings),
      m_radio(WithFaults(scenario, settings.faults),
              map27::LinkParameters::ForBitRate(settings.bitsPerSecond), settings.seed),
      m_line(settings.bitsPerSecond, m_radio.CurrentScenario().faults, settings.seed + 1),
      m_script(scenario.events)
{
}

SimulationOutput Simulation::ConsoleCame(TimePoint now)
{
    Advance(now);
    m_line.Clear();
    Take(m_radio.Connect(now), now);
    Pump(now);
    return TakeOutput();
}

SimulationOutput Simulation::ConsoleWent(TimePoint now)
{
    Advance(now);
    m_line.Clear();
    Take(m_radio.Disconnect(now), now);
    Pump(now);
    return TakeOutput();
}

SimulationOutput Simulation::Feed(map27::OctetSpan octets, TimePoint now)
{
    m_line.PushFromConsole(octets, now);
    Advance(now);
    return TakeOutput();
}

SimulationOutput Simulation::OnTime(TimePoint now)
{
    Advance(now);
    return TakeOutput();
}

Deadline Simulation::NextDeadline() const
{
    const Deadline transport = map27::Earlier(m_radio.NextDeadline(), m_line.NextDeadline());
    const Deadline silence = map27::Earlier(m_silentAt, m_silentUntil);
    return map27::Earlier(map27::Earlier(transport, m_script.NextDeadline()), silence);
}

Simulation::Answer Simulation::Execute(std::string_view commandLine, TimePoint now)
{
    Advance(now);
    const auto parsed = ParseCommand(commandLine, m_radio.CurrentScenario());
    if (const auto* problem = std::get_if<CommandProblem>(&parsed))
        return {"error " + problem->reason, TakeOutput()};
    std::string text = Perform(std::get<Command>(parsed), now);
    Pump(now);
    return {std::move(text), TakeOutput()};
}

std::string Simulation::Perform(const Command& command, TimePoint now)
{
    if (const auto* action = std::get_if<Action>(&command)) {
        const std::string problem = Perform(*action, now);
        return problem.empty() ? "ok" : "error " + problem;
    }
    if (std::holds_alternative<StateCommand>(command))
        return "ok " + StateText();
    if (std::holds_alternative<LastCommand>(command))
        return m_radio.LastRequest().empty() ? "ok" : "ok " + m_radio.LastRequest();
    if (const auto* groups = std::get_if<GroupsCommand>(&command)) {
        const Scenario& scenario = m_radio.CurrentScenario();
        const std::string held = m_radio.Others().Groups().Describe(groups->radio, scenario.fleet);
        return held.empty() ? "ok" : "ok " + held;
    }
    if (const auto* signals = std::get_if<SignalsCommand>(&command)) {
        const Outstation* outstation = m_radio.Others().FindOutstation(signals->outstation);
        return outstation ? "ok " + outstation->Describe() : "error that is not an outstation";
    }
    if (std::holds_alternative<ListCommand>(command))
        return ListText() + "ok";
    return CommandHelp() + "ok";
}

std::string Simulation::Perform(const Action& action, TimePoint now)
{
    if (const auto* fault = std::get_if<FaultAction>(&action))
        m_line.SetFault(fault->kind, fault->value);
    if (const auto* silence = std::get_if<SilenceAction>(&action))
        BeSilent(silence->silent, now, silence->duration);
    auto [problem, output] = m_radio.Perform(action, now);
    Take(std::move(output), now);
    return problem;
}

void Simulation::BeSilent(bool silent, TimePoint now, Milliseconds duration)
{
    m_line.SetSilent(silent);
    m_silentUntil.reset();
    if (silent && duration > Milliseconds(0))
        m_silentUntil = now + duration;
}

std::string Simulation::ListText() const
{
    std::string text;
    for (const Subscriber& member : m_radio.CurrentScenario().fleet.members) {
        text += member.name + ' ' + map27::ToText(member.address);
        text += ' ' + std::string(WordOf(member.kind));
        text += " status " + std::string(WordOf(member.reactions.status.behaviour));
        text += " text " + std::string(WordOf(member.reactions.text.behaviour));
        text += " call " + std::string(WordOf(member.reactions.call.behaviour));
        text += " regroup " + std::string(WordOf(member.reactions.regroup.behaviour)) + '\n';
    }
    return text;
}

std::string Simulation::StateText() const
{
    const map27::OperatingConditionMessage condition = m_radio.Condition();
    std::string text = m_radio.IsLinkReady() ? "link=ready" : "link=down";
    text += condition.inContact ? " contact=yes" : " contact=no";
    text += " field=" + std::to_string(condition.fieldStrength);
    text += condition.offHook ? " hook=off" : " hook=on";
    text += condition.transmitting ? " transmit=on" : " transmit=off";
    text += std::string(" call=") + CallStateText(m_radio.CallState());
    text += m_radio.MessageOpen() ? " message=open" : " message=idle";
    return text;
}

void Simulation::Advance(TimePoint now)
{
    if (m_silentAt && *m_silentAt <= now) {
        m_silentAt.reset();
        BeSilent(true, now, Milliseconds(0));
        m_output.notes.push_back("silent from now on");
    }
    if (m_silentUntil && *m_silentUntil <= now)
        BeSilent(false, now, Milliseconds(0));
    Pump(now);
    Take(m_radio.OnTime(now), now);
    RunScript(now);
    Pump(now);
}

void Simulation::Take(RadioOutput output, TimePoint now)
{
    for (map27::Octets& frame : output.frames)
        m_line.PushFromRadio(std::move(frame), now);
    for (std::string& note : output.notes)
        m_output.notes.push_back(std::move(note));
    FollowLink(now);
}

// Moves what has arrived to the other end until nothing more arrives at this moment.
void Simulation::Pump(TimePoint now)
{
    for (;;) {
        LineOutput arrived = m_line.Take(now);
        m_output.toConsole.insert(m_output.toConsole.end(), arrived.toConsole.begin(),
                                  arrived.toConsole.end());
        for (TracedFrame& frame : arrived.traced)
            m_output.traced.push_back(std::move(frame));
        if (!arrived.toRadio.empty())
            Take(m_radio.Feed(arrived.toRadio, now), now);
        else if (arrived.toConsole.empty())
            return;
    }
}

void Simulation::RunScript(TimePoint now)
{
    for (const Action& action : m_script.TakeDue(now)) {
        if (const std::string problem = Perform(action, now); !problem.empty())
            m_output.notes.push_back(Describe(action, m_radio.CurrentScenario().fleet) +
                                     " left out: " + problem);
    }
}

void Simulation::FollowLink(TimePoint now)
{
    if (!m_radio.IsLinkReady()) {
        m_script.Pause(now);
        return;
    }
    m_script.Run(now);
    if (!m_linkSeen && m_settings.silentAfter)
        m_silentAt = now + *m_settings.silentAfter;
    m_linkSeen = true;
}

} // namespace sim
