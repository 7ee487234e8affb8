// MPT1343 numbers there and back, under any fleet plan and for any own radio.

#include "fuzz/Numbering.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    std::vector<FleetConfig> fleets(input.Octet() % 6);
    for (FleetConfig& fleet : fleets) {
        const std::uint8_t kind = input.Octet();
        fleet.fleetType = (kind & 1) != 0 ? FleetType::Groups : FleetType::Units;
        fleet.digits = 2 + (kind >> 1 & 1) + (kind == 0xFF ? 5 : 0);
        fleet.prefix = input.Octet();
        fleet.baseIdent = static_cast<int>(input.Word());
        fleet.maxIdent = fleet.baseIdent + static_cast<int>(input.Word()) - 1000 * (kind == 0xFF);
    }
    const auto addressing = CreateAddressing("MPT1343");
    fuzz::AnySource source(fleets, {});
    addressing->SetConfigSource(source, source);
    if (input.Octet() % 4 != 0)
        addressing->SetRadioNumbering(fuzz::ReadOwn(input));
    addressing->Warnings();
    fuzz::Convert(*addressing, input);
    return 0;
}
