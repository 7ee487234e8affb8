#include "numbering/ActionetRules.h"

#include "addressing/ActionetLayout.h"
#include "core/texts/FormatMessage.h"
#include "numbering/TextIds.h"

#include <algorithm>

int LimitedBy(int changed, int other)
{
    return std::min(other, MaxActionetParameter - changed);
}

QString FleetCountsText(int fpp, int mep, const IStringSource& strings)
{
    const ActionetFleetCounts counts = CountActionetFleets({.FPP = fpp, .MEP = mep});
    return FormatMessage(
        strings, NumberingText::FleetCounts,
        {QString::number(counts.large), QString::number(counts.small), QString::number(counts.mini)});
}
