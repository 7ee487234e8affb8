#include "addressing/TestPlans.h"

#include <gtest/gtest.h>

namespace {

using Warning = std::pair<AddressingCode, std::vector<std::string>>;

std::vector<Warning> WarningsOf(const MptAddressing& addressing)
{
    std::vector<Warning> warnings;
    for (const AddressingError& warning : addressing.Warnings())
        warnings.emplace_back(warning.Code(), warning.Values());
    return warnings;
}

class FailingSource : public ListSource {
public:
    explicit FailingSource(bool failsWhileReading)
        : ListSource({{FleetType::Units, 3, 0, 200, 899}}),
          m_failsWhileReading(failsWhileReading)
    {
    }
    int NumberOfFleets() override
    {
        if (!m_failsWhileReading)
            throw std::out_of_range("no fleets");
        return ListSource::NumberOfFleets();
    }
    void RetreiveFleetConfig(std::span<FleetConfig> fleets) override
    {
        ListSource::RetreiveFleetConfig(fleets);
        throw std::out_of_range("fewer fleets");
    }

private:
    bool m_failsWhileReading;
};

TEST(Configuration, KnowsItsNumberings)
{
    EXPECT_EQ(CreateAddressing("MPT1343")->NumberingCode(), "MPT1343");
    EXPECT_EQ(CreateAddressing("ACTIONET")->NumberingCode(), "ACTIONET");
    EXPECT_EQ(CreateAddressing("mpt1343"), nullptr);
    EXPECT_EQ(CreateAddressing(""), nullptr);
}

TEST(Configuration, FailedReadDropsThePlan)
{
    for (const bool failsWhileReading : {false, true}) {
        const auto addressing = MakeAddressing(PlanNamed("P1"));
        ASSERT_EQ(addressing->AddressToDial({1, 1032}), "201251032");
        FailingSource source(failsWhileReading);
        EXPECT_THROW(addressing->SetConfigSource(source, source), std::out_of_range);
        EXPECT_EQ(addressing->AddressToDial({1, 1032}), "/0011032");
        EXPECT_EQ(addressing->AddressToDial({0, 200}), "/0000200");
        EXPECT_EQ(addressing->DialToAddress("201251032"), (RadioAddress{1, 1032})) << "still by arithmetic";
        EXPECT_EQ(addressing->DialToAddress("21"), (RadioAddress{0, 3}))
            << "the own fleet is not configuration";
    }
}

TEST(Configuration, LaterPlanAndOwnNumberReplaceEarlierOnes)
{
    const auto addressing = MakeAddressing(PlanNamed("P1"));
    ListSource other({{FleetType::Units, 3, 1, 1020, 1719}});
    addressing->SetConfigSource(other, other);
    EXPECT_EQ(addressing->AddressToDial({1, 1032}), "2012510212");
    addressing->SetRadioNumbering(*PlanNamed("P3").own);
    EXPECT_EQ(addressing->DialToAddress("300"), (RadioAddress{10, 5000}));
    EXPECT_EQ(addressing->AddressToDial({0, 3}), "/0000003");
}

TEST(Configuration, OwnFleetWinsOverThePlan)
{
    // The plan says that fleet 200/2001 has 70 units, the radio reports ten.
    const auto addressing =
        MakeAddressing({{{FleetType::Units, 2, 0, 2, 71}, {FleetType::Groups, 2, 0, 7000, 7009}},
                        RadioNumbering{.prefix = 0,
                                       .ident = 3,
                                       .unitBaseIdent = 2,
                                       .unitMaxIdent = 11,
                                       .groupBaseIdent = 7000,
                                       .groupMaxIdent = 7009}});
    EXPECT_EQ(WarningsOf(*addressing), (std::vector<Warning>{{AddressingCode::OwnFleetDiffers,
                                                              {"2", "11", "200", "2001", "2", "71"}}}));
    EXPECT_EQ(addressing->AddressToDial({0, 11}), "200200129");
    EXPECT_EQ(addressing->AddressToDial({0, 12}), "/0000012") << "its number would not be found again";
    EXPECT_EQ(addressing->ShortDial({0, 12}), "/0000012");
    EXPECT_THROW(addressing->DialToAddress("200200130"), AddressingError);
}

TEST(Configuration, ImpossibleRowsAreLeftOutWithAWarning)
{
    const auto addressing = MakeAddressing({{{FleetType::Units, 2, 128, 2, 71},
                                             {FleetType::Units, 4, 0, 2, 71},
                                             {FleetType::Units, 2, 0, 71, 2},
                                             {FleetType::Groups, 2, 0, 8098, 8101},
                                             {FleetType::Units, 2, 0, 2, 71},
                                             {FleetType::Units, 2, 0, 70, 79}},
                                            std::nullopt});
    EXPECT_EQ(WarningsOf(*addressing),
              (std::vector<Warning>{{AddressingCode::PlanRowIgnored, {"128", "2", "71", "2"}},
                                    {AddressingCode::PlanRowIgnored, {"0", "2", "71", "4"}},
                                    {AddressingCode::PlanRowIgnored, {"0", "71", "2", "2"}},
                                    {AddressingCode::PlanRowIgnored, {"0", "8098", "8101", "2"}},
                                    {AddressingCode::FleetsOverlap, {"200", "2035", "200", "2001"}}}));
    EXPECT_EQ(addressing->AddressToDial({0, 3}), "200200121");
}

TEST(Configuration, ImpossibleReportsOfTheRadio)
{
    struct Report {
        RadioNumbering numbering;
        std::vector<Warning> warnings;
        std::optional<RadioAddress> dialled21;
    };
    const RadioAddress second{0, 3};
    const Report reports[] = {
        {{128, 3, 2, 71, 7000, 7009, 2, 2}, {{AddressingCode::OwnNumberIgnored, {"128", "3"}}}, {}},
        {{0, 8192, 2, 71, 7000, 7009, 2, 2}, {{AddressingCode::OwnNumberIgnored, {"0", "8192"}}}, {}},
        {{0, 3, 2, 71, 7000, 7009, 4, 2}, {{AddressingCode::OwnFleetIgnored, {"2", "71", "4"}}}, {}},
        {{0, 3, 2, 71, 8101, 8110, 2, 2}, {{AddressingCode::OwnFleetIgnored, {"8101", "8110", "2"}}}, second},
        {{0, 3, 2, 71, 7000, 65535, 2, 2}, {{AddressingCode::OwnFleetCut, {"7000", "65535"}}}, second},
        {{0, 3, 0, 71, 7000, 6999, 2, 2}, {{AddressingCode::OwnFleetIgnored, {"7000", "6999", "2"}}}, {}},
        {{0, 3, 2, 71, 0, 0, 2, 2}, {}, second}, // has no groups
        {{0, 3, 0, 0, 0, 0, 2, 2}, {{AddressingCode::OwnFleetIgnored, {"0", "0", "2"}}}, {}},
        {{0, 0, 0, 0, 0, 0, 2, 2}, {{AddressingCode::OwnNumberIgnored, {"0", "0"}}}, {}},
    };
    for (const Report& report : reports) {
        const auto addressing = MakeAddressing({{}, report.numbering});
        EXPECT_EQ(WarningsOf(*addressing), report.warnings);
        if (report.dialled21) {
            EXPECT_EQ(addressing->DialToAddress("21"), *report.dialled21);
        } else {
            EXPECT_THROW(addressing->DialToAddress("21"), AddressingError);
        }
    }
}

TEST(Configuration, TooFewDigitsForTheFleetLeaveTheRestRaw)
{
    const auto addressing = MakeAddressing({{{FleetType::Units, 2, 0, 2, 701}}, std::nullopt});
    EXPECT_EQ(addressing->AddressToDial({0, 71}), "200200189");
    EXPECT_EQ(addressing->AddressToDial({0, 72}), "/0000072");
}

TEST(Configuration, ActionetParameters)
{
    struct Case {
        ActionetConfig config;
        std::optional<AddressingCode> refused;
    };
    const Case cases[] = {
        {{10, 0, 0}, {}},
        {{0, 10, 3}, {}},
        {{5, 5, 1}, {}},
        {{0, 0, 2}, {}},
        {{11, 0, 0}, AddressingCode::ActionetRange},
        {{-1, 0, 0}, AddressingCode::ActionetRange},
        {{0, 11, 0}, AddressingCode::ActionetRange},
        {{0, -1, 0}, AddressingCode::ActionetRange},
        {{6, 5, 0}, AddressingCode::ActionetSum},
        {{5, 5, 4}, AddressingCode::ActionetModel},
        {{5, 5, -1}, AddressingCode::ActionetModel},
    };
    for (const Case& test : cases) {
        const auto addressing = MakeAddressing(PlanNamed("ANN-A"));
        ListSource source(test.config);
        if (!test.refused) {
            addressing->SetConfigSource(source, source);
            continue;
        }
        try {
            addressing->SetConfigSource(source, source);
            ADD_FAILURE() << test.config.FPP << ' ' << test.config.MEP << " was accepted";
        } catch (const AddressingError& error) {
            EXPECT_EQ(error.Code(), *test.refused);
        }
        EXPECT_EQ(addressing->AddressToDial({0, 1}), "/0000001") << "the old parameters are dropped";
        EXPECT_EQ(addressing->ShortDial({0, 8101, AddressKind::Gateway, "1234567"}), "/0008101*1234567");
        EXPECT_EQ(addressing->DialToAddress("/0000001"), (RadioAddress{0, 1}));
        for (const char* dial : {"200", "0000200", "*1981", "2a"}) {
            try {
                addressing->DialToAddress(dial);
                ADD_FAILURE() << dial << " was accepted";
            } catch (const AddressingError& error) {
                EXPECT_EQ(error.Code(), AddressingCode::NumberingNotConfigured) << dial;
            }
        }
    }
}

TEST(Configuration, RadioThatContradictsTheActionetParameters)
{
    struct Report {
        const char* plan;
        RadioNumbering numbering;
        std::vector<Warning> warnings;
    };
    const Report reports[] = {
        {"ANN-A", {0, 1, 1, 700, 701, 800, 3, 3}, {}},
        {"ANN-A", {5, 6482, 6481, 6503, 6504, 6506, 2, 2}, {}},
        {"ANN-B", {4, 8074, 8074, 8096, 8097, 8099, 2, 2}, {}},
        {"ANN-D", {12, 82, 82, 151, 0, 0, 2, 3}, {}}, // has no groups
        {"ANN-D",
         {12, 82, 1, 700, 152, 161, 3, 2},
         {{AddressingCode::OwnUnitsDiffer, {"1", "700", "3", "82", "151", "2"}}}},
        {"ANN-D",
         {12, 82, 82, 151, 152, 160, 2, 3},
         {{AddressingCode::OwnGroupsDiffer, {"152", "160", "3", "152", "161", "2"}}}},
        {"ANN-D",
         {12, 152, 0, 0, 0, 0, 2, 2},
         {{AddressingCode::OwnFleetIgnored, {"0", "0", "2"}}, {AddressingCode::OwnIdentNoUnit, {"152"}}}},
        {"ANN-D", {12, 82, 82, 81, 0, 0, 2, 2}, {{AddressingCode::OwnFleetIgnored, {"82", "81", "2"}}}},
        {"ANN-D", {128, 82, 82, 151, 0, 0, 2, 2}, {{AddressingCode::OwnNumberIgnored, {"128", "82"}}}},
    };
    for (const Report& report : reports) {
        TestPlan plan = PlanNamed(report.plan);
        plan.own = report.numbering;
        EXPECT_EQ(WarningsOf(*MakeAddressing(plan)), report.warnings)
            << report.plan << report.numbering.ident;
    }
}

} // namespace
