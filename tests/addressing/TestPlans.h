#pragma once

#include "addressing/MptAddressing.h"

#include <fstream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

// A fleet plan and an own number that the vectors are read with.
struct TestPlan {
    std::vector<FleetConfig> fleets;
    std::optional<RadioNumbering> own;
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
    throw std::invalid_argument("no plan " + name);
}

class ListSource : public IMpt1343FleetConfigSource, public IActionetConfigSource {
public:
    explicit ListSource(std::vector<FleetConfig> fleets) : m_fleets(std::move(fleets)) {}

    int NumberOfFleets() override { return static_cast<int>(m_fleets.size()); }
    void RetreiveFleetConfig(std::span<FleetConfig> fleets) override
    {
        std::copy(m_fleets.begin(), m_fleets.end(), fleets.begin());
    }
    void RetreiveActionetConfig(ActionetConfig&) override { throw std::logic_error("not asked for"); }

private:
    std::vector<FleetConfig> m_fleets;
};

inline std::unique_ptr<MptAddressing> MakeMpt1343(const TestPlan& plan)
{
    auto addressing = CreateAddressing("MPT1343");
    ListSource source(plan.fleets);
    addressing->SetConfigSource(source, source);
    if (plan.own)
        addressing->SetRadioNumbering(*plan.own);
    return addressing;
}

// A line of data/addressing/mpt1343.tsv: what a text converts to and back, or the sentence that refuses it.
struct DialVector {
    std::string plan, dial, prefix, ident, kind, digits, canonical, shortDial, error;
};

inline std::vector<DialVector> ReadDialVectors()
{
    std::ifstream file(TEST_DATA_DIR "/addressing/mpt1343.tsv");
    std::vector<DialVector> vectors;
    std::string line;
    std::getline(file, line); // headings
    while (std::getline(file, line)) {
        std::vector<std::string> fields(1);
        for (const char c : line)
            c == '\t' ? fields.emplace_back() : fields.back() += c;
        for (std::string& field : fields)
            field = field == "-" ? "" : field;
        vectors.push_back({fields.at(0), fields.at(1), fields.at(2), fields.at(3), fields.at(4), fields.at(5),
                           fields.at(6), fields.at(7), fields.at(8)});
    }
    return vectors;
}
