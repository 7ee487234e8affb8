#include "addressing/FleetPlanChecks.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

constexpr FleetType units = FleetType::Units;
constexpr FleetType groups = FleetType::Groups;

struct FleetCase {
    PlannedFleet fleet;
    std::optional<AddressingCode> code;
    std::vector<std::string> values = {};
};

TEST(FleetPlanChecks, Fleets)
{
    const FleetCase cases[] = {
        {{units, 200, 6049, 2}, std::nullopt},
        {{units, 200, 6049, 3}, std::nullopt},
        {{units, 200, 6049, 4}, AddressingCode::FleetEndsTooHigh, {"200", "6049"}},
        {{units, 200, 6050, 2}, AddressingCode::FleetEndsTooHigh, {"200", "6050"}},
        {{units, 327, 2001, 700}, std::nullopt},
        {{units, 327, 2001, 701}, AddressingCode::UnitFleetSize, {"701"}},
        {{units, 327, 2001, 1}, AddressingCode::UnitFleetSize, {"1"}},
        {{groups, 200, 5500, 100}, std::nullopt},
        {{groups, 200, 5500, 101}, AddressingCode::GroupFleetSize, {"101"}},
        {{units, 199, 2000, 0}, AddressingCode::NumberPrefixRange, {"199"}},
        {{units, 328, 2001, 2}, AddressingCode::NumberPrefixRange, {"328"}},
        {{units, 200, 2000, 0}, AddressingCode::FleetNumberRange, {"2000"}},
        {{units, 200, 6051, 2}, AddressingCode::FleetNumberRange, {"6051"}},
        {{units, 200, 6050, 701}, AddressingCode::UnitFleetSize, {"701"}},
    };
    for (const FleetCase& test : cases) {
        const auto error = CheckFleet(test.fleet);
        ASSERT_EQ(error.has_value(), test.code.has_value())
            << test.fleet.fleetNumber << " x " << test.fleet.size;
        if (error) {
            EXPECT_EQ(error->Code(), *test.code) << error->what();
            EXPECT_EQ(error->Values(), test.values);
        }
    }
}

TEST(FleetPlanChecks, OverlapIsToldOfTheLaterRow)
{
    const FleetConfig seventy = ToFleetConfig({units, 200, 2001, 70}, 2);
    const FleetConfig next = ToFleetConfig({groups, 200, 2036, 10}, 2);
    EXPECT_EQ(seventy, (FleetConfig{units, 2, 0, 2, 71}));
    EXPECT_EQ(next, (FleetConfig{groups, 2, 0, 72, 81}));
    EXPECT_TRUE(CheckPlan(std::vector{seventy, next}).empty());
    EXPECT_TRUE(CheckPlan(std::vector{seventy, ToFleetConfig({units, 201, 2001, 70}, 2)}).empty());

    const FleetConfig overlapping = ToFleetConfig({units, 200, 2035, 10}, 2);
    const auto findings = CheckPlan(std::vector{next, seventy, overlapping});
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_EQ(findings[0].row, 2u);
    EXPECT_EQ(findings[0].error.Code(), AddressingCode::FleetsOverlap);
    EXPECT_EQ(findings[0].error.Values(), (std::vector<std::string>{"200", "2035", "200", "2036"}));
}

TEST(FleetPlanChecks, ImportedRows)
{
    const std::pair<FleetConfig, std::optional<AddressingCode>> rows[] = {
        {{units, 2, 127, 8098, 8100}, std::nullopt},
        {{units, 2, 128, 2, 71}, AddressingCode::PrefixRange},
        {{units, 2, INT_MAX, 2, 71}, AddressingCode::PrefixRange},
        {{units, 2, 0, 3, 71}, AddressingCode::FleetBaseIdent},
        {{units, 2, 0, 0, 71}, AddressingCode::FleetBaseIdent},
        {{units, 2, 0, 8102, 8103}, AddressingCode::FleetBaseIdent},
        {{units, 2, 0, 10, 9}, AddressingCode::UnitFleetSize},
        {{groups, 2, 0, 10, INT_MIN}, AddressingCode::GroupFleetSize},
        {{groups, 2, 0, 8098, 8101}, AddressingCode::FleetEndsTooHigh},
        {{groups, 4, 0, 8000, 8009}, AddressingCode::FleetDigitsRange},
    };
    for (const auto& [row, code] : rows) {
        const auto error = CheckFleetRow(row);
        ASSERT_EQ(error.has_value(), code.has_value()) << row.baseIdent << ".." << row.maxIdent;
        if (error) {
            EXPECT_EQ(error->Code(), *code) << error->what();
        }
    }
}

} // namespace
