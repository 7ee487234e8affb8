#include "simulator/network/DeliveryService.h"

#include <array>

namespace sim {

namespace {

constexpr std::size_t MostUnderWay = 2;
constexpr std::size_t MostWaiting = 5000;

} // namespace

std::string DeliveryService::Deliver(const StatusAction& action)
{
    if (m_waiting.size() >= MostWaiting)
        return "the radio has no room for more messages";
    m_waiting.emplace_back(map27::StatusMessage{{action.from, {}}, action.code});
    return {};
}

std::string DeliveryService::Deliver(const TextAction& action)
{
    if (m_waiting.size() >= MostWaiting)
        return "the radio has no room for more messages";
    const auto encoded = map27::EncodeText(action.text, action.coding);
    if (const auto* problem = std::get_if<map27::TextProblem>(&encoded))
        return TextProblemText(*problem);
    const auto& text = std::get<map27::EncodedText>(encoded);

    // Radios differ in what they pad with.
    static constexpr std::array styles{map27::PadStyle::Nul, map27::PadStyle::NullDigit,
                                       map27::PadStyle::Blank};
    const auto style = styles[static_cast<std::size_t>(m_air.random.Between(0, styles.size() - 1))];
    const auto padded = map27::PadToCodewords(text.data, text.size, style);
    if (!padded)
        return "the text does not fit into a message";
    m_waiting.emplace_back(map27::ShortDataMessage{text.size, {action.from, {}}, *padded});
    return {};
}

std::string DeliveryService::Deliver(const StormAction& action)
{
    static constexpr std::array texts{
        "Power failure in the whole street", "Tree on the road",
        "Roof torn off, persons inside. Please send everybody that you have, and an ambulance.",
        "Cellar under water", "Who is nearest?"};
    std::vector<map27::Address> units;
    for (const Subscriber& member : m_air.scenario.fleet.members)
        if (member.kind == SubscriberKind::Unit)
            units.push_back(member.address);
    if (units.empty())
        return "the fleet has no units";
    const auto any = [&](std::size_t count) {
        return static_cast<std::size_t>(m_air.random.Between(0, static_cast<int>(count) - 1));
    };
    std::string problem;
    for (int i = 0; i < action.count && problem.empty(); ++i) {
        const map27::Address from = units[any(units.size())];
        if (m_air.random.Chance(action.texts))
            problem = Deliver(TextAction{from, map27::TextCoding::SevenBit, texts.at(any(texts.size()))});
        else
            problem = Deliver(StatusAction{from, static_cast<std::uint8_t>(m_air.random.Between(1, 8))});
    }
    return problem;
}

void DeliveryService::HandOver(const std::function<LinkProgress()>& progress)
{
    for (;;) {
        const LinkProgress before = progress();
        ForgetUntil(before.accepted - before.unacknowledged);
        if (m_waiting.empty() || before.unacknowledged >= MostUnderWay)
            return;
        map27::FromRadio message = std::move(m_waiting.front());
        m_waiting.pop_front();
        m_air.console.Tell(message);
        // If not, it is longer than the console takes, and is dropped.
        if (progress().accepted > before.accepted)
            m_underWay.push_back({before.accepted + 1, std::move(message)});
    }
}

void DeliveryService::TakeBack(std::uint64_t acknowledged)
{
    ForgetUntil(acknowledged);
    for (; !m_underWay.empty(); m_underWay.pop_back())
        m_waiting.push_front(std::move(m_underWay.back().message));
}

void DeliveryService::Forget()
{
    m_waiting.clear();
    m_underWay.clear();
}

void DeliveryService::ForgetUntil(std::uint64_t acknowledged)
{
    while (!m_underWay.empty() && m_underWay.front().number <= acknowledged)
        m_underWay.pop_front();
}

} // namespace sim
