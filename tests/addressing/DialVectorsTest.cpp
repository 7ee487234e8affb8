#include "addressing/TestPlans.h"

#include <map>

namespace {

// The built-in catalogue, read without the program's own reader, which needs Qt.
std::map<int, std::string> ReadCatalogue()
{
    std::ifstream file(TEST_DATA_DIR "/../../src/resources/catalogue/CKYN.CResourceStrs");
    std::map<int, std::string> texts;
    for (std::string line; std::getline(file, line);) {
        const auto open = line.find('"');
        if (line[0] >= '0' && line[0] <= '9' && open != std::string::npos)
            texts[std::stoi(line)] = line.substr(open + 1, line.rfind('"') - open - 1);
    }
    return texts;
}

std::string Sentence(const AddressingError& error)
{
    static const std::map<int, std::string> texts = ReadCatalogue();
    const auto found = texts.find(CatalogueIdOf(error.Code()));
    if (found == texts.end())
        return std::string("not in the catalogue: ") + error.what();
    std::string text = found->second;
    for (std::size_t i = 0; i < error.Values().size(); ++i) {
        const std::string placeholder = "#0" + std::to_string(i + 1);
        const auto pos = text.find(placeholder);
        if (pos == std::string::npos)
            return text + " lacks " + placeholder;
        text.replace(pos, 3, error.Values()[i]);
    }
    return text;
}

TableRow Convert(const MptAddressing& addressing, const std::string& plan, const std::string& dial)
{
    try {
        const RadioAddress address = addressing.DialToAddress(dial);
        return {plan,
                dial,
                std::to_string(address.prefix),
                std::to_string(address.ident),
                std::to_string(static_cast<int>(address.kind)),
                address.digits,
                addressing.AddressToDial(address),
                addressing.ShortDial(address),
                ""};
    } catch (const AddressingError& error) {
        return {plan, dial, "", "", "", "", "", "", Sentence(error)};
    }
}

TEST(DialVectors, BothNumberings)
{
    std::map<std::string, std::unique_ptr<MptAddressing>> addressings;
    for (const auto& [file, count] : {std::pair{"mpt1343.tsv", 108u}, std::pair{"actionet.tsv", 84u}}) {
        for (const TableRow& vector : ReadDialVectors(file, count)) {
            const std::string& plan = vector.at(PlanField);
            auto& addressing = addressings[plan];
            if (!addressing)
                addressing = MakeAddressing(PlanNamed(plan));
            EXPECT_EQ(Convert(*addressing, plan, vector.at(DialField)), vector);
        }
    }
}

TEST(DialVectors, OddTexts)
{
    const auto addressing = MakeAddressing(PlanNamed("P1"));
    for (const TableRow& row : ReadTable("addressing/odd.tsv", "Odd texts", 24)) {
        try {
            addressing->DialToAddress(row.at(0));
            ADD_FAILURE() << row.at(0) << " was accepted";
        } catch (const AddressingError& error) {
            EXPECT_EQ(Sentence(error), row.at(1)) << row.at(0);
        }
    }
    EXPECT_EQ(addressing->DialToAddress("\t201-2510 32 #"), (RadioAddress{1, 1032}));
    EXPECT_EQ(addressing->DialToAddress("/000 8102 * 123#"),
              (RadioAddress{0, 8102, AddressKind::Gateway, "123"}));
    EXPECT_EQ(addressing->DialToAddress("/0008102"), (RadioAddress{0, 8102})) << "the gateway itself";
}

TEST(DialVectors, InvalidAddressesHaveNoNumber)
{
    const auto addressing = MakeAddressing(PlanNamed("P1"));
    const std::pair<RadioAddress, AddressingCode> refused[] = {
        {{128, 1}, AddressingCode::PrefixRange},
        {{-1, 1}, AddressingCode::PrefixRange},
        {{0, 8192}, AddressingCode::IdentRange},
        {{0, -1}, AddressingCode::IdentRange},
        {{0, 3, AddressKind::Radio, "5"}, AddressingCode::AddressKind},
        {{0, 3, static_cast<AddressKind>(2), ""}, AddressingCode::AddressKind},
        {{0, 3, AddressKind::Gateway, "5"}, AddressingCode::GatewayIdentNeeded},
        {{0, 8101, AddressKind::Gateway, ""}, AddressingCode::TelephoneMissing},
        {{0, 8101, AddressKind::Gateway, "1+1"}, AddressingCode::InvalidCharacter},
        {{0, 8102, AddressKind::Gateway, std::string(32, '4')}, AddressingCode::TelephoneTooLong},
    };
    for (const auto& [address, code] : refused) {
        for (const bool shortForm : {false, true}) {
            try {
                const std::string dial =
                    shortForm ? addressing->ShortDial(address) : addressing->AddressToDial(address);
                ADD_FAILURE() << "written as " << dial;
            } catch (const AddressingError& error) {
                EXPECT_EQ(error.Code(), code) << error.what();
            }
        }
    }
}

} // namespace
