#pragma once

#include "addressing/FleetConfig.h"

#include <QString>
#include <vector>

struct IDbSession;
struct IStringSource;

// Feeds the numbering component from the fleet plan (table fleet) and the ANN parameters of the open
// database: counting the fleets reads the plan that is then retrieved. Raises Error with
// RadioText::AnnNotConfigured or FleetPlanNotConfigured for a missing configuration and
// NumberingUnexpectedEnd for a plan that has become shorter; database failures pass through unchanged.
class FleetDataSource : public IMpt1343FleetConfigSource, public IActionetConfigSource {
public:
    FleetDataSource(IDbSession& session, const IStringSource& strings);

    int NumberOfFleets() override;
    void RetreiveFleetConfig(std::span<FleetConfig> fleets) override;
    void RetreiveActionetConfig(ActionetConfig& config) override;

private:
    std::vector<FleetConfig> ReadPlan();
    int Parameter(const QString& key, const QString& fallback);

    IDbSession& m_session;
    const IStringSource& m_strings;
    std::vector<FleetConfig> m_plan; // counted and not retrieved yet
};
