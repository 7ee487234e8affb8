#include "map27/TerminalBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

using namespace map27;

TerminalBench::TerminalBench(TerminalParameters parameters, LinkParameters radio)
    : m_terminal(parameters),
      m_radio(radio)
{
}

void TerminalBench::BringUp()
{
    RunScript(R"(
        radio back
        start => ! ready ; ! personality 123456 ; ! numbering 2/31 ; ! condition 100 128
            ! network 300 4660
    )");
}

void TerminalBench::RunScript(const std::string& script)
{
    ::RunScript(script, [this](const std::string& step) { return Step(step); });
}

std::vector<std::string> TerminalBench::Step(const std::string& step)
{
    m_seen.clear();
    const auto words = Words(step);
    const std::string rest = step.size() > words[0].size() ? step.substr(words[0].size() + 1) : "";
    if (const auto result = Operate(m_terminal, step, m_now))
        Take(*result);
    else if (!Command(words, rest))
        ADD_FAILURE() << "unknown step " << step;
    Exchange();
    // Which of the two came first means nothing: events are told at once, octets take their time.
    std::stable_partition(m_seen.begin(), m_seen.end(),
                          [](const std::string& line) { return line[0] == '>'; });
    return m_seen;
}

bool TerminalBench::Command(const std::vector<std::string>& words, const std::string& rest)
{
    const std::string& command = words[0] == "radio" ? words.at(1) : words[0];
    if (command == "start")
        Take(m_terminal.Start(m_now));
    else if (command == "stop")
        m_terminal.Stop();
    else if (command == "+")
        Pass(Milliseconds(std::stoi(words.at(1))));
    else if (command == "<")
        Take(m_radio.Send(FromHex(rest), m_now).output);
    else if (command == "resets")
        Take(m_radio.Reset(m_now, Milliseconds(0)));
    else if (command == "back")
        Take(m_radio.Start(m_now));
    else if (command == "holds" || command == "takes")
        Take(m_radio.HoldReceiving(command == "holds", m_now));
    else if (command == "mute" || command == "talks")
        m_mute = command == "mute";
    else if (command == "silent")
        m_silent = true;
    else
        return false;
    return true;
}

void TerminalBench::Pass(Milliseconds time)
{
    const TimePoint end = m_now + time;
    for (;;) {
        const auto next = Earlier(m_terminal.NextDeadline(), m_radio.NextDeadline());
        if (!next || *next > end)
            break;
        m_now = std::max(m_now, *next);
        Take(m_terminal.OnTime(m_now));
        Take(m_radio.OnTime(m_now));
        Exchange();
    }
    m_now = end;
}

// What is on the line arrives at once, until nobody has anything to say.
void TerminalBench::Exchange()
{
    while (!m_toRadio.empty() || !m_toTerminal.empty()) {
        for (const Octets& frame : std::exchange(m_toRadio, {})) {
            if (!m_silent)
                Take(m_radio.Feed(frame, m_now));
        }
        for (const Octets& frame : std::exchange(m_toTerminal, {})) {
            if (!m_silent)
                Take(m_terminal.Feed(frame, m_now));
        }
    }
}

void TerminalBench::Take(const TerminalOutput& output)
{
    m_toRadio.insert(m_toRadio.end(), output.frames.begin(), output.frames.end());
    for (const TerminalEvent& event : output.events)
        m_seen.push_back("! " + EventText(event));
}

void TerminalBench::Take(const OperationResult& result)
{
    if (result.refusal)
        m_seen.push_back("! refused: " + RefusalText(*result.refusal));
    Take(result.output);
}

void TerminalBench::Take(const LinkOutput& output)
{
    m_toTerminal.insert(m_toTerminal.end(), output.frames.begin(), output.frames.end());
    for (const LinkEvent& event : output.events) {
        if (const auto* message = std::get_if<MessageReceived>(&event))
            Hear(message->message);
    }
}

void TerminalBench::Hear(const Octets& message)
{
    static const std::map<std::string, const char*> answers{
        {"B0 00", "B0 02 00 1F 2A 51 E2 40 FE 00 00 FE"},
        {"B0 01", "B1 02 00 1F 00 14 00 59 1F 40 1F 49 02 1F 40"},
        {"B0 02", "B3 F8 00 00 FE"},
        {"B0 03", "B2 04 80 FF"},
        {"B0 04", "B5 01 2C 12 34"}};
    const auto answer = answers.find(ToHex(message));
    if (answer != answers.end() && !m_mute)
        Take(m_radio.Send(FromHex(answer->second), m_now).output);
    else
        m_seen.push_back("> " + ToHex(message));
}
