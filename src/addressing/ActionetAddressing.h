#pragma once

#include "addressing/ActionetLayout.h"
#include "addressing/MptAddressing.h"

#include <optional>
#include <string>

// ANN numbering. There is no table of fleets: the layout follows from the parameters. A full number is the
// prefix, in as many digits as the model says (none to three), followed by four digits. Without parameters
// only the raw form is converted.
class ActionetAddressing : public MptAddressing {
public:
    std::string NumberingCode() const override;
    int NumberingNameTextId() const override;
    // Throws what the source throws, and AddressingError for parameters that CheckActionet() refuses.
    void SetConfigSource(IMpt1343FleetConfigSource& fleets, IActionetConfigSource& actionet) override;
    void SetRadioNumbering(const RadioNumbering& numbering) override;
    std::vector<AddressingError> Warnings() const override;
    RadioAddress DialToAddress(const std::string& dial) const override;
    std::string AddressToDial(const RadioAddress& address) const override;
    std::string ShortDial(const RadioAddress& address) const override;

private:
    int OwnPrefix() const;
    std::optional<ActionetFleet> OwnFleet() const;
    RadioAddress DialDigits(const std::string& digits) const;
    RadioAddress DialOwnFleet(const std::string& number) const;
    std::string GatewayDial(const RadioAddress& address) const;
    bool HasNumber(const RadioAddress& address) const;

    std::optional<ActionetConfig> m_config;
    std::optional<RadioNumbering> m_own; // set only when prefix and ident can exist
    std::vector<AddressingError> m_ownWarnings;
};
