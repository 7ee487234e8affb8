#include "radio/facade/FleetDataSource.h"

#include "core/session/DbSession.h"
#include "core/session/Registry.h"
#include "core/texts/Errors.h"
#include "dao/records/Database.h"
#include "radio/base/TextIds.h"

#include <QString>

FleetDataSource::FleetDataSource(IDbSession& session, const IStringSource& strings)
    : m_session(session),
      m_strings(strings)
{
}

int FleetDataSource::NumberOfFleets()
{
    const int count = CountFleets();
    if (count == 0)
        RaiseCatalogueError(m_strings, RadioText::FleetPlanNotConfigured);
    return count;
}

void FleetDataSource::RetreiveFleetConfig(std::span<FleetConfig> fleets)
{
    const int count = CountFleets();
    if (count == 0 || static_cast<std::size_t>(count) != fleets.size())
        RaiseCatalogueError(m_strings, RadioText::FleetPlanNotConfigured);
    const auto records =
        m_session.Database().OpenSnapshot(QStringLiteral("select * from fleet order by prefix, base_ident"));
    for (FleetConfig& fleet : fleets) {
        if (records->Eof())
            RaiseCatalogueError(m_strings, RadioText::NumberingUnexpectedEnd);
        fleet.fleetType =
            records->Field(QStringLiteral("fleet_type")).toInt() == 1 ? FleetType::Units : FleetType::Groups;
        fleet.digits = records->Field(QStringLiteral("digits")).toInt();
        fleet.prefix = records->Field(QStringLiteral("prefix")).toInt();
        fleet.baseIdent = records->Field(QStringLiteral("base_ident")).toInt();
        fleet.maxIdent = records->Field(QStringLiteral("max_ident")).toInt();
        records->MoveNext();
    }
}

void FleetDataSource::RetreiveActionetConfig(ActionetConfig& config)
{
    config.model = Parameter(QStringLiteral("ANN_MODEL"), QStringLiteral("-1"));
    if (config.model == -1)
        RaiseCatalogueError(m_strings, RadioText::AnnNotConfigured);
    config.FPP = Parameter(QStringLiteral("ANN_FPP"), QStringLiteral("10"));
    config.MEP = Parameter(QStringLiteral("ANN_MEP"), QStringLiteral("0"));
}

// -1, which is never valid, for a text that is not a whole number.
int FleetDataSource::Parameter(const QString& key, const QString& fallback)
{
    bool whole = false;
    const int value = RegistryGet(m_session, key, fallback).toInt(&whole);
    return whole ? value : -1;
}

int FleetDataSource::CountFleets()
{
    const auto records = m_session.Database().OpenSnapshot(QStringLiteral("select count(*) as c from fleet"));
    return records->Eof() ? 0 : records->Field(QStringLiteral("c")).toInt();
}
