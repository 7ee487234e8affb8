#pragma once

#include <QString>

struct IStringSource;

// The parameters of the ANN numbering as its window edits them.

inline constexpr int MaxActionetParameter = 10; // of FPP, of MEP, and of their sum

// What remains of the one parameter when the other has changed: together they never exceed the maximum.
int LimitedBy(int changed, int other);

// How many fleets of each kind the parameters make, as a sentence.
QString FleetCountsText(int fpp, int mep, const IStringSource& strings);
