#include "simulator/DeliveryService.h"

#include <array>

namespace sim {

std::string DeliveryService::Deliver(const StatusAction& action)
{
    return m_air.console.Tell(map27::StatusMessage{{action.from, {}}, action.code});
}

std::string DeliveryService::Deliver(const TextAction& action)
{
    const auto encoded = map27::EncodeText(action.text, action.coding);
    if (const auto* problem = std::get_if<map27::TextProblem>(&encoded))
        return TextProblemText(*problem);
    const auto& text = std::get<map27::EncodedText>(encoded);

    // Radios differ in what they fill up with.
    static constexpr std::array styles{map27::PadStyle::Nul, map27::PadStyle::NullDigit,
                                       map27::PadStyle::Blank};
    const auto style = styles[static_cast<std::size_t>(m_air.random.Between(0, styles.size() - 1))];
    const auto padded = map27::PadToCodewords(text.data, text.size, style);
    if (!padded)
        return "the text does not fit into a message";
    return m_air.console.Tell(map27::ShortDataMessage{text.size, {action.from, {}}, *padded});
}

} // namespace sim
