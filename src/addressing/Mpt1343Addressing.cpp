#include "addressing/Mpt1343Addressing.h"

#include "addressing/DialText.h"
#include "addressing/Digits.h"
#include "addressing/Mpt1343Numbers.h"

#include <algorithm>

namespace {

// The digits in front of the number within the fleet.
constexpr std::size_t NumberPrefixLength = 3;
constexpr std::size_t FleetNumberLength = 4;

FleetType TypeOfNumber(const std::string& number)
{
    return number.front() == '9' ? FleetType::Groups : FleetType::Units;
}

int OffsetOf(const std::string& number)
{
    return ParseDigits(number) - FirstNumber(TypeOfNumber(number), static_cast<int>(number.size()));
}

// Picks the sentence about units or the one about groups.
AddressingCode ForType(FleetType type, AddressingCode units, AddressingCode groups)
{
    return type == FleetType::Units ? units : groups;
}

// Numbers in a fleet begin at 20, 200, 90 or 900.
void RequireNumberInFleet(const std::string& number)
{
    if (number.front() <= '1')
        throw AddressingError(
            number.size() == 2 ? AddressingCode::TwoDigitRange : AddressingCode::ThreeDigitRange, {number});
}

// The last number that the row's size allows.
std::string LastNumberText(const FleetConfig& row)
{
    return std::to_string(FirstNumber(row.fleetType, row.digits) + row.maxIdent - row.baseIdent);
}

std::string FirstNumberText(const FleetConfig& row)
{
    return std::to_string(FirstNumber(row.fleetType, row.digits));
}

std::string NumberPrefixText(int prefix)
{
    return std::to_string(prefix + NumberPrefixOffset);
}

bool Reaches(const FleetConfig& row, const std::string& number)
{
    return row.baseIdent + OffsetOf(number) <= row.maxIdent;
}

// An extension has a length that no radio number has, or begins with a digit that no fleet number begins with
// (they end at 6050).
bool IsPabxExtension(const std::string& digits)
{
    const char first = digits.front();
    return first != '0' &&
           (digits.size() == 4 || digits.size() == 5 || (digits.size() == 6 && first >= '7' && first <= '9'));
}

} // namespace

std::string Mpt1343Addressing::NumberingCode() const
{
    return "MPT1343";
}

int Mpt1343Addressing::NumberingNameTextId() const
{
    return TextMpt1343Name;
}

void Mpt1343Addressing::SetConfigSource(IMpt1343FleetConfigSource& fleets, IActionetConfigSource&)
{
    m_fleets.SetPlan({});
    std::vector<FleetConfig> plan(static_cast<std::size_t>(fleets.NumberOfFleets()));
    fleets.RetreiveFleetConfig(plan);
    m_fleets.SetPlan(plan);
}

void Mpt1343Addressing::SetRadioNumbering(const RadioNumbering& numbering)
{
    m_fleets.SetOwn(numbering);
}

std::vector<AddressingError> Mpt1343Addressing::Warnings() const
{
    return m_fleets.Warnings();
}

int Mpt1343Addressing::OwnPrefix() const
{
    if (!m_fleets.OwnPrefix())
        throw AddressingError(AddressingCode::OwnNumberUnknown);
    return *m_fleets.OwnPrefix();
}

RadioAddress Mpt1343Addressing::DialToAddress(const std::string& dial) const
{
    const std::string text = CleanDialText(dial);
    if (IsRawForm(text))
        return ParseRaw(text);
    if (text == EverybodyDial)
        return SubscriberAddress(OwnPrefix(), EverybodyIdent);
    const std::string digits = WithoutInnerSlashes(text);
    RequireDigits(digits);
    return DialDigits(digits);
}

RadioAddress Mpt1343Addressing::DialDigits(const std::string& digits) const
{
    if (digits.front() == '0') {
        std::string telephone = digits.substr(1);
        RequireTelephoneLength(telephone);
        return GatewayAddress(OwnPrefix(), PstnGatewayIdent, std::move(telephone));
    }
    if (IsPabxExtension(digits))
        return GatewayAddress(OwnPrefix(), PabxGatewayIdent, digits);
    switch (digits.size()) {
    case 2:
    case 3:
        return DialOwnFleet(digits);
    case 6:
    case 7:
        return DialFleet(OwnPrefix(), digits, digits);
    case 9:
    case 10: {
        const int numberPrefix = ParseDigits(std::string_view(digits).substr(0, NumberPrefixLength));
        if (numberPrefix < MinNumberPrefix || numberPrefix > MaxNumberPrefix)
            throw AddressingError(AddressingCode::NumberPrefixRange, {std::to_string(numberPrefix)});
        return DialFleet(numberPrefix - NumberPrefixOffset, digits.substr(NumberPrefixLength), digits);
    }
    default:
        throw AddressingError(AddressingCode::NumberLength, {std::to_string(digits.size())});
    }
}

RadioAddress Mpt1343Addressing::DialOwnFleet(const std::string& number) const
{
    const int prefix = OwnPrefix();
    RequireNumberInFleet(number);
    const FleetType type = TypeOfNumber(number);
    const FleetConfig* row = m_fleets.OwnRow(type);
    if (!row)
        throw AddressingError(
            ForType(type, AddressingCode::OwnFleetHasNoUnits, AddressingCode::OwnFleetHasNoGroups));
    if (row->digits != static_cast<int>(number.size()))
        throw AddressingError(ForType(type, AddressingCode::OwnUnitDigits, AddressingCode::OwnGroupDigits),
                              {std::to_string(row->digits)});
    if (!Reaches(*row, number))
        throw AddressingError(
            ForType(type, AddressingCode::UnitNotInOwnFleet, AddressingCode::GroupNotInOwnFleet),
            {number, FirstNumberText(*row), LastNumberText(*row)});
    return SubscriberAddress(prefix, row->baseIdent + OffsetOf(number));
}

RadioAddress Mpt1343Addressing::DialFleet(int prefix, const std::string& fleetAndNumber,
                                          const std::string& dialled) const
{
    const std::string fleet = fleetAndNumber.substr(0, FleetNumberLength);
    const std::string number = fleetAndNumber.substr(FleetNumberLength);
    const int fleetNumber = ParseDigits(fleet);
    if (fleetNumber < MinFleetNumber || fleetNumber > MaxFleetNumber)
        throw AddressingError(AddressingCode::FleetNumberRange, {fleet});
    RequireNumberInFleet(number);

    const FleetType type = TypeOfNumber(number);
    const FleetConfig* row = m_fleets.Find(prefix, BaseIdentOf(fleetNumber), type);
    if (!row)
        return SubscriberAddress(prefix, UnplannedIdent(prefix, fleetNumber, number, dialled));
    if (row->digits != static_cast<int>(number.size()))
        throw AddressingError(AddressingCode::FleetDigits,
                              {NumberPrefixText(prefix), fleet, std::to_string(row->digits)});
    if (!Reaches(*row, number))
        throw AddressingError(
            ForType(type, AddressingCode::UnitNotInFleet, AddressingCode::GroupNotInFleet),
            {number, NumberPrefixText(prefix), fleet, FirstNumberText(*row), LastNumberText(*row)});
    return SubscriberAddress(prefix, row->baseIdent + OffsetOf(number));
}

int Mpt1343Addressing::UnplannedIdent(int prefix, int fleetNumber, const std::string& number,
                                      const std::string& dialled) const
{
    const FleetType type = TypeOfNumber(number);
    const int base = BaseIdentOf(fleetNumber);
    std::vector<std::string> fleetTexts{NumberPrefixText(prefix), std::to_string(fleetNumber)};

    const FleetType otherType = type == FleetType::Units ? FleetType::Groups : FleetType::Units;
    if (m_fleets.Find(prefix, base, otherType))
        throw AddressingError(
            ForType(type, AddressingCode::FleetHasNoUnits, AddressingCode::FleetHasNoGroups), fleetTexts);
    const bool inItsRange =
        type == FleetType::Units ? fleetNumber <= LastUnitFleetNumber : fleetNumber >= FirstGroupFleetNumber;
    if (!inItsRange)
        throw AddressingError(ForType(type, AddressingCode::NotAUnitFleet, AddressingCode::NotAGroupFleet),
                              fleetTexts);
    const int ident = base + OffsetOf(number);
    if (ident > MaxSubscriberIdent)
        throw AddressingError(AddressingCode::IdentAboveLimit, {dialled, std::to_string(ident)});
    if (const FleetConfig* row = m_fleets.FindContaining(prefix, ident)) {
        fleetTexts.push_back(std::to_string(row->baseIdent));
        fleetTexts.push_back(std::to_string(row->maxIdent));
        throw AddressingError(AddressingCode::OverlapsPlan, fleetTexts);
    }
    return ident;
}

std::string Mpt1343Addressing::AddressToDial(const RadioAddress& address) const
{
    ValidateAddress(address);
    if (address.kind == AddressKind::Gateway)
        return GatewayDial(address);
    const auto found = FindNumber(address);
    if (!found || !IsDialledByFleetNumber(*found->row))
        return FormatRaw(address);
    return NumberPrefixText(address.prefix) + std::to_string(FleetNumberOf(found->row->baseIdent)) +
           found->number;
}

std::string Mpt1343Addressing::ShortDial(const RadioAddress& address) const
{
    ValidateAddress(address);
    if (address.kind == AddressKind::Gateway)
        return GatewayDial(address);
    const auto found = FindNumber(address);
    if (found && m_fleets.IsOwnRow(*found->row))
        return found->number;
    if (found && address.prefix == m_fleets.OwnPrefix() && IsDialledByFleetNumber(*found->row))
        return std::to_string(FleetNumberOf(found->row->baseIdent)) + found->number;
    return AddressToDial(address);
}

std::optional<Mpt1343Addressing::NumberInFleet>
Mpt1343Addressing::FindNumber(const RadioAddress& address) const
{
    const FleetConfig* row = m_fleets.FindContaining(address.prefix, address.ident);
    if (!row)
        return std::nullopt;
    const int number = FirstNumber(row->fleetType, row->digits) + address.ident - row->baseIdent;
    if (number > LastNumber(row->fleetType, row->digits))
        return std::nullopt;
    return NumberInFleet{row, std::to_string(number)};
}

// A fleet number stands for an even base ident. Of two rows with the same base only the first is found again.
bool Mpt1343Addressing::IsDialledByFleetNumber(const FleetConfig& row) const
{
    return row.baseIdent % 2 == 0 && m_fleets.Find(row.prefix, row.baseIdent, row.fleetType) == &row;
}

std::string Mpt1343Addressing::GatewayDial(const RadioAddress& address) const
{
    if (address.prefix == m_fleets.OwnPrefix()) {
        if (address.ident == PstnGatewayIdent)
            return '0' + address.digits;
        if (IsPabxExtension(address.digits))
            return address.digits;
    }
    return FormatRaw(address);
}
