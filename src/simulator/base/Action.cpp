#include "simulator/base/Action.h"

namespace sim {

namespace {

template <typename... Functions> struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <typename... Functions> Overloaded(Functions...) -> Overloaded<Functions...>;

std::string CheckSender(map27::Address from, const Fleet& fleet)
{
    const Subscriber* member = fleet.Find(from);
    if (member && member->kind == SubscriberKind::Group)
        return member->name + " is a group, and only a radio sends and calls";
    return {};
}

std::string CheckText(const TextAction& action, const Fleet& fleet)
{
    if (std::string problem = CheckSender(action.from, fleet); !problem.empty())
        return problem;
    const auto encoded = map27::EncodeText(action.text, action.coding);
    if (const auto* problem = std::get_if<map27::TextProblem>(&encoded))
        return TextProblemText(*problem);
    return {};
}

std::string CheckCall(const CallAction& action, const Fleet& fleet)
{
    const bool telephone = action.from.ident == map27::Ident::Pstn || action.from.ident == map27::Ident::Pabx;
    if (telephone && action.scope != CallScope::Individual)
        return "a telephone can call only a single radio";
    return telephone ? std::string{} : CheckSender(action.from, fleet);
}

std::string CheckSignal(const SignalAction& action, const Fleet& fleet)
{
    const Subscriber* member = fleet.Find(action.who);
    if (!member)
        return "there is no \"" + action.who + "\" in the fleet";
    if (member->kind != SubscriberKind::Outstation)
        return member->name + " is no outstation";
    return {};
}

std::string DescribeCall(const CallAction& action, const Fleet& fleet)
{
    std::string text = action.emergency ? "emergency " : "";
    text += action.scope == CallScope::Group        ? "group "
            : action.scope == CallScope::SystemWide ? "system-wide "
                                                    : "";
    return text + "call from " + fleet.Describe({action.from, {}});
}

} // namespace

std::string CheckAction(const Action& action, const Fleet& fleet)
{
    return std::visit(Overloaded{
                          [&](const StatusAction& status) {
                              return status.code > 31 ? "a status must be 0 to 31"
                                                      : CheckSender(status.from, fleet);
                          },
                          [&](const TextAction& text) { return CheckText(text, fleet); },
                          [&](const CallAction& call) { return CheckCall(call, fleet); },
                          [&](const BehaveAction& behave) {
                              return fleet.Find(behave.who)
                                         ? std::string{}
                                         : "there is no \"" + behave.who + "\" in the fleet";
                          },
                          [&](const SignalAction& signal) { return CheckSignal(signal, fleet); },
                          [&](const NumberingAction& numbering) {
                              const Subscriber* member = fleet.Find(numbering.address);
                              return member ? member->name + " has this address" : std::string{};
                          },
                          [](const auto&) { return std::string{}; },
                      },
                      action);
}

std::string Describe(const Action& action, const Fleet& fleet)
{
    const auto name = [&](map27::Address address) { return fleet.Describe({address, {}}); };
    return std::visit(
        Overloaded{
            [&](const StatusAction& a) {
                return "status " + std::to_string(a.code) + " from " + name(a.from);
            },
            [&](const TextAction& a) { return "text from " + name(a.from); },
            [&](const CallAction& a) { return DescribeCall(a, fleet); },
            [](const HangUpAction&) { return std::string("hang-up by the other side"); },
            [](const ContactAction& a) {
                return std::string(a.inContact ? "contact found" : "contact lost");
            },
            [](const FieldAction& a) { return "field strength " + std::to_string(a.strength); },
            [](const BehaveAction& a) { return a.who + " " + std::string(WordOf(a.reaction.behaviour)); },
            [](const SignalAction& a) {
                return std::string(a.isControl ? "control " : "sensor ") + std::to_string(a.number) + " of " +
                       a.who + ' ' + std::string(WordOf(a.signal));
            },
            [](const NumberingAction& a) { return "own number " + ToText(a.address); },
            [](const StormAction& a) { return std::to_string(a.count) + " messages at once"; },
            [](const FaultAction& a) { return "fault " + std::string(DescriptionOf(a.kind).word); },
            [](const SilenceAction&) { return std::string("silence of the line"); },
            [](const RestartAction&) { return std::string("restart of the radio"); },
        },
        action);
}

std::string TextProblemText(const map27::TextProblem& problem)
{
    switch (problem.fault) {
    case map27::TextFault::Empty:
        return "the text is empty";
    case map27::TextFault::NotUtf8:
        return "the text is not UTF-8";
    case map27::TextFault::Character:
        return "the coding has no character \"" + problem.character + "\"";
    case map27::TextFault::TooLong:
        break;
    }
    return "the text has " + std::to_string(problem.length) + " characters, and " +
           std::to_string(problem.limit) + " are possible";
}

} // namespace sim
