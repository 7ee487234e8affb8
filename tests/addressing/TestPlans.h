#pragma once

#include "addressing/CreateAddressing.h"
#include "support/Table.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

// A configuration and an own number that the vectors are read with.
struct TestPlan {
    std::vector<FleetConfig> fleets;
    std::optional<RadioNumbering> own;
    std::optional<ActionetConfig> actionet = std::nullopt; // ANN instead of MPT1343
};

inline TestPlan PlanNamed(const std::string& name)
{
    constexpr FleetType units = FleetType::Units;
    constexpr FleetType groups = FleetType::Groups;
    if (name == "P1")
        return {{{units, 2, 0, 2, 71},
                 {units, 3, 0, 200, 899},
                 {units, 2, 0, 1000, 1009},
                 {groups, 2, 0, 7000, 7009},
                 {groups, 3, 0, 7100, 7199},
                 {units, 2, 1, 1020, 1089},
                 {groups, 3, 1, 8000, 8049},
                 {units, 3, 5, 4000, 4070},
                 {groups, 3, 5, 7500, 7510},
                 {units, 3, 127, 7000, 7699},
                 {units, 2, 127, 8098, 8100}},
                RadioNumbering{0, 3, 2, 71, 7000, 7009, 2, 2}};
    if (name == "P2") // an odd base and no groups, as a badly set-up radio reports them
        return {{}, RadioNumbering{3, 1205, 1201, 1300, 0, 0, 3, 3}};
    if (name == "P3")
        return {{}, RadioNumbering{10, 5000, 4900, 5599, 7000, 7099, 3, 3}};
    if (name == "P4")
        return {};
    if (name == "ANN-A") // large fleet 0
        return {{}, RadioNumbering{.prefix = 0, .ident = 1}, ActionetConfig{.FPP = 3, .MEP = 2, .model = 3}};
    if (name == "ANN-B") // third mini fleet of block 99
        return {
            {}, RadioNumbering{.prefix = 4, .ident = 8074}, ActionetConfig{.FPP = 0, .MEP = 10, .model = 1}};
    if (name == "ANN-C") // large fleet 1
        return {
            {}, RadioNumbering{.prefix = 7, .ident = 811}, ActionetConfig{.FPP = 10, .MEP = 0, .model = 0}};
    if (name == "ANN-D") // small fleet 01
        return {
            {}, RadioNumbering{.prefix = 12, .ident = 82}, ActionetConfig{.FPP = 0, .MEP = 0, .model = 2}};
    if (name == "ANN-E") // no own number yet
        return {{}, std::nullopt, ActionetConfig{.FPP = 0, .MEP = 0, .model = 2}};
    throw std::invalid_argument("no plan " + name);
}

class ListSource : public IMpt1343FleetConfigSource, public IActionetConfigSource {
public:
    explicit ListSource(std::vector<FleetConfig> fleets) : m_fleets(std::move(fleets)) {}
    explicit ListSource(const ActionetConfig& actionet) : m_actionet(actionet) {}

    int NumberOfFleets() override { return static_cast<int>(m_fleets.size()); }
    void RetreiveFleetConfig(std::span<FleetConfig> fleets) override
    {
        std::copy(m_fleets.begin(), m_fleets.end(), fleets.begin());
    }
    void RetreiveActionetConfig(ActionetConfig& config) override { config = m_actionet.value(); }

private:
    std::vector<FleetConfig> m_fleets;
    std::optional<ActionetConfig> m_actionet;
};

inline std::unique_ptr<MptAddressing> MakeAddressing(const TestPlan& plan)
{
    auto addressing = CreateAddressing(plan.actionet ? "ACTIONET" : "MPT1343");
    ListSource source = plan.actionet ? ListSource(*plan.actionet) : ListSource(plan.fleets);
    addressing->SetConfigSource(source, source);
    if (plan.own)
        addressing->SetRadioNumbering(*plan.own);
    return addressing;
}

// The cells of a line of a file in data/addressing: what a text converts to and back, or the sentence that
// refuses it.
enum VectorField {
    PlanField,
    DialField,
    PrefixField,
    IdentField,
    KindField,
    DigitsField,
    CanonicalField,
    ShortField,
    ErrorField
};

inline std::vector<TableRow> ReadDialVectors(const std::string& name, std::size_t count)
{
    std::vector<TableRow> vectors = ReadTable("addressing/" + name, "Vectors", count);
    for (TableRow& vector : vectors)
        std::replace(vector.begin(), vector.end(), std::string("-"), std::string());
    return vectors;
}
