#include "DaoFixture.h"

using namespace dao;

// What an operator who is no administrator may store, whatever window offers it.
class RightsTest : public DaoTest {
protected:
    RightsTest()
    {
        AddOperator("Olga");
        AddAddress("Unit20", "200200120");
        Add("address", {"callsign", "IDENT", "Type", "default_pos"}, {{"Group1", "900", 2, 1}});
        Add("status", {"status_code", "in_desc"}, {{1, "before"}});
        Add("fleet", {"fleet_name", "fleet_type", "digits", "prefix", "base_ident", "max_ident"},
            {{"units", 1, 2, 0, 2, 71}});
        Add("kyn_registry", {"Key", "Value"}, {{"on_off_duty", "0"}});
        m_olga = Open("olga", "pw");
    }

    static void AddTo(Workspace& workspace, const QString& table, const QVariantMap& fields)
    {
        const auto records = workspace.Database().OpenTable(table);
        records->AddNew();
        for (auto field = fields.begin(); field != fields.end(); ++field)
            records->SetField(field.key(), field.value());
        records->Update();
    }

    static void Change(Workspace& workspace, const QString& table, const QVariant& key, const QString& field,
                       const QVariant& value)
    {
        const auto records = workspace.Database().OpenTable(table);
        records->SeekKey({key});
        records->Edit();
        records->SetField(field, value);
        records->Update();
    }

    static void Run(Workspace& workspace, const QString& query, const QVariantMap& parameters)
    {
        const auto definition = workspace.Database().QueryDef(query);
        for (auto parameter = parameters.begin(); parameter != parameters.end(); ++parameter)
            definition->SetParameter(parameter.key(), parameter.value());
        definition->Execute();
    }

    std::unique_ptr<Workspace> m_olga;
};

TEST_F(RightsTest, OperatorsStoreTheirOwnWorkOnly)
{
    const qlonglong unit = IdOf("Unit20");
    const qlonglong group = IdOf("Group1");
    struct Case {
        const char* name;
        bool permitted;
        std::function<void(Workspace&)> act;
    };
    const QVariantMap entry{{"callsign", "X"}, {"IDENT", "7"}, {"Type", 1}};
    Run(*m_workspace, "change_user_profile", {{"id", 2}, {"cs", ""}, {"dr", true}});
    const Case cases[] = {
        {"entry added", false, [&](Workspace& w) { AddTo(w, "address", entry); }},
        {"entry changed", false, [&](Workspace& w) { Change(w, "address", unit, "note", "x"); }},
        {"entry deleted", false,
         [&](Workspace& w) {
             Run(w, "drop_address", {{"id", unit}});
         }},
        {"status added", false,
         [](Workspace& w) {
             AddTo(w, "status", {{"status_code", 2}});
         }},
        {"status changed", false, [](Workspace& w) { Change(w, "status", 1, "in_desc", "after"); }},
        {"status deleted", false,
         [](Workspace& w) {
             const auto records = w.Database().OpenTable("status");
             records->Seek(1);
             records->Delete();
         }},
        {"plan changed", false, [](Workspace& w) { Change(w, "fleet", "units", "digits", 3); }},
        {"duty codes changed", false,
         [](Workspace& w) { Change(w, "kyn_registry", "on_off_duty", "Value", "1"); }},
        {"numbering chosen", false,
         [](Workspace& w) {
             AddTo(w, "kyn_registry", {{"Key", "subscriber_numbering"}, {"Value", "x"}});
         }},
        {"query rewritten", false,
         [](Workspace& w) {
             const auto records = w.Database().OpenDynaset("stored_query");
             records->FindFirst("name='ungroup'");
             records->Edit();
             records->SetField("table_name", "address");
             records->Update();
         }},
        {"profile added", false,
         [](Workspace& w) {
             AddTo(w, "user_profile", {{"UserName", "X"}});
         }},
        {"own right raised", false,
         [](Workspace& w) {
             Run(w, "change_user_profile", {{"id", 2}, {"cs", "x"}, {"dr", true}});
         }},
        {"profile deleted", false,
         [](Workspace& w) {
             Run(w, "drop_user_profile", {{"id", 1}});
         }},
        {"another one unlogged", false,
         [](Workspace& w) {
             Run(w, "unlog_user", {{"id", 1}});
         }},
        {"own flag set", true, [](Workspace& w) { Change(w, "user_profile", 2, "logged_on", true); }},
        {"duty state", true,
         [](Workspace& w) {
             Run(w, "update_duty_status", {{"cs", "unit20"}, {"ds", true}});
         }},
        {"regrouped", true,
         [&](Workspace& w) {
             AddTo(w, "dynamic_regroup", {{"group_id", group}, {"member_id", unit}, {"pos", 1}});
         }},
        {"ungrouped", true,
         [&](Workspace& w) {
             Run(w, "ind_ungroup", {{"mi", unit}, {"p", 1}});
         }},
        {"message logged", true,
         [this](Workspace& w) {
             AddTo(w, "event", {{"time_stamp", m_now}, {"event_type", 1}});
         }},
        {"own password", true, [](Workspace& w) { w.Users().Item("Olga")->NewPassword("pw", "new"); }},
    };
    for (const Case& c : cases) {
        const auto kind = KindOf([&] { c.act(*m_olga); });
        EXPECT_EQ(kind, c.permitted ? std::nullopt : std::optional(Kind::NotPermitted)) << c.name;
    }
    // Without the right to regroup that is forbidden, too.
    AddOperator("Ivan");
    const auto ivan = Open("Ivan", "pw");
    EXPECT_EQ(KindOf([&] {
                  AddTo(*ivan, "dynamic_regroup", {{"group_id", group}, {"member_id", unit}, {"pos", 2}});
              }),
              Kind::NotPermitted);
    m_workspace->Users().Delete("Ivan");
    Run(*m_workspace, "drop_user_profile", {{"id", 3}});
    EXPECT_EQ(Sql("select * from status order by status_code", "status_code in_desc"),
              QStringList({"1|before"}));
    EXPECT_EQ(Rows("find_users_ob_user", {{"lookfor", ""}}, "UserName logged_on allow_dr"),
              QStringList({"Boss|0|1", "Olga|1|1"}));

    // An administrator may do all of it; rights follow the groups at once, in a session that is open.
    m_workspace->Users().Item("Olga")->Groups().Append(AdminsGroupName);
    for (const Case& c : cases) {
        // What a server's queries are only its owner changes.
        if (!c.permitted && !(OnServer() && QLatin1String(c.name) == QLatin1String("query rewritten"))) {
            EXPECT_EQ(KindOf([&] { c.act(*m_olga); }), std::nullopt) << c.name;
        }
    }
}

// A regroup command is written with the right to, and its owner may store what it asked for, and nothing
// else, when right and account are gone before the radio confirms.
TEST_F(RightsTest, WhatWasRequestedWithTheRightIsStoredWithoutIt)
{
    const qlonglong unit = IdOf("Unit20");
    const qlonglong group = IdOf("Group1");
    AddAddress("Unit21", "200200121");
    const qlonglong other = IdOf("Unit21");
    const auto request = [&](int number, qlonglong gi, qlonglong mi, int pos) {
        Run(*m_olga, "add_regroup_request",
            {{"id", QStringLiteral("00000000-0000-0000-0000-00000000000%1").arg(number)},
             {"gi", gi},
             {"mi", mi},
             {"p", pos}});
    };
    const auto end = [&](Workspace& w, int number) {
        Run(w, "drop_regroup_request",
            {{"id", QStringLiteral("00000000-0000-0000-0000-00000000000%1").arg(number)}});
    };
    const auto store = [&](qlonglong gi, qlonglong mi, int pos) {
        return KindOf([&] {
            AddTo(*m_olga, "dynamic_regroup", {{"group_id", gi}, {"member_id", mi}, {"pos", pos}});
        });
    };
    const auto change = [&](const char* query, const char* who, qlonglong id, int pos) {
        return KindOf([&] { Run(*m_olga, query, {{who, id}, {"p", pos}}); });
    };
    const auto rows = [&] {
        return Sql("select * from dynamic_regroup order by member_id, pos", "member_id pos");
    };
    EXPECT_EQ(KindOf([&] { request(1, group, unit, 1); }), Kind::NotPermitted);

    Run(*m_workspace, "change_user_profile", {{"id", 2}, {"cs", ""}, {"dr", true}});
    request(1, group, unit, 1);
    request(2, 0, unit, 2);
    request(3, group, 0, 3);
    Add("dynamic_regroup", {"group_id", "member_id", "pos"},
        {{group, unit, 2}, {group, other, 2}, {group, unit, 3}, {group, other, 4}});
    AddOperator("Ivan");
    const auto ivan = Open("Ivan", "pw");
    EXPECT_EQ(KindOf([&] { end(*ivan, 1); }), Kind::NotPermitted); // another one's
    m_workspace->BeginTrans();
    Run(*m_workspace, "drop_user_profile", {{"id", 2}});
    m_workspace->Users().Delete("Olga");
    m_workspace->CommitTrans();
    EXPECT_EQ(KindOf([&] { Open("Olga", "pw"); }), Kind::WrongPassword);

    EXPECT_EQ(store(group, other, 1), Kind::NotPermitted);
    EXPECT_EQ(store(group, unit, 5), Kind::NotPermitted);
    EXPECT_EQ(change("ind_ungroup", "mi", other, 2), Kind::NotPermitted);
    EXPECT_EQ(change("ungroup", "gi", group, 4), Kind::NotPermitted);
    EXPECT_EQ(KindOf([&] { // another one's membership made into what was requested
                  const auto records = m_olga->Database().OpenTable("dynamic_regroup");
                  records->SeekKey({group, other, 2});
                  records->Edit();
                  records->SetField("member_id", unit);
                  records->SetField("pos", 1);
                  records->Update();
              }),
              Kind::NotPermitted);
    EXPECT_EQ(store(group, unit, 1), std::nullopt);
    EXPECT_EQ(change("ind_ungroup", "mi", unit, 2), std::nullopt);
    EXPECT_EQ(change("ungroup", "gi", group, 3), std::nullopt);
    const QString first = QString::number(unit) + "|1";
    const QString second = QString::number(other);
    EXPECT_EQ(rows(), QStringList({first, second + "|2", second + "|4"}));

    if (!OnServer()) { // whose clock goes on by itself
        Add("dynamic_regroup", {"group_id", "member_id", "pos"}, {{group, unit, 3}});
        m_now = m_now.addSecs(3601);
        EXPECT_EQ(change("ungroup", "gi", group, 3), Kind::NotPermitted);
        m_now = m_now.addSecs(-3601);
        EXPECT_EQ(change("ungroup", "gi", group, 3), std::nullopt);
    }
    // It ends with the command, and with it the last that the account may do.
    EXPECT_EQ(KindOf([&] { request(4, group, unit, 6); }), Kind::NotPermitted);
    for (int number : {1, 2, 3})
        EXPECT_EQ(KindOf([&] { end(*m_olga, number); }), std::nullopt);
    EXPECT_EQ(change("ungroup", "gi", group, 1), Kind::NotPermitted);
    EXPECT_EQ(rows().size(), 3);
    // Whoever gets the name later inherits nothing.
    EXPECT_EQ(KindOf([&] { AddOperator("Olga"); }), std::nullopt);
    EXPECT_EQ(KindOf([&] {
                  AddTo(*Open("Olga", "pw"), "dynamic_regroup",
                        {{"group_id", group}, {"member_id", unit}, {"pos", 3}});
              }),
              Kind::NotPermitted);
}
