#include "map27/TerminalBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

using namespace map27;

namespace {

std::string Hex(std::uint8_t octet)
{
    return ToHex(OctetSpan(&octet, 1));
}

std::string Progress(const char* name, int code, std::uint8_t cause, std::uint8_t source)
{
    const std::string via = source == code ? "" : " via " + Hex(source);
    return std::string(name) + ' ' + std::to_string(code) + ' ' + Hex(cause) + via;
}

struct EventWriter {
    std::string operator()(const StatusReceived& event) const
    {
        return "status " + ToText(event.from) + ' ' + std::to_string(event.status);
    }
    std::string operator()(const TextReceived& event) const
    {
        return "text " + ToText(event.from) + " [" + event.text + ']';
    }
    std::string operator()(const IncomingCall& event) const
    {
        return "incoming " + Hex(event.type) + ' ' + Hex(event.flags) + ' ' + ToText(event.from);
    }
    std::string operator()(const MessageProgress& event) const
    {
        return Progress("message", event.code, event.cause, event.source) + " to " + ToText(event.party);
    }
    std::string operator()(const OutgoingCallProgress& event) const
    {
        return Progress("call", event.code, event.cause, event.source);
    }
    std::string operator()(const AnswerProgress& event) const
    {
        return Progress("answer", event.code, event.cause, event.source);
    }
    std::string operator()(const TransactionCleared& event) const
    {
        static const char* const by[] = {"radio", "incoming", "link lost", "reset"};
        return std::string("cleared by ") + by[static_cast<int>(event.by)] + ' ' + Hex(event.type) + ' ' +
               Hex(event.cause);
    }
    std::string operator()(const NumberingReceived& event) const
    {
        return "numbering " + ToText(event.info.radio);
    }
    std::string operator()(const OperatingConditionReceived& event) const
    {
        return "condition " + std::to_string(event.info.inContact) + std::to_string(event.info.offHook) +
               std::to_string(event.info.transmitting) + ' ' + std::to_string(event.info.fieldStrength);
    }
    std::string operator()(const NetworkInfoReceived& event) const
    {
        return "network " + std::to_string(event.info.channel) + ' ' +
               std::to_string(event.info.systemIdentity);
    }
    std::string operator()(const PersonalityReceived& event) const
    {
        return "personality " + std::to_string(event.info.serial);
    }
    std::string operator()(const SettingsReceived& event) const
    {
        return "settings " + Hex(event.info.facilitiesA);
    }
    std::string operator()(const LinkReady&) const { return "ready"; }
    std::string operator()(const LinkFailed& event) const
    {
        return std::string("failed: ") + LinkFailureText(event.reason);
    }
    std::string operator()(const Report& event) const
    {
        static const char* const kinds[] = {"undecodable", "status range",     "unknown coding",
                                            "late",        "cancel confirmed", "protocol",
                                            "unanswered",  "not used",         "not delivered"};
        return std::string("report ") + kinds[static_cast<int>(event.kind)];
    }
};

bool Has(const std::vector<std::string>& words, const char* word)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

} // namespace

Address AddressOf(const std::string& text)
{
    const auto slash = text.find('/');
    return {static_cast<std::uint8_t>(std::stoi(text)),
            static_cast<std::uint16_t>(std::stoi(text.substr(slash + 1)))};
}

std::string EventText(const TerminalEvent& event)
{
    return std::visit(EventWriter{}, event);
}

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
    if (!Operate(words, rest) && !Command(words, rest))
        ADD_FAILURE() << "unknown step " << step;
    Exchange();
    // Which of the two came first means nothing: events are told at once, octets take their time.
    std::stable_partition(m_seen.begin(), m_seen.end(),
                          [](const std::string& line) { return line[0] == '>'; });
    return m_seen;
}

bool TerminalBench::Operate(const std::vector<std::string>& words, const std::string& rest)
{
    const std::string& op = words[0];
    const auto to = [&] { return AddressOf(words.at(1)); };
    const auto text = [&] { return words.size() > 2 ? rest.substr(words[1].size() + 1) : std::string(); };
    const bool emergency = Has(words, "emergency");
    const bool priority = Has(words, "priority");
    const bool dialog = !Has(words, "oneway");
    if (op == "status")
        Take(m_terminal.SendStatus(to(), static_cast<unsigned>(std::stoi(words.at(2))), m_now));
    else if (op == "text7" || op == "text8")
        Take(m_terminal.SendText(to(), text(), op == "text7" ? TextCoding::SevenBit : TextCoding::EightBit,
                                 m_now));
    else if (op == "binary")
        Take(m_terminal.SendBinary(to(), FromHex(text()), m_now));
    else if (op == "call")
        Take(m_terminal.MakeCall(to(), emergency, priority, dialog, m_now));
    else if (op == "gateway")
        Take(m_terminal.MakeGatewayCall(std::stoi(words.at(1)), words.size() > 2 ? words[2] : "", emergency,
                                        priority, dialog, m_now));
    else if (op == "answer")
        Take(m_terminal.AnswerCall(m_now));
    else if (op == "refuse")
        Take(m_terminal.RefuseCall(m_now));
    else if (op == "ptt")
        Take(m_terminal.SetTransmit(words.at(1) == "on", m_now));
    else if (op == "ask")
        Take(m_terminal.RequestRadioInfo(static_cast<unsigned>(std::stoi(words.at(1))), m_now));
    else if (op == "clear")
        Take(m_terminal.ClearCall(m_now));
    else if (op == "cancel")
        Take(m_terminal.CancelTransaction(m_now));
    else if (op == "probe")
        Take(m_terminal.Probe(m_now));
    else if (op == "reset")
        Take(m_terminal.ResetLink(Milliseconds(std::stoi(words.at(1))), m_now));
    else
        return false;
    return true;
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
