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
        if (call->details.Include())
            text += "include ";
        if (call->details.Data())
            text += "data ";
        text += call->details.OneWay() ? "broadcast to " : "call to ";
        return text + fleet.Describe(call->party);
    }
    if (const auto* diversion = std::get_if<map27::DiversionRequestMessage>(&message))
        return "diversion to " + fleet.Describe(diversion->target);
    if (const auto* modem = std::get_if<map27::ModemDataMessage>(&message))
        return "modem data " + map27::ToHex(modem->octets);
    return {};
}

} // namespace sim
