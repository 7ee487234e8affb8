#pragma once

#include "addressing/FleetConfig.h"

#include <QString>

struct IDbSession;
struct IStringSource;

// Feeds the numbering component from the fleet plan (table fleet) and the ANN parameters of the open
// database. Reads afresh at every call. Raises Error 202 (ANN) or 203 (MPT1343) for a missing configuration
// and 200 for a plan that changes while it is read; database failures pass as they are.
class FleetDataSource : public IMpt1343FleetConfigSource, public IActionetConfigSource {
public:
    FleetDataSource(IDbSession& session, const IStringSource& strings);

    int NumberOfFleets() override;
    void RetreiveFleetConfig(std::span<FleetConfig> fleets) override;
    void RetreiveActionetConfig(ActionetConfig& config) override;

private:
    int CountFleets();
    int Parameter(const QString& key, const QString& fallback);

    IDbSession& m_session;
    const IStringSource& m_strings;
};
