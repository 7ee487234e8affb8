#include "simulator/network/MessageFaults.h"

#include <array>

namespace sim {

namespace {

constexpr std::size_t SettingsBefore1998 = 4; // octets
constexpr std::uint8_t AboveChannel = 0x40;   // of the first octet after the type

map27::FromRadio WithoutIdent(const map27::AcknowledgementMessage& message)
{
    map27::AcknowledgementMessage anonymous = message;
    anonymous.party = {};
    return anonymous;
}

// A message that ends in data or a list would read further octets as part of it.
bool HasFixedEnd(const map27::FromRadio& message)
{
    return std::holds_alternative<map27::StatusMessage>(message) ||
           std::holds_alternative<map27::AcknowledgementMessage>(message) ||
           std::holds_alternative<map27::ClearMessage>(message) ||
           std::holds_alternative<map27::ProtocolInfoMessage>(message) ||
           std::holds_alternative<map27::PersonalityMessage>(message) ||
           std::holds_alternative<map27::OperatingConditionMessage>(message) ||
           std::holds_alternative<map27::NetworkInfoMessage>(message);
}

} // namespace

std::vector<map27::Octets> MessageFaults::Strike(const map27::FromRadio& message)
{
    const auto* acknowledgement = std::get_if<map27::AcknowledgementMessage>(&message);
    const bool anonymous = acknowledgement && Strikes(FaultKind::NoIdent);
    map27::Octets octets = map27::EncodeFromRadio(anonymous ? WithoutIdent(*acknowledgement) : message);
    if (std::holds_alternative<map27::SettingsMessage>(message) && Strikes(FaultKind::ShortSettings))
        octets.resize(SettingsBefore1998);
    if (std::holds_alternative<map27::NetworkInfoMessage>(message) && Strikes(FaultKind::HighNetworkBits))
        octets[1] |= AboveChannel;
    if (HasFixedEnd(message) && Strikes(FaultKind::ExtraOctets))
        octets.insert(octets.end(), {0x5A, 0x00, 0x10});

    std::vector<map27::Octets> messages{octets};
    if (Strikes(FaultKind::UnknownTypes))
        messages.push_back(UnknownMessage());
    const auto* call = std::get_if<map27::CallMessage>(&message);
    if (call && !call->details.OffHookNeeded() && Strikes(FaultKind::ConnectedTwice)) {
        messages.push_back(map27::EncodeFromRadio(map27::AcknowledgementMessage{
            map27::AckOutcome::Positive, map27::AckSubject::Receive, call->party, 0}));
    }
    return messages;
}

// A vendor's own message, a reserved one, and one meant for the other direction.
map27::Octets MessageFaults::UnknownMessage()
{
    static const std::array messages{map27::Octets{0x0B, 0x00, 0x02, 0x01}, map27::Octets{0xC9, 0x00, 0x00},
                                     map27::Octets{0xB7, 0x31}};
    return messages.at(static_cast<std::size_t>(m_random.Between(0, 2)));
}

} // namespace sim
