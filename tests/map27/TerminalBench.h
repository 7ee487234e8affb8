#pragma once

#include "map27/Script.h"
#include "map27/TerminalWords.h"
#include "map27/terminal/Terminal.h"

// A terminal and a scripted radio behind a link of its own, in virtual time; the steps of
// tests/data/map27-terminal.txt. The radio answers the terminal's questions by itself unless mute, then they
// are seen as messages.
class TerminalBench {
public:
    explicit TerminalBench(map27::TerminalParameters parameters = {}, map27::LinkParameters radio = {});

    // Link up, the own questions answered, nothing left to be seen.
    void BringUp();
    void RunScript(const std::string& script);
    std::vector<std::string> Step(const std::string& step);

    map27::Terminal& TheTerminal() { return m_terminal; }

private:
    bool Command(const std::vector<std::string>& words, const std::string& rest);
    void Pass(map27::Milliseconds time);
    void Exchange();
    void Take(const map27::TerminalOutput& output);
    void Take(const map27::OperationResult& result);
    void Take(const map27::LinkOutput& output);
    void Hear(const map27::Octets& message);

    map27::Terminal m_terminal;
    map27::Link m_radio;
    map27::TimePoint m_now{map27::Milliseconds(5000)};
    std::vector<map27::Octets> m_toRadio;
    std::vector<map27::Octets> m_toTerminal;
    std::vector<std::string> m_seen;
    bool m_mute = false;
    bool m_silent = false;
};
