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
    m_workspace->Users().Item("Olga")->Groups().Append(adminsGroup);
    for (const Case& c : cases) {
        // What a server's queries are only its owner changes.
        if (!c.permitted && !(OnServer() && QLatin1String(c.name) == QLatin1String("query rewritten"))) {
            EXPECT_EQ(KindOf([&] { c.act(*m_olga); }), std::nullopt) << c.name;
        }
    }
}
