#pragma once

// One enumerator for each sentence that this room has to say. Its number is the id of the catalogue entry,
// and the comment names the values of the placeholders #01, #02 … in order. An F is a fleet number, a P a
// number prefix (200..327), A and B the ends of a range.
enum class AddressingCode {
    // A number was dialled, and the numbering has no configuration to convert it with.
    NumberingNotConfigured = 204,

    // Any number.
    NumberEmpty = 5000,
    InvalidCharacter = 5001, // the character (UTF-8)
    RawFormLength = 5002,
    PrefixRange = 5003, // prefix
    IdentRange = 5004,  // ident
    CallModifier = 5005,
    TelephoneMissing = 5006,
    TelephoneTooLong = 5007,
    OwnNumberUnknown = 5008, // the form needs the radio's own prefix or fleet, which it has not reported
    GatewayIdentNeeded = 5009,
    AddressKind = 5010, // kind, digits

    // MPT1343 numbers.
    NumberLength = 5020,       // digits dialled
    NumberPrefixRange = 5021,  // P
    FleetNumberRange = 5022,   // F
    TwoDigitRange = 5023,      // number in the fleet
    ThreeDigitRange = 5024,    // number in the fleet
    OwnUnitDigits = 5025,      // digits in the radio's own fleet
    OwnGroupDigits = 5026,     // digits in the radio's own fleet
    UnitNotInOwnFleet = 5027,  // number, A, B
    GroupNotInOwnFleet = 5028, // number, A, B
    OwnFleetHasNoUnits = 5029,
    OwnFleetHasNoGroups = 5030,
    FleetDigits = 5031,      // P, F, digits that the fleet uses
    UnitNotInFleet = 5032,   // number, P, F, A, B
    GroupNotInFleet = 5033,  // number, P, F, A, B
    FleetHasNoUnits = 5034,  // P, F
    FleetHasNoGroups = 5035, // P, F
    NotAUnitFleet = 5036,    // P, F
    NotAGroupFleet = 5037,   // P, F
    OverlapsPlan = 5038,     // P, F, A, B (idents)
    IdentAboveLimit = 5039,  // number dialled, ident

    // Rows of a fleet plan. Prefix and fleet number out of range are reported as above.
    UnitFleetSize = 5040,    // size
    GroupFleetSize = 5041,   // size
    FleetsOverlap = 5042,    // P, F, P, F of the other fleet
    FleetEndsTooHigh = 5043, // P, F
    FleetBaseIdent = 5044,   // base ident
    FleetDigitsRange = 5045, // digits

    // Warnings: the configuration works, but perhaps not as it was meant.
    PlanRowIgnored = 5050,   // prefix, base ident, max ident, digits
    OwnNumberIgnored = 5051, // prefix, ident
    OwnFleetIgnored = 5052,  // base ident, max ident, digits
    OwnFleetCut = 5053,      // A, B
    OwnFleetDiffers = 5054,  // A, B (own idents), P, F, A, B (idents of that fleet of the plan)
    // The same for the ANN parameters: A, B (reported idents), digits, A, B (idents of its fleet), digits.
    OwnUnitsDiffer = 5055,
    OwnGroupsDiffer = 5056,
    OwnIdentNoUnit = 5057, // own ident

    // ANN numbers. An S is the digit of a large fleet, an SD the two of a small fleet or a block of mini
    // fleets.
    OwnFleetDigits = 5060,      // digits in the radio's own fleet
    LargeFleetRange = 5061,     // number in the fleet, S
    SmallFleetRange = 5062,     // number in the fleet, SD
    NotInOwnMiniFleet = 5063,   // number, A, B (its units), A, B (its groups)
    NotUsedInMiniFleets = 5064, // number in the fleet

    // ANN parameters.
    ActionetRange = 5070,
    ActionetSum = 5071,
    ActionetModel = 5072, // index of the model
};

// Name of each numbering: the caption of its configuration window.
inline constexpr int TextMpt1343Name = 4034;
inline constexpr int TextActionetName = 4016;
