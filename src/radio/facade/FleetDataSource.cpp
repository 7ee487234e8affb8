#include "radio/facade/FleetDataSource.h"

#include "core/session/DbSession.h"
#include "core/session/Registry.h"
#include "core/texts/Errors.h"
#include "dao/tables/SessionReadings.h"
#include "radio/base/TextIds.h"

#include <QString>
#include <algorithm>
#include <utility>

FleetDataSource::FleetDataSource(IDbSession& session, const IStringSource& strings)
    : m_session(session),
      m_strings(strings)
{
}

int FleetDataSource::NumberOfFleets()
{
    m_plan = ReadPlan();
    if (m_plan.empty())
        RaiseCatalogueError(m_strings, RadioText::FleetPlanNotConfigured);
    return static_cast<int>(m_plan.size());
}

void FleetDataSource::RetreiveFleetConfig(std::span<FleetConfig> fleets)
{
    const std::vector<FleetConfig> plan = m_plan.empty() ? ReadPlan() : std::exchange(m_plan, {});
    if (plan.empty() || plan.size() > fleets.size())
        RaiseCatalogueError(m_strings, RadioText::FleetPlanNotConfigured);
    if (plan.size() < fleets.size())
        RaiseCatalogueError(m_strings, RadioText::NumberingUnexpectedEnd);
    std::copy(plan.begin(), plan.end(), fleets.begin());
}

std::vector<FleetConfig> FleetDataSource::ReadPlan()
{
    std::vector<FleetConfig> plan;
    const auto records = m_session.Database().OpenSnapshot(dao::FleetPlanQuery);
    for (; !records->Eof(); records->MoveNext()) {
        FleetConfig fleet;
        fleet.fleetType =
            records->Field(QStringLiteral("fleet_type")).toInt() == 1 ? FleetType::Units : FleetType::Groups;
        fleet.digits = records->Field(QStringLiteral("digits")).toInt();
        fleet.prefix = records->Field(QStringLiteral("prefix")).toInt();
        fleet.baseIdent = records->Field(QStringLiteral("base_ident")).toInt();
        fleet.maxIdent = records->Field(QStringLiteral("max_ident")).toInt();
        plan.push_back(fleet);
    }
    return plan;
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
