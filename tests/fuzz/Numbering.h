#pragma once

#include "addressing/CreateAddressing.h"
#include "fuzz/Input.h"

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

// A numbering with a configuration that nobody has checked, and what must hold of its conversions.
namespace fuzz {

class AnySource : public IMpt1343FleetConfigSource, public IActionetConfigSource {
public:
    AnySource(std::vector<FleetConfig> fleets, const ActionetConfig& actionet)
        : m_fleets(std::move(fleets)),
          m_actionet(actionet)
    {
    }

    int NumberOfFleets() override { return static_cast<int>(m_fleets.size()); }
    void RetreiveFleetConfig(std::span<FleetConfig> fleets) override
    {
        std::copy(m_fleets.begin(), m_fleets.end(), fleets.begin());
    }
    void RetreiveActionetConfig(ActionetConfig& config) override { config = m_actionet; }

private:
    std::vector<FleetConfig> m_fleets;
    ActionetConfig m_actionet;
};

// What a radio may report of itself.
inline RadioNumbering ReadOwn(Input& input)
{
    RadioNumbering own;
    own.prefix = input.Octet() & 0x7F;
    for (int RadioNumbering::*ident :
         {&RadioNumbering::ident, &RadioNumbering::unitBaseIdent, &RadioNumbering::unitMaxIdent,
          &RadioNumbering::groupBaseIdent, &RadioNumbering::groupMaxIdent})
        own.*ident = static_cast<int>(input.Word() & HighestIdent);
    const std::uint8_t digits = input.Octet();
    own.unitDigits = 2 + (digits & 1);
    own.groupDigits = 2 + (digits >> 1 & 1);
    return own;
}

inline std::optional<RadioAddress> TryDial(const MptAddressing& addressing, const std::string& dial)
{
    try {
        const RadioAddress address = addressing.DialToAddress(dial);
        ValidateAddress(address);
        return address;
    } catch (const AddressingError& error) {
        MUST_HOLD(error.what()[0] != '\0');
        return std::nullopt;
    }
}

// Both texts of an address lead back to it.
inline void CheckRoundTrip(const MptAddressing& addressing, const RadioAddress& address)
{
    MUST_HOLD(TryDial(addressing, addressing.AddressToDial(address)) == address);
    MUST_HOLD(TryDial(addressing, addressing.ShortDial(address)) == address);
}

// Dials what is left, and prints an address of it.
inline void Convert(const MptAddressing& addressing, Input& input)
{
    RadioAddress any{static_cast<int>(input.Octet() & 0x7F), static_cast<int>(input.Word() & HighestIdent)};
    if (any.ident == PstnGatewayIdent || any.ident == PabxGatewayIdent) {
        any.kind = AddressKind::Gateway;
        any.digits = std::string(1 + input.Octet() % 31, static_cast<char>('0' + input.Octet() % 10));
    }
    try {
        ValidateAddress(any);
        CheckRoundTrip(addressing, any);
    } catch (const AddressingError&) {
        MUST_HOLD(any.ident == DummyIdent);
    }
    if (const auto dialled = TryDial(addressing, input.RestAsText()))
        CheckRoundTrip(addressing, *dialled);
}

} // namespace fuzz
