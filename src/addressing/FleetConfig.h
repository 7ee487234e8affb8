#pragma once

#include <span>

enum class FleetType {
    Units = 1,
    Groups = 2,
};

// One row of the MPT1343 fleet plan: a block of idents under one prefix and how its numbers are dialled.
// The members are wider than the values need, so that a stored value out of range can be refused rather than
// truncated.
struct FleetConfig {
    FleetType fleetType = FleetType::Units;
    int digits = 2; // length of a number in the fleet, 2 or 3
    int prefix = 0; // MPT1327 prefix 0..127 (the dialled number prefix minus 200)
    int baseIdent = 0;
    int maxIdent = 0; // the fleet's last ident

    bool operator==(const FleetConfig&) const = default;
};

// Parameters of the ANN numbering.
struct ActionetConfig {
    int FPP = 10;
    int MEP = 0;
    int model = -1; // index of the numbering model; -1: not configured

    bool operator==(const ActionetConfig&) const = default;
};

// Supplies the fleet plan. Both members may throw anything; the caller passes it on.
class IMpt1343FleetConfigSource {
public:
    virtual ~IMpt1343FleetConfigSource() = default;

    virtual int NumberOfFleets() = 0;
    // Fills `fleets`, which the caller has sized to NumberOfFleets(), ordered by prefix and base ident.
    virtual void RetreiveFleetConfig(std::span<FleetConfig> fleets) = 0;
};

// Supplies the ANN parameters. May throw anything; the caller passes it on.
class IActionetConfigSource {
public:
    virtual ~IActionetConfigSource() = default;

    virtual void RetreiveActionetConfig(ActionetConfig& config) = 0;
};
