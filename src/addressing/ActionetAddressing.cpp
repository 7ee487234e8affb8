#include "addressing/ActionetAddressing.h"

#include "addressing/DialText.h"
#include "addressing/Digits.h"

namespace {

// How many digits of a full number are the prefix. A model's index is just that.
std::size_t PrefixDigits(const ActionetConfig& config)
{
    return static_cast<std::size_t>(config.model);
}

std::size_t FullLength(const ActionetConfig& config)
{
    return ActionetDigits + PrefixDigits(config);
}

bool IsSubscriber(int ident)
{
    return ident > DummyIdent && ident <= MaxSubscriberIdent;
}

// Compares what the radio reports as its units or groups with the layout. A base of 0 means that it has none,
// which contradicts nothing; a max below the base has been told of.
std::optional<AddressingError> CompareReport(AddressingCode code, NumberRange reported, int reportedDigits,
                                             NumberRange expected, int expectedDigits)
{
    const bool none = reported.first < 1 || reported.last < reported.first;
    if (none || (reported == expected && reportedDigits == expectedDigits))
        return std::nullopt;
    return AddressingError(code, {std::to_string(reported.first), std::to_string(reported.last),
                                  std::to_string(reportedDigits), std::to_string(expected.first),
                                  std::to_string(expected.last), std::to_string(expectedDigits)});
}

} // namespace

std::string ActionetAddressing::NumberingCode() const
{
    return "ACTIONET";
}

int ActionetAddressing::NumberingNameTextId() const
{
    return TextActionetName;
}

void ActionetAddressing::SetConfigSource(IMpt1343FleetConfigSource&, IActionetConfigSource& actionet)
{
    m_config.reset();
    ActionetConfig config;
    actionet.RetreiveActionetConfig(config);
    if (const auto error = CheckActionet(config))
        throw *error;
    m_config = config;
}

void ActionetAddressing::SetRadioNumbering(const RadioNumbering& numbering)
{
    m_own.reset();
    m_ownWarnings = CheckOwnFleets(numbering);
    if (const auto error = CheckOwnNumber(numbering))
        m_ownWarnings = {*error};
    else
        m_own = numbering;
}

std::vector<AddressingError> ActionetAddressing::Warnings() const
{
    std::vector<AddressingError> warnings = m_ownWarnings;
    const auto fleet = OwnFleet();
    if (!fleet)
        return warnings;
    const FleetShape& shape = *fleet->shape;
    const int firstUnit = fleet->FirstIdent();
    const int firstGroup = firstUnit + shape.units.Count();
    if (m_own->ident >= firstGroup)
        warnings.emplace_back(AddressingCode::OwnIdentNoUnit, std::vector{std::to_string(m_own->ident)});
    const auto units =
        CompareReport(AddressingCode::OwnUnitsDiffer, {m_own->unitBaseIdent, m_own->unitMaxIdent},
                      m_own->unitDigits, {firstUnit, firstGroup - 1}, shape.digits);
    const auto groups =
        CompareReport(AddressingCode::OwnGroupsDiffer, {m_own->groupBaseIdent, m_own->groupMaxIdent},
                      m_own->groupDigits, {firstGroup, firstGroup + shape.groups.Count() - 1}, shape.digits);
    for (const auto& warning : {units, groups})
        if (warning)
            warnings.push_back(*warning);
    return warnings;
}

int ActionetAddressing::OwnPrefix() const
{
    if (!m_own)
        throw AddressingError(AddressingCode::OwnNumberUnknown);
    return m_own->prefix;
}

std::optional<ActionetFleet> ActionetAddressing::OwnFleet() const
{
    if (!m_config || !m_own || !IsSubscriber(m_own->ident))
        return std::nullopt;
    return ActionetFleetOf(*m_config, m_own->ident);
}

RadioAddress ActionetAddressing::DialToAddress(const std::string& dial) const
{
    const std::string text = CleanDialText(dial);
    if (IsRawForm(text))
        return ParseRaw(text);
    if (!m_config)
        throw AddressingError(AddressingCode::NumberingNotConfigured);
    if (text == EverybodyDial)
        return SubscriberAddress(OwnPrefix(), EverybodyIdent);
    RequireDigits(text);
    return DialDigits(text);
}

RadioAddress ActionetAddressing::DialDigits(const std::string& digits) const
{
    if (digits.size() == 2 || digits.size() == 3)
        return DialOwnFleet(digits);
    if (digits.size() == ActionetDigits) {
        const int prefix = OwnPrefix(); // first: without it no number of this length can be dialled
        return SubscriberAddress(prefix, ActionetIdentOf(*m_config, digits));
    }
    if (digits.size() == FullLength(*m_config)) {
        const int prefix = ParseDigits(std::string_view(digits).substr(0, PrefixDigits(*m_config)));
        if (prefix > HighestPrefix)
            throw AddressingError(AddressingCode::PrefixRange, {std::to_string(prefix)});
        return SubscriberAddress(prefix, ActionetIdentOf(*m_config, digits.substr(PrefixDigits(*m_config))));
    }
    if (digits.front() == '0' && digits.size() > FullLength(*m_config)) {
        std::string telephone = digits.substr(1);
        RequireTelephoneLength(telephone);
        return GatewayAddress(OwnPrefix(), PstnGatewayIdent, std::move(telephone));
    }
    throw AddressingError(AddressingCode::NumberLength, {std::to_string(digits.size())});
}

RadioAddress ActionetAddressing::DialOwnFleet(const std::string& number) const
{
    const auto fleet = OwnFleet();
    if (!fleet)
        throw AddressingError(AddressingCode::OwnNumberUnknown);
    const FleetShape& shape = *fleet->shape;
    if (static_cast<int>(number.size()) != shape.digits)
        throw AddressingError(AddressingCode::OwnFleetDigits, {std::to_string(shape.digits)});
    const int ident = ActionetIdentOf(*m_config, fleet->Digits() + number);
    // The three mini fleets of a block have the same leading digits.
    if (ActionetFleetOf(*m_config, ident) != *fleet)
        throw AddressingError(AddressingCode::NotInOwnMiniFleet,
                              {number, std::to_string(shape.units.first), std::to_string(shape.units.last),
                               std::to_string(shape.groups.first), std::to_string(shape.groups.last)});
    return SubscriberAddress(m_own->prefix, ident);
}

std::string ActionetAddressing::AddressToDial(const RadioAddress& address) const
{
    ValidateAddress(address);
    if (address.kind == AddressKind::Gateway)
        return GatewayDial(address);
    if (!HasNumber(address))
        return FormatRaw(address);
    const std::string prefix = std::to_string(address.prefix);
    const std::size_t prefixDigits = PrefixDigits(*m_config);
    const bool reachable =
        prefixDigits == 0 ? m_own && address.prefix == m_own->prefix : prefix.size() <= prefixDigits;
    if (!reachable)
        return FormatRaw(address);
    const ActionetFleet fleet = ActionetFleetOf(*m_config, address.ident);
    const std::string number = fleet.Digits() + std::to_string(*fleet.NumberOf(address.ident));
    return prefixDigits == 0 ? number : std::string(prefixDigits - prefix.size(), '0') + prefix + number;
}

std::string ActionetAddressing::ShortDial(const RadioAddress& address) const
{
    ValidateAddress(address);
    if (!m_own || address.prefix != m_own->prefix || !HasNumber(address))
        return AddressToDial(address);
    const ActionetFleet fleet = ActionetFleetOf(*m_config, address.ident);
    const std::string number = std::to_string(*fleet.NumberOf(address.ident));
    return OwnFleet() == fleet ? number : fleet.Digits() + number;
}

bool ActionetAddressing::HasNumber(const RadioAddress& address) const
{
    return m_config && address.kind == AddressKind::Radio && IsSubscriber(address.ident) &&
           ActionetFleetOf(*m_config, address.ident).NumberOf(address.ident).has_value();
}

// A shorter telephone number would be read as a radio's.
std::string ActionetAddressing::GatewayDial(const RadioAddress& address) const
{
    if (m_config && m_own && address.prefix == m_own->prefix && address.ident == PstnGatewayIdent &&
        address.digits.size() >= FullLength(*m_config))
        return '0' + address.digits;
    return FormatRaw(address);
}
