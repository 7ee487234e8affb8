#include "map27/codec/ShortData.h"

#include <array>

namespace map27 {

namespace {

constexpr std::size_t MostCodewords = 16;
constexpr std::size_t MostShortCodewords = 4;

// What 1..16 codewords hold (MAP27 v1.5, A6.2).
using Capacities = std::array<std::size_t, MostCodewords>;
constexpr Capacities BitCapacities{42,  88,  130, 176, 218, 264, 306, 352,
                                   394, 440, 482, 528, 570, 616, 658, 704};
constexpr Capacities BcdCapacities{10, 22, 32, 44, 54, 66, 76, 88, 98, 110, 120, 132, 142, 154, 164, 176};
constexpr Capacities TelexCapacities{8, 17, 25, 35, 43, 52, 60, 70, 78, 87, 95, 105, 113, 122, 130, 140};
constexpr Capacities Ccitt5Capacities{5, 12, 18, 25, 30, 37, 43, 50, 55, 62, 68, 75, 80, 87, 93, 100};
constexpr Capacities PcCapacities{5, 11, 16, 22, 27, 33, 38, 44, 49, 55, 60, 66, 71, 77, 82, 88};
// The air's own format has no MST.
constexpr Capacities FreeFormatCapacities{46, 92, 138, 184};

const Capacities* CapacitiesOf(Coding coding)
{
    switch (coding) {
    case Coding::FreeFormat:
        return &FreeFormatCapacities;
    case Coding::Binary:
        return &BitCapacities;
    case Coding::BcdAscii:
    case Coding::Bcd:
        return &BcdCapacities;
    case Coding::TelexAscii:
    case Coding::Telex:
        return &TelexCapacities;
    case Coding::Ccitt5:
        return &Ccitt5Capacities;
    case Coding::PcCharacters:
        return &PcCapacities;
    }
    return nullptr;
}

std::size_t Units(const ShortData& data)
{
    return IsCharacterCoding(data.coding) ? data.octets.size() : data.Bits();
}

std::uint8_t PadOctet(Coding coding, PadStyle style)
{
    switch (coding) {
    case Coding::Bcd:
        return 0x0F; // zero would be a digit
    case Coding::Telex:
        return style == PadStyle::Blank ? 0x04 : 0x00;
    case Coding::TelexAscii:
    case Coding::Ccitt5:
    case Coding::PcCharacters:
        return style == PadStyle::Blank ? 0x20 : 0x00;
    default:
        return 0x00;
    }
}

ShortData FillUp(const ShortData& data, std::size_t units, PadStyle style)
{
    ShortData filled = data;
    if (IsCharacterCoding(data.coding)) {
        filled.octets.resize(units, PadOctet(data.coding, style));
        filled.bitsInLastOctet = 8;
    } else {
        filled.octets.resize((units + 7) / 8, 0);
        filled.bitsInLastOctet = static_cast<std::uint8_t>(units % 8 == 0 ? 8 : units % 8);
    }
    return filled;
}

} // namespace

bool IsKnown(Coding coding)
{
    return CapacitiesOf(coding) != nullptr;
}

bool IsCharacterCoding(Coding coding)
{
    return IsKnown(coding) && coding != Coding::FreeFormat && coding != Coding::Binary;
}

std::optional<std::size_t> MostUnits(Coding coding, DataSize size)
{
    const Capacities* capacities = CapacitiesOf(coding);
    if (capacities == nullptr)
        return std::nullopt;
    const std::size_t most =
        (*capacities)[(size == DataSize::Short ? MostShortCodewords : MostCodewords) - 1];
    return most == 0 ? std::nullopt : std::optional(most);
}

bool Fits(const ShortData& data, DataSize size)
{
    const auto most = MostUnits(data.coding, size);
    return most && Units(data) <= *most;
}

std::optional<ShortData> PadToCodewords(const ShortData& data, DataSize size, PadStyle style)
{
    if (!Fits(data, size))
        return std::nullopt;
    // An MST begins where an SST ends.
    const std::size_t fewest = size == DataSize::Short ? 1 : MostShortCodewords + 1;
    const Capacities& capacities = *CapacitiesOf(data.coding);
    std::size_t codewords = fewest;
    while (capacities[codewords - 1] < Units(data))
        ++codewords;
    return FillUp(data, capacities[codewords - 1], style);
}

std::size_t CodewordCount(const ShortData& data)
{
    const Capacities* capacities = CapacitiesOf(data.coding);
    if (capacities == nullptr)
        return 0;
    for (std::size_t codewords = 1; codewords <= MostCodewords; ++codewords)
        if ((*capacities)[codewords - 1] >= Units(data) && (*capacities)[codewords - 1] > 0)
            return codewords;
    return 0;
}

} // namespace map27
