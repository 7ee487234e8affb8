#include "addressing/ActionetLayout.h"
#include "addressing/FleetPlanChecks.h"
#include "addressing/TestPlans.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

namespace {

std::optional<RadioAddress> TryDial(const MptAddressing& addressing, const std::string& dial)
{
    try {
        return addressing.DialToAddress(dial);
    } catch (const AddressingError&) {
        return std::nullopt;
    }
}

bool IsAllDigits(const std::string& text)
{
    return text.find_first_not_of("0123456789") == std::string::npos;
}

// Both forms of an address lead back to it; so no two addresses share a text.
bool RoundTrips(const MptAddressing& addressing, const RadioAddress& address)
{
    const std::string full = addressing.AddressToDial(address);
    const std::string brief = addressing.ShortDial(address);
    return TryDial(addressing, full) == address && (brief == full || TryDial(addressing, brief) == address);
}

TEST(RoundTrip, EveryAddress)
{
    for (const char* name : {"P1", "ANN-A", "ANN-B", "ANN-C", "ANN-D"}) {
        SCOPED_TRACE(name);
        const auto addressing = MakeAddressing(PlanNamed(name));
        for (int prefix = 0; prefix <= HighestPrefix; ++prefix) {
            for (int ident = 0; ident <= HighestIdent; ++ident) {
                if (!RoundTrips(*addressing, {prefix, ident}))
                    FAIL() << prefix << '-' << ident;
            }
        }
    }
}

TEST(RoundTrip, EveryActionetModelAndParameters)
{
    for (int model = 0; model <= 3; ++model) {
        for (int fpp = 0; fpp <= 10; ++fpp) {
            for (int mep = 0; mep <= 10 - fpp; ++mep) {
                SCOPED_TRACE(testing::Message() << model << ", FPP " << fpp << ", MEP " << mep);
                const ActionetConfig config{fpp, mep, model};
                // The own radio in a different fleet and under a different prefix each time.
                const int ident = 1 + (fpp * 1511 + mep * 811) % MaxSubscriberIdent;
                const RadioNumbering own{.prefix = fpp, .ident = ident};
                const auto addressing = MakeAddressing({{}, own, config});
                std::set<int> fleets;
                std::map<ActionetFleetKind, int> kinds;
                int numbers = 0;
                for (int other = 1; other <= MaxSubscriberIdent; ++other) {
                    if (!RoundTrips(*addressing, {own.prefix, other}))
                        FAIL() << other;
                    const ActionetFleet fleet = ActionetFleetOf(config, other);
                    numbers += fleet.NumberOf(other).has_value();
                    if (fleets.insert(fleet.FirstIdent()).second)
                        ++kinds[fleet.shape->kind];
                }
                EXPECT_EQ(kinds[ActionetFleetKind::Large], fpp);
                EXPECT_EQ(kinds[ActionetFleetKind::Small], (10 - fpp - mep) * 10);
                EXPECT_EQ(kinds[ActionetFleetKind::Mini], mep * 30);
                EXPECT_EQ(numbers, fpp * 800 + (10 - fpp - mep) * 800 + mep * 30 * 26);
            }
        }
    }
}

TEST(RoundTrip, EveryFleetNumberAndSize)
{
    const std::pair<FleetType, std::vector<int>> sizes[] = {{FleetType::Units, {2, 69, 70, 71, 699, 700}},
                                                            {FleetType::Groups, {2, 9, 10, 11, 99, 100}}};
    int accepted = 0;
    int refused = 0;
    for (const auto& [type, typeSizes] : sizes) {
        for (const int size : typeSizes) {
            for (int fleetNumber = 2001; fleetNumber <= 6050; ++fleetNumber) {
                const PlannedFleet fleet{type, 327, fleetNumber, size};
                const int base = (fleetNumber - 2000) * 2;
                if (const auto error = CheckFleet(fleet)) {
                    EXPECT_EQ(error->Code(), AddressingCode::FleetEndsTooHigh);
                    EXPECT_GT(base + size - 1, 8100);
                    ++refused;
                    continue;
                }
                ++accepted;
                const int digits = size > (type == FleetType::Units ? 70 : 10) ? 3 : 2;
                const auto addressing = MakeAddressing({{ToFleetConfig(fleet, digits)}, std::nullopt});
                for (const int ident : {base, base + size / 2, base + size - 1}) {
                    const std::string text = addressing->AddressToDial({127, ident});
                    ASSERT_TRUE(IsAllDigits(text)) << text;
                    ASSERT_EQ(text.size(), 7u + static_cast<std::size_t>(digits)) << text;
                    ASSERT_EQ(addressing->DialToAddress(text), (RadioAddress{127, ident})) << text;
                }
            }
        }
    }
    EXPECT_EQ(accepted + refused, 12 * 4050);
    EXPECT_GT(refused, 0);
}

TEST(RoundTrip, AcceptedDigitsReachAFixedPoint)
{
    std::mt19937 random(1343);
    for (const char* name : {"P1", "P2", "P3", "P4", "ANN-A", "ANN-B", "ANN-C", "ANN-D"}) {
        const auto addressing = MakeAddressing(PlanNamed(name));
        int accepted = 0;
        for (int i = 0; i < 20000; ++i) {
            std::string dial(1 + random() % 12, '0');
            for (char& c : dial)
                c = static_cast<char>('0' + random() % 10);
            if (i % 2 == 0) // numbers that begin like those of a fleet
                dial.replace(0, 1, i % 4 == 0 ? "200" : "2");
            const auto address = TryDial(*addressing, dial);
            if (!address)
                continue;
            ++accepted;
            const std::string canonical = addressing->AddressToDial(*address);
            ASSERT_EQ(TryDial(*addressing, canonical), address) << dial << " became " << canonical;
            ASSERT_EQ(TryDial(*addressing, addressing->ShortDial(*address)), address) << dial;
        }
        EXPECT_GT(accepted, 400) << name;
    }
}

TEST(RoundTrip, TelephoneNumbers)
{
    std::mt19937 random(8101);
    for (const char* name : {"P1", "P4", "ANN-A", "ANN-C"}) {
        const auto addressing = MakeAddressing(PlanNamed(name));
        for (int i = 0; i < 20000; ++i) {
            RadioAddress address{static_cast<int>(random() % (i % 2 ? 128 : 1)), i % 3 ? 8101 : 8102,
                                 AddressKind::Gateway, std::string(1 + random() % 31, '0')};
            for (char& c : address.digits)
                c = static_cast<char>('0' + random() % 10);
            const std::string dial = addressing->AddressToDial(address);
            ASSERT_EQ(TryDial(*addressing, dial), address) << dial;
            ASSERT_EQ(addressing->ShortDial(address), dial);
        }
    }
}

TEST(RoundTrip, OneWrongDigitNeverReachesTheSameRadio)
{
    std::vector<std::pair<std::string, RadioAddress>> cases;
    for (const FleetConfig& fleet : PlanNamed("P1").fleets) {
        cases.push_back({"P1", {fleet.prefix, fleet.baseIdent}});
        cases.push_back({"P1", {fleet.prefix, fleet.maxIdent}});
    }
    for (const int ident : {1, 800, 2431, 2510, 6481, 8099}) {
        for (const char* name : {"ANN-A", "ANN-B", "ANN-D"})
            cases.push_back({name, {9, ident}});
    }
    for (const auto& [name, address] : cases) {
        const auto addressing = MakeAddressing(PlanNamed(name));
        const std::string text = addressing->AddressToDial(address);
        for (std::size_t pos = 0; pos < text.size(); ++pos) {
            for (char digit = '0'; digit <= '9'; ++digit) {
                std::string wrong = text;
                wrong[pos] = digit;
                EXPECT_EQ(TryDial(*addressing, wrong) == address, wrong == text) << wrong;
            }
        }
    }
}

} // namespace
