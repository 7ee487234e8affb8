#pragma once

#include "addressing/FleetConfig.h"

#include <QString>
#include <optional>
#include <vector>

struct IStringSource;

// What the fleet plan's fields may hold and how they follow from each other. Texts are those of the fields.

enum class FleetField {
    Prefix1327 = 1,  // 0..127
    BaseIdent = 2,   // 2..8100, even
    MaxIdent = 3,    // 2..8100, odd
    Prefix1343 = 4,  // 200..327
    FleetNumber = 5, // 2001..6050, four digits
    FleetSize = 6,   // 2..700, even
};

// The value of a valid text; none otherwise.
std::optional<int> ValidateFleetField(FleetField kind, const QString& text);

// Fields that follow from what is typed; empty when that is not valid.
QString Prefix1327From(const QString& prefix1343);
QString BaseIdentFrom(const QString& fleetNumber);
QString MaxIdentFrom(const QString& baseIdent, const QString& fleetSize);
// The reverse, for a fleet that is read.
QString Prefix1343From(const QString& prefix1327);
QString FleetNumberFrom(const QString& baseIdent);
QString FleetSizeFrom(const QString& base, const QString& max);

// Whether a fleet is too large for 2-digit numbers. False while type, base ident or size are not valid.
bool NeedsThreeDigits(std::optional<FleetType> type, const QString& baseIdent, const QString& fleetSize);

// One row of the table fleet.
struct FleetRecord {
    QString name;
    FleetConfig fleet;
    QString notes;
};

// What a person has entered for a fleet.
struct FleetEntry {
    QString name;
    std::optional<FleetType> type;
    QString prefix1343;
    QString fleetNumber;
    QString fleetSize;
    std::optional<int> digits; // 2 or 3
    QString notes;
};

enum class FleetInput {
    Name,
    Type,
    Prefix,
    Number,
    Size,
    Digits,
    Notes,
};

// The plan that an entry joins, without the row that it replaces.
struct FleetPlanContext {
    std::vector<FleetRecord> others;
    int longestName;  // characters
    int longestNotes; // characters
};

// Why an entry is refused, and where to correct it.
struct FleetRefusal {
    FleetInput input;
    QString text;
};

// The first check that the entry fails; none when it may be stored.
std::optional<FleetRefusal> CheckFleetEntry(const FleetEntry& entry, const FleetPlanContext& plan,
                                            const IStringSource& strings);

// The row of an entry that CheckFleetEntry() accepts, and the entry of a row.
FleetRecord ToRecord(const FleetEntry& entry);
FleetEntry ToEntry(const FleetRecord& record);
