#include "map27/TerminalWords.h"

#include "map27/Script.h"

#include <algorithm>

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
    std::string operator()(const CallTakenUp& event) const { return "taken up " + ToText(event.party); }
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
        static const char* const kinds[] = {"undecodable", "status range",     "unknown coding", "late",
                                            "hung up",     "cancel confirmed", "protocol",       "unanswered",
                                            "not used",    "not delivered"};
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

std::optional<OperationResult> Operate(Terminal& terminal, const std::string& step, TimePoint now)
{
    const auto words = Words(step);
    const std::string rest = step.size() > words[0].size() ? step.substr(words[0].size() + 1) : "";
    const std::string& op = words[0];
    const auto to = [&] { return AddressOf(words.at(1)); };
    const auto text = [&] { return words.size() > 2 ? rest.substr(words[1].size() + 1) : std::string(); };
    const bool emergency = Has(words, "emergency");
    const bool priority = Has(words, "priority");
    const bool dialog = !Has(words, "oneway");
    if (op == "status")
        return terminal.SendStatus(to(), static_cast<unsigned>(std::stoi(words.at(2))), now);
    if (op == "text7" || op == "text8")
        return terminal.SendText(to(), text(), op == "text7" ? TextCoding::SevenBit : TextCoding::EightBit,
                                 now);
    if (op == "binary")
        return terminal.SendBinary(to(), FromHex(text()), now);
    if (op == "call")
        return terminal.MakeCall(to(), emergency, priority, dialog, now);
    if (op == "gateway")
        return terminal.MakeGatewayCall(std::stoi(words.at(1)), words.size() > 2 ? words[2] : "", emergency,
                                        priority, dialog, now);
    if (op == "answer")
        return terminal.AnswerCall(now);
    if (op == "refuse")
        return terminal.RefuseCall(now);
    if (op == "ptt")
        return terminal.SetTransmit(words.at(1) == "on", now);
    if (op == "ask")
        return terminal.RequestRadioInfo(static_cast<unsigned>(std::stoi(words.at(1))), now);
    if (op == "clear")
        return OperationResult{{}, terminal.ClearCall(now)};
    if (op == "cancel")
        return OperationResult{{}, terminal.CancelTransaction(now)};
    if (op == "probe")
        return OperationResult{{}, terminal.Probe(now)};
    if (op == "reset")
        return OperationResult{{}, terminal.ResetLink(Milliseconds(std::stoi(words.at(1))), now)};
    return std::nullopt;
}
