#include "numbering/FleetRules.h"

#include "addressing/FleetPlanChecks.h"
#include "addressing/Mpt1343Numbers.h"
#include "addressing/RadioAddress.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "numbering/TextIds.h"
#include "radio/base/AddressingText.h"

#include <algorithm>

namespace {

enum class Parity {
    Any,
    Even,
    Odd,
};

struct FieldRule {
    FleetField kind;
    int shortest;
    int longest;
    int lowest;
    int highest;
    Parity parity;
};

constexpr FieldRule FieldRules[] = {
    {FleetField::Prefix1327, 1, 3, 0, HighestPrefix, Parity::Any},
    {FleetField::BaseIdent, 1, 4, 2, MaxSubscriberIdent, Parity::Even},
    {FleetField::MaxIdent, 1, 4, 2, MaxSubscriberIdent, Parity::Odd},
    {FleetField::Prefix1343, 1, 3, MinNumberPrefix, MaxNumberPrefix, Parity::Any},
    {FleetField::FleetNumber, 4, 4, MinFleetNumber, MaxFleetNumber, Parity::Any},
    {FleetField::FleetSize, 1, 3, MinFleetSize, MaxUnitFleetSize, Parity::Even},
};

bool HasParity(int value, Parity parity)
{
    return parity == Parity::Any || (value % 2 == 0) == (parity == Parity::Even);
}

// How many numbers of a fleet two digits allow.
int TwoDigitNumbers(FleetType type)
{
    return LastNumber(type, 2) - FirstNumber(type, 2) + 1;
}

bool IsValidSize(FleetType type, const QString& text)
{
    const auto size = ValidateFleetField(FleetField::FleetSize, text);
    return size && (type == FleetType::Units || *size <= MaxGroupFleetSize);
}

// The checks of the individual fields, in order.
std::optional<FleetRefusal> CheckFields(const FleetEntry& entry, const IStringSource& strings)
{
    const auto refuse = [&](FleetInput input, int textId) {
        return FleetRefusal{input, strings.LoadString(textId)};
    };
    if (entry.name.trimmed().isEmpty())
        return refuse(FleetInput::Name, NumberingText::NameMissing);
    if (!entry.type)
        return refuse(FleetInput::Type, NumberingText::TypeMissing);
    if (!ValidateFleetField(FleetField::Prefix1343, entry.prefix1343))
        return refuse(FleetInput::Prefix, NumberingText::PrefixInvalid);
    if (!ValidateFleetField(FleetField::FleetNumber, entry.fleetNumber))
        return refuse(FleetInput::Number, NumberingText::NumberInvalid);
    if (!IsValidSize(*entry.type, entry.fleetSize))
        return refuse(FleetInput::Size, NumberingText::SizeInvalid);
    if (!entry.digits)
        return refuse(FleetInput::Digits, NumberingText::DigitsMissing);
    return std::nullopt;
}

PlannedFleet Planned(const FleetEntry& entry)
{
    return {.fleetType = *entry.type,
            .numberPrefix = entry.prefix1343.toInt(),
            .fleetNumber = entry.fleetNumber.toInt(),
            .size = entry.fleetSize.toInt()};
}

std::optional<FleetRefusal> CheckTexts(const FleetRecord& record, const FleetPlanContext& plan,
                                       const IStringSource& strings)
{
    const auto refuse = [&](FleetInput input, int textId, const QString& value) {
        return FleetRefusal{input, FormatMessage(strings, textId, {value})};
    };
    if (record.name.size() > plan.longestName)
        return refuse(FleetInput::Name, NumberingText::NameTooLong, QString::number(plan.longestName));
    if (record.notes.size() > plan.longestNotes)
        return refuse(FleetInput::Notes, NumberingText::NotesTooLong, QString::number(plan.longestNotes));
    for (const FleetRecord& other : plan.others)
        if (other.name == record.name)
            return refuse(FleetInput::Name, NumberingText::NameTaken, record.name);
    return std::nullopt;
}

} // namespace

std::optional<int> ValidateFleetField(FleetField kind, const QString& text)
{
    const auto* rule = std::find_if(
        std::begin(FieldRules), std::end(FieldRules),
        [kind](const FieldRule& candidate) { return candidate.kind == kind; });
    const bool digitsOnly = std::all_of(
        text.begin(), text.end(), [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
    if (!digitsOnly || text.size() < rule->shortest || text.size() > rule->longest)
        return std::nullopt;
    const int value = text.toInt();
    if (value < rule->lowest || value > rule->highest || !HasParity(value, rule->parity))
        return std::nullopt;
    return value;
}

QString Prefix1327From(const QString& prefix1343)
{
    const auto prefix = ValidateFleetField(FleetField::Prefix1343, prefix1343);
    return prefix ? QString::number(*prefix - NumberPrefixOffset) : QString();
}

QString BaseIdentFrom(const QString& fleetNumber)
{
    const auto number = ValidateFleetField(FleetField::FleetNumber, fleetNumber);
    return number ? QString::number(BaseIdentOf(*number)) : QString();
}

QString MaxIdentFrom(const QString& baseIdent, const QString& fleetSize)
{
    const auto base = ValidateFleetField(FleetField::BaseIdent, baseIdent);
    const auto size = ValidateFleetField(FleetField::FleetSize, fleetSize);
    return base && size ? QString::number(*base + *size - 1) : QString();
}

QString Prefix1343From(const QString& prefix1327)
{
    const auto prefix = ValidateFleetField(FleetField::Prefix1327, prefix1327);
    return prefix ? QString::number(*prefix + NumberPrefixOffset) : QString();
}

QString FleetNumberFrom(const QString& baseIdent)
{
    const auto base = ValidateFleetField(FleetField::BaseIdent, baseIdent);
    return base ? QString::number(FleetNumberOf(*base)) : QString();
}

QString FleetSizeFrom(const QString& base, const QString& max)
{
    const auto last = ValidateFleetField(FleetField::MaxIdent, max);
    return last ? QString::number(*last - base.toInt() + 1) : QString();
}

bool NeedsThreeDigits(std::optional<FleetType> type, const QString& baseIdent, const QString& fleetSize)
{
    const auto size = ValidateFleetField(FleetField::FleetSize, fleetSize);
    return type && size && ValidateFleetField(FleetField::BaseIdent, baseIdent) &&
           *size > TwoDigitNumbers(*type);
}

std::optional<FleetRefusal> CheckFleetEntry(const FleetEntry& entry, const FleetPlanContext& plan,
                                            const IStringSource& strings)
{
    if (const auto refusal = CheckFields(entry, strings))
        return refusal;
    const FleetRecord record = ToRecord(entry);
    if (const auto refusal = CheckTexts(record, plan, strings))
        return refusal;
    std::vector<FleetConfig> fleets;
    for (const FleetRecord& other : plan.others)
        fleets.push_back(other.fleet);
    if (const auto error = CheckFleet(Planned(entry)))
        return FleetRefusal{FleetInput::Size, AddressingFailure(*error, strings).Description()};
    if (const auto error = CheckOverlap(record.fleet, fleets))
        return FleetRefusal{FleetInput::Number, AddressingFailure(*error, strings).Description()};
    return std::nullopt;
}

FleetRecord ToRecord(const FleetEntry& entry)
{
    return {.name = entry.name.trimmed(),
            .fleet = ToFleetConfig(Planned(entry), *entry.digits),
            .notes = entry.notes};
}

FleetEntry ToEntry(const FleetRecord& record)
{
    const QString base = QString::number(record.fleet.baseIdent);
    return {.name = record.name,
            .type = record.fleet.fleetType,
            .prefix1343 = Prefix1343From(QString::number(record.fleet.prefix)),
            .fleetNumber = FleetNumberFrom(base),
            .fleetSize = FleetSizeFrom(base, QString::number(record.fleet.maxIdent)),
            .digits = record.fleet.digits,
            .notes = record.notes};
}
