#include "dao/tables/SessionReadings.h"

#include "dao/tables/AddressTable.h"
#include "dao/tables/AttentionTable.h"
#include "dao/tables/RegistryTable.h"
#include "dao/tables/RegroupTable.h"
#include "dao/tables/StatusTable.h"
#include "dao/tables/UserProfileTable.h"

namespace dao {

QList<Reading> SessionReadings(const QString& userName)
{
    const QVariantMap everything{{QStringLiteral("lookfor"), QString()}};
    QList<Reading> readings{
        {.source = AddressTable::Table},
        {.source = RegroupTable::Table},
        {.source = RegistryTable::Table},
        {.source = AttentionTable::Table},
        UserProfileTable::ReadingOf(userName),
        {.source = FleetPlanQuery},
        {.source = StatusTable::ByCode()},
        {.source = QStringLiteral("find_group_ob_callsign"), .parameters = everything},
        {.source = QStringLiteral("find_group_ob_ident"), .parameters = everything},
        {.source = QStringLiteral("dynamic_members")},
        {.source = QStringLiteral("find_individual_ob_callsign"), .parameters = everything},
    };
    for (const char* parameter : {"ANN_MODEL", "ANN_FPP", "ANN_MEP"})
        readings.append(RegistryTable::ReadingOf(QLatin1String(parameter)));
    return readings;
}

} // namespace dao
