#include "RadioStack.h"
#include "core/session/Registry.h"

namespace {

TEST(ParseAddressLine, Pieces)
{
    const std::pair<const char*, QStringList> cases[] = {
        {"", {}},
        {" ; ;; ", {}},
        {"Unit20", {QStringLiteral("Unit20")}},
        {" A ;; B 1;", {QStringLiteral("A"), QStringLiteral("B 1")}},
    };
    for (const auto& [line, pieces] : cases)
        EXPECT_EQ(Map27Executive::ParseAddressLine(QString::fromLatin1(line)), pieces) << line;
}

TEST(Lookup, CallsignsAndDialTexts)
{
    RadioStack stack;
    EXPECT_EQ(stack.executive.LookupIdent(QStringLiteral(" unit20 ")), QStringLiteral("200200120"));
    EXPECT_EQ(stack.executive.LookupIdent(QStringLiteral(" 200200120 ")), QStringLiteral("200200120"));
    EXPECT_EQ(stack.executive.LookupIdent(QStringLiteral("Nobody")), QStringLiteral("Nobody"));
    EXPECT_EQ(stack.executive.LookupCallsign(QStringLiteral("200200120")), QStringLiteral("Unit20"));
    EXPECT_EQ(stack.executive.LookupCallsign(QStringLiteral("200200199")), QStringLiteral("200200199"));
    stack.session.Logoff();
    EXPECT_EQ(stack.executive.LookupIdent(QStringLiteral("Unit20")), QStringLiteral("Unit20"));
    EXPECT_EQ(stack.executive.LookupCallsign(QStringLiteral("200200120")), QStringLiteral("200200120"));
}

TEST(Duty, OnlyWhenInUseAndOnlyForKnownCallsigns)
{
    RadioStack stack;
    stack.executive.UpdateDutyStatus(QStringLiteral("Nobody"), true);
    EXPECT_EQ(stack.views.reloads, 0);
    stack.executive.UpdateDutyStatus(QStringLiteral("Unit20"), true);
    EXPECT_EQ(stack.views.reloads, 1);
    RegistrySet(stack.session, QStringLiteral("on_off_duty"), QStringLiteral("0"));
    stack.executive.UpdateDutyStatus(QStringLiteral("Unit20"), true);
    EXPECT_EQ(stack.views.reloads, 1);
}

TEST(Connect, NumberingNotConfiguredKeepsTheLinkAndOtherFailuresCloseIt)
{
    RadioStack stack;
    const auto fleets = stack.session.Database().OpenTable(QStringLiteral("fleet"));
    fleets->MoveFirst();
    fleets->Delete();
    try {
        stack.executive.Connect();
        FAIL();
    } catch (const Error& failure) {
        EXPECT_EQ(failure.Code(), 0x800400CCu);
        EXPECT_EQ(failure.Description(), stack.Text(204));
    }
    EXPECT_NE(stack.executive.Link().state, LinkStatus::State::Closed);
    EXPECT_EQ(stack.executive.CurrentNumbering(), QStringLiteral("MPT1343"));

    stack.radio.plugged = false;
    EXPECT_THROW(stack.executive.Connect(), Error);
    EXPECT_EQ(stack.executive.Link().state, LinkStatus::State::Closed);

    RegistrySet(stack.session, QStringLiteral("subscriber_numbering"), QStringLiteral("OTHER"));
    try {
        stack.executive.Connect();
        FAIL();
    } catch (const Error& failure) {
        EXPECT_EQ(failure.Description(), stack.Text(205));
    }
}

TEST(FleetData, RowsAsTheNumberingTakesThem)
{
    RadioStack stack;
    const auto fleets = stack.session.Database().OpenTable(QStringLiteral("fleet"));
    fleets->AddNew();
    for (const auto& [name, value] :
         {std::pair("fleet_type", 0), std::pair("digits", 3), std::pair("prefix", 0),
          std::pair("base_ident", 7000), std::pair("max_ident", 7009)})
        fleets->SetField(QString::fromLatin1(name), value);
    fleets->SetField(QStringLiteral("fleet_name"), QStringLiteral("groups"));
    fleets->Update();
    std::vector<FleetConfig> rows(static_cast<std::size_t>(stack.fleetData.NumberOfFleets()));
    stack.fleetData.RetreiveFleetConfig(rows);
    EXPECT_EQ(rows, (std::vector<FleetConfig>{{FleetType::Units, 2, 0, 2, 71},
                                              {FleetType::Groups, 3, 0, 7000, 7009}}));
    std::vector<FleetConfig> tooFew(1);
    EXPECT_THROW(stack.fleetData.RetreiveFleetConfig(tooFew), Error);
    ActionetConfig parameters;
    EXPECT_THROW(stack.fleetData.RetreiveActionetConfig(parameters), Error);
    RegistrySet(stack.session, QStringLiteral("ANN_MODEL"), QStringLiteral("2"));
    stack.fleetData.RetreiveActionetConfig(parameters);
    EXPECT_EQ(parameters, (ActionetConfig{.FPP = 10, .MEP = 0, .model = 2}));
}

} // namespace
