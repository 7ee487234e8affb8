#include "simulator/network/RequestText.h"

#include "map27/codec/CharacterCoding.h"

namespace sim {

std::string DescribeRequest(const map27::ToRadio& message, const Fleet& fleet)
{
    if (const auto* status = std::get_if<map27::StatusMessage>(&message))
        return "status " + std::to_string(status->status) + " to " + fleet.Describe(status->party);
    if (const auto* data = std::get_if<map27::ShortDataMessage>(&message)) {
        const bool isText = map27::IsCharacterCoding(data->data.coding);
        return (isText ? "text \"" : "data \"") + map27::DecodeText(data->data) + "\" to " +
               fleet.Describe(data->party);
    }
    if (const auto* call = std::get_if<map27::CallMessage>(&message)) {
        std::string text = call->emergency ? "emergency " : "";
        if (!call->emergency && call->details.HighPriority())
            text += "priority ";
        if (call->details.Data())
            text += "data ";
        text += call->details.OneWay() ? "broadcast to " : "call to ";
        return text + fleet.Describe(call->party);
    }
    return {};
}

} // namespace sim
