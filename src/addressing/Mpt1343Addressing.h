#pragma once

#include "addressing/FleetTable.h"
#include "addressing/MptAddressing.h"

#include <optional>
#include <string>

// MPT1343 numbering with a fleet plan. A fleet that is not in the plan can still be dialled, by arithmetic;
// its addresses are printed raw, since nothing tells how many digits its numbers have.
class Mpt1343Addressing : public MptAddressing {
public:
    std::string NumberingCode() const override;
    int NumberingNameTextId() const override;
    void SetConfigSource(IMpt1343FleetConfigSource& fleets, IActionetConfigSource& actionet) override;
    void SetRadioNumbering(const RadioNumbering& numbering) override;
    std::vector<AddressingError> Warnings() const override;
    RadioAddress DialToAddress(const std::string& dial) const override;
    std::string AddressToDial(const RadioAddress& address) const override;
    std::string ShortDial(const RadioAddress& address) const override;

private:
    struct NumberInFleet {
        const FleetConfig* row;
        std::string number;
    };

    int OwnPrefix() const;
    RadioAddress DialDigits(const std::string& digits) const;
    RadioAddress DialOwnFleet(const std::string& number) const;
    RadioAddress DialFleet(int prefix, const std::string& fleetAndNumber, const std::string& dialled) const;
    int UnplannedIdent(int prefix, int fleetNumber, const std::string& number,
                       const std::string& dialled) const;

    std::optional<NumberInFleet> FindNumber(const RadioAddress& address) const;
    bool IsDialledByFleetNumber(const FleetConfig& row) const;
    std::string GatewayDial(const RadioAddress& address) const;

    FleetTable m_fleets;
};
