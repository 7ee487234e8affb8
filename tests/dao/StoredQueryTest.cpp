#include "DaoFixture.h"
#include "dao/base/TextMatch.h"
#include "dao/sqlite/Session.h"
#include "support/Table.h"
#include <sqlite3.h>

using namespace dao;

// Whether it matches, pattern, text.
TEST(LookForTest, MatchesAnywhereWithoutRegardToCase)
{
    for (const TableRow& row : ReadTable("dao.tsv", "Look for", 34))
        EXPECT_EQ(LookFor(QString::fromStdString(row.at(1))).Matches(QString::fromStdString(row.at(2))),
                  row.at(0) == "matches")
            << row.at(1) << " / " << row.at(2);
}

class StoredQueryTest : public DaoTest {
protected:
    // Individuals "alpha", "Über", "Bravo_9"; talkgroups "Ops" (dynamic) and "Zulu".
    void FillDirectory()
    {
        Add("address", {"callsign", "IDENT", "Type", "Name", "dynamic", "default_pos", "on_duty"},
            {{"alpha", "2003", 1, "Anna Berg", false, {}, true},
             {"Über", "2001", 1, "Uwe", true, {}, false},
             {"Bravo_9", "1999", 1, {}, false, {}, false},
             {"Ops", "3002", 2, {}, true, 4, false},
             {"Zulu", "3001", 2, {}, false, 1, false}});
    }
};

TEST_F(StoredQueryTest, ReadingQueriesReturnWhatMatchesInTheirOrder)
{
    FillDirectory();
    AddOperator();
    Execute("change_user_profile", {{"id", 2}, {"cs", "Desk"}, {"dr", true}});
    struct Case {
        const char* query;
        const char* lookfor;
        const char* fields;
        QStringList rows;
    };
    const Case cases[] = {
        {"find_address_ob_callsign",
         "",
         "callsign IDENT dynamic iconkey",
         {"alpha|2003|0|individual", "Bravo_9|1999|0|individual", "Ops|3002|1|talkgroup",
          "Zulu|3001|0|talkgroup", "Über|2001|1|individual"}},
        {"find_address_ob_callsign", "300", "address_id callsign", {"4|Ops", "5|Zulu"}},
        {"find_address_ob_ident", "", "IDENT", {"1999", "2001", "2003", "3001", "3002"}},
        {"find_address_ob_ident", "uwe", "IDENT", {}}, // names are searched in the list of individuals only
        {"find_address_ob_ident", "_", "callsign", {"Bravo_9"}},
        {"find_group_ob_callsign", "", "callsign IDENT dynamic", {"Ops|3002|1", "Zulu|3001|0"}},
        {"find_group_ob_ident",
         "",
         "callsign IDENT dynamic pos address_id",
         {"Zulu|3001|0|1|5", "Ops|3002|1|4|4"}},
        {"find_group_ob_ident", "alpha", "callsign", {}},
        {"find_individual_ob_callsign",
         "",
         "address_id callsign IDENT Name dynamic on_duty iconkey",
         {"1|alpha|2003|Anna Berg|0|1|individual", "3|Bravo_9|1999||0|0|individual",
          "2|Über|2001|Uwe|1|0|individual"}},
        {"find_individual_ob_callsign", "ÜB", "callsign", {"Über"}},
        {"find_individual_ob_callsign", "BERG", "callsign", {"alpha"}},
        {"find_individual_ob_callsign", "ops", "callsign", {}},
        {"find_users_ob_user",
         "",
         "profile_id UserName callsign logged_on allow_dr",
         {"1|Boss||0|1", "2|Olga|Desk|0|1"}},
        {"find_users_ob_callsign", "", "UserName", {"Boss", "Olga"}},
        {"find_users_ob_user", "DESK", "UserName", {"Olga"}},
        {"find_users_ob_callsign", "b?ss", "UserName", {"Boss"}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Rows(c.query, {{"LookFor", c.lookfor}}, c.fields), c.rows)
            << c.query << " '" << c.lookfor << "'";
    EXPECT_EQ(Sql("browse_individuals", "address_id Type"), QStringList({"1|1", "3|1", "2|1"}));
    EXPECT_EQ(Sql("browse_talkgroups", "callsign default_pos"), QStringList({"Ops|4", "Zulu|1"}));
    EXPECT_EQ(KindOf([&] { Db().QueryDef("find_users_ob_user")->OpenSnapshot(); }), Kind::MissingParameter);
    EXPECT_EQ(KindOf([&] { Db().QueryDef("browse_individuals")->SetParameter("x", 1); }),
              Kind::NoSuchParameter);
    EXPECT_EQ(KindOf([&] { Db().QueryDef("browse_individuals")->Execute(); }), Kind::WrongUse);
}

TEST_F(StoredQueryTest, RegroupingQueriesFollowTheTable)
{
    FillDirectory();
    Add("dynamic_regroup", {"group_id", "member_id", "pos"}, {{4, 2, 1}, {4, 1, 1}, {4, 1, 2}, {5, 2, 3}});
    EXPECT_EQ(Rows("dynamic_members", {}, "group_id pos callsign member_id"),
              QStringList({"4|1|alpha|1", "4|1|Über|2", "4|2|alpha|1", "5|3|Über|2"}));
    EXPECT_EQ(Sql("select * from dynamic_regroup where group_id=5 or member_id=5", "pos"),
              QStringList({"3"}));

    EXPECT_EQ(KindOf([&] { Execute("drop_address", {{"id", 1}}); }), Kind::InUse);
    EXPECT_EQ(KindOf([&] { Execute("drop_address", {{"id", 5}}); }), Kind::InUse);
    EXPECT_EQ(KindOf([&] {
                  Add("dynamic_regroup", {"group_id", "member_id", "pos"}, {{5, 1, 1}});
              }),
              Kind::DuplicateKey);
    EXPECT_EQ(Execute("ungroup", {{"gi", 4}, {"p", 1}}), 2);
    EXPECT_EQ(Execute("ungroup", {{"gi", 4}, {"p", 1}}), 0);
    EXPECT_EQ(Execute("ind_ungroup", {{"mi", 2}, {"p", 3}}), 1);
    EXPECT_EQ(Rows("dynamic_members", {}, "group_id pos callsign"), QStringList({"4|2|alpha"}));
    EXPECT_EQ(Execute("drop_address", {{"id", 5}}), 1);
    EXPECT_EQ(Execute("drop_address", {{"id", 5}}), 0);
    AddAddress("Next", "9");
    EXPECT_EQ(IdOf("Next"), 6); // the deleted entry's id is not used again
}

TEST_F(StoredQueryTest, ActionQueriesTellHowManyRecordsTheyChanged)
{
    FillDirectory();
    struct Case {
        const char* query;
        QVariantMap parameters;
        int changed;
    };
    const Case cases[] = {
        {"update_duty_status", {{"cs", "ÜBER"}, {"ds", true}}, 1},
        {"update_duty_status", {{"cs", "alpha"}, {"ds", false}}, 1},
        {"update_duty_status", {{"cs", "Zulu"}, {"ds", true}}, 0}, // a talkgroup
        {"update_duty_status", {{"cs", "nobody"}, {"ds", true}}, 0},
        {"change_user_profile", {{"id", 1}, {"cs", "Desk"}, {"dr", false}}, 1},
        {"change_user_profile", {{"id", 7}, {"cs", "Desk"}, {"dr", false}}, 0},
        {"unlog_user", {{"id", 7}}, 0},
        {"drop_user_profile", {{"id", 7}}, 0},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Execute(c.query, c.parameters), c.changed) << c.query;
    EXPECT_EQ(Sql("select callsign from address where on_duty", "callsign"), QStringList({"Über"}));
    EXPECT_EQ(Sql("user_profile", "callsign allow_dr"), QStringList({"Desk|0"}));

    const auto profile = Db().OpenTable("user_profile");
    profile->SetIndex("i_user");
    profile->Seek(m_workspace->UserName());
    profile->Edit();
    profile->SetField("logged_on", true);
    profile->Update();
    EXPECT_EQ(Execute("unlog_user", {{"id", 1}}), 1);
    EXPECT_EQ(Sql("user_profile", "logged_on"), QStringList({"0"}));
    EXPECT_EQ(Execute("drop_user_profile", {{"id", 1}}), 1);
    EXPECT_EQ(Sql("user_profile", "profile_id"), QStringList());
    EXPECT_EQ(Sql("select count(*) as c from fleet", "c"), QStringList({"0"}));
}

TEST_F(StoredQueryTest, EventsOfThePeriodThatConcernThisRadio)
{
    const auto event = [&](qint64 secondsAgo, int type, const char* from, const char* to) {
        return QVariantList{m_now.addSecs(-secondsAgo), type, QString::number(secondsAgo), from, to};
    };
    Add("event", {"time_stamp", "event_type", "desc", "from_address", "to_address"},
        {event(60, 1, "Me", "Car"), event(1800, 2, "Car", "2001"), event(1801, 3, "Car", "Me"),
         event(7200, 3, "2001", "X"), event(30, 2, "Car", "Van"), event(30, 2, "me", "Van"),
         event(59, 9, "Car", "Me"), event(172800, 1, "Me", "Y"), event(-5, 2, "Me", "Fast clock")});
    struct Case {
        const char* unit;
        QVariant value;
        QStringList rows;
    };
    const Case cases[] = {
        {"n", 30, {"1800|text", "60|status", "59|", "-5|text"}},
        {"n", 31, {"1801|call", "1800|text", "60|status", "59|", "-5|text"}},
        {"n", 1, {"60|status", "59|", "-5|text"}},
        {"h", 2, {"7200|call", "1801|call", "1800|text", "60|status", "59|", "-5|text"}},
        {"d", 2, {"172800|status", "7200|call", "1801|call", "1800|text", "60|status", "59|", "-5|text"}},
        {"x", 30, {}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Rows("get_events",
                       {{"MyAdr", "2001"}, {"MyCallsign", "Me"}, {"TimeUnit", c.unit}, {"TimeVal", c.value}},
                       "Desc icon_key"),
                  c.rows)
            << c.unit << c.value.toInt();
}

TEST_F(StoredQueryTest, EventsAreFoundByTheirTimeAmongMany)
{
    m_workspace->Close();
    const auto connection = sqlite::OpenFiles(m_location, m_options);
    connection->Execute(
        QString("INSERT INTO event (time_stamp, event_type, from_address) "
                "WITH RECURSIVE n (i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 49999) "
                "SELECT %1 - i * 1000, 2, 'Me' FROM n")
            .arg(m_now.toMSecsSinceEpoch()));
    const auto database = std::make_shared<Database>(connection);
    const auto query = database->QueryDef("get_events");
    for (const auto& [name, value] :
         QVariantMap{{"MyAdr", "1"}, {"MyCallsign", "Me"}, {"TimeUnit", "n"}, {"TimeVal", 5}}.toStdMap())
        query->SetParameter(name, value);
    int rows = 0;
    const auto events = query->OpenSnapshot();
    for (; !events->Eof(); events->MoveNext())
        ++rows;
    EXPECT_EQ(rows, 301);
    // About 20 steps of the engine's machine for each record read; the whole table would take a million.
    int steps = 0;
    for (auto* statement = sqlite3_next_stmt(connection->File(), nullptr); statement;
         statement = sqlite3_next_stmt(connection->File(), statement)) {
        if (!QByteArray(sqlite3_sql(statement)).contains("FROM event"))
            continue;
        EXPECT_EQ(sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_FULLSCAN_STEP, 0), 0)
            << sqlite3_sql(statement);
        EXPECT_EQ(sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_SORT, 0), 0) << sqlite3_sql(statement);
        steps += sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_VM_STEP, 0);
    }
    EXPECT_LT(steps, 301 * 50);
}
