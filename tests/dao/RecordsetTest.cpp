#include "DaoFixture.h"
#include "dao/sqlite/Session.h"
#include <QDateTime>
#include <sqlite3.h>

using namespace dao;

namespace {

struct SeekCase {
    const char* table;
    const char* index;
    QVariantList key;
    const char* field;
    QVariant found; // invalid: no match
};

const SeekCase seekCases[] = {
    {"address", "PrimaryKey", {2}, "callsign", "Über Funk"},
    {"address", "i_callsign", {"CAR 1"}, "IDENT", "2001"},
    {"address", "i_callsign", {"car 1"}, "IDENT", "2001"},
    {"address", "i_callsign", {"üBER FUNK"}, "IDENT", "2002"},
    {"address", "i_callsign", {QString::fromUtf8("u\u0308ber funk")}, "IDENT", "2002"},
    {"address", "i_callsign", {"car"}, "IDENT", {}},
    {"address", "i_ident", {"2002"}, "callsign", "Über Funk"},
    {"address", "i_ident", {"ab"}, "callsign", {}}, // exact: there is "AB"
    {"address", "i_ident", {"AB"}, "callsign", "Base"},
    {"status", "PrimaryKey", {5}, "in_desc", "Arrived"},
    {"status", "PrimaryKey", {6}, "in_desc", {}},
    {"user_profile", "i_user", {"boss"}, "UserName", "Boss"},
    {"kyn_registry", "i_key", {"ANN_FPP"}, "Value", "10"},
    {"kyn_registry", "i_key", {"ann_fpp"}, "Value", {}},
    {"dynamic_regroup", "PrimaryKey", {3, 1, 4}, "pos", 4},
    {"dynamic_regroup", "PrimaryKey", {3, 1, 5}, "pos", {}},
    {"dynamic_regroup", "MemberPos", {1, 4}, "group_id", 3},
    {"fleet", "PrimaryKey", {"Taxi"}, "base_ident", 1200},
    {"fleet", "i_fleetbase", {2, 1000}, "fleet_name", "Bus"},
    {"fleet", "i_fleetbase", {2, 1001}, "fleet_name", {}},
};

} // namespace

class SeekTest : public DaoTest {
protected:
    SeekTest()
    {
        AddAddress("Car 1", "2001");
        AddAddress("Über Funk", "2002");
        AddAddress("Base", "AB", 2);
        Add("status", {"status_code", "in_desc"}, {{5, "Arrived"}, {31, "Home"}});
        Add("kyn_registry", {"Key", "Value"}, {{"ANN_FPP", "10"}});
        Add("dynamic_regroup", {"group_id", "member_id", "pos"}, {{3, 1, 4}});
        Add("fleet", {"fleet_name", "fleet_type", "digits", "prefix", "base_ident", "max_ident"},
            {{"Taxi", 1, 2, 2, 1200, 1300}, {"Bus", 2, 3, 2, 1000, 1100}});
    }
};

TEST_F(SeekTest, FindsExactlyTheRecordWithoutAScan)
{
    std::shared_ptr<sqlite::Connection> connection;
    std::shared_ptr<Database> database(std::shared_ptr<Database>(), &Db());
    if (!OnServer()) {
        m_workspace->Close();
        connection = sqlite::OpenFiles(m_location, m_options);
        database = std::make_shared<Database>(connection);
    }
    for (const SeekCase& c : seekCases) {
        SCOPED_TRACE(QString("%1 %2 %3").arg(c.table, c.index, c.key[0].toString()).toStdString());
        const auto table = database->OpenTable(c.table, false);
        table->SetIndex(c.index);
        table->SeekKey(c.key);
        ASSERT_EQ(table->NoMatch(), !c.found.isValid());
        if (c.found.isValid()) {
            EXPECT_EQ(table->Field(c.field), c.found);
        } else {
            EXPECT_EQ(KindOf([&] { table->Field(c.field); }), Kind::NoCurrentRecord);
            EXPECT_EQ(KindOf([&] { table->Edit(); }), Kind::NoCurrentRecord);
        }
    }
    for (auto* statement = connection ? sqlite3_next_stmt(connection->File(), nullptr) : nullptr; statement;
         statement = sqlite3_next_stmt(connection->File(), statement))
        EXPECT_EQ(sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_FULLSCAN_STEP, 0), 0)
            << sqlite3_sql(statement);
}

class RecordsetTest : public DaoTest {};

TEST_F(RecordsetTest, TableEditsUnderASoughtKeyAndWalksInTheOrderOfItsIndex)
{
    Add("fleet", {"fleet_name", "fleet_type", "digits", "prefix", "base_ident", "max_ident"},
        {{"A", 1, 2, 3, 10, 20}, {"B", 1, 2, 1, 30, 40}, {"C", 1, 2, 1, 5, 9}});
    const auto table = Db().OpenTable("FLEET");
    table->SetIndex("i_fleetbase");
    table->Seek(1, 30);
    table->Edit();
    table->SetField("FLEET_NAME", "B2"); // a part of the record's identity
    table->SetField("notes", QString());
    EXPECT_EQ(table->Field("fleet_name"), "B2");
    table->Update();
    EXPECT_EQ(table->Field("fleet_name"), "B2");
    EXPECT_EQ(table->Field("notes"), ""); // a null QString is text, not Null
    QStringList names;
    for (table->MoveFirst(); !table->Eof(); table->MoveNext())
        names.append(table->Field("fleet_name").toString());
    EXPECT_EQ(names, QStringList({"C", "B2", "A"}));
    EXPECT_EQ(KindOf([&] { table->MoveNext(); }), Kind::NoCurrentRecord);

    table->Seek(1, 5);
    table->MoveNext(); // from a record that Seek has found
    EXPECT_EQ(table->Field("fleet_name"), "B2");
    table->Delete();
    EXPECT_EQ(KindOf([&] { table->Field("fleet_name"); }), Kind::NoCurrentRecord);
    table->MoveNext();
    EXPECT_EQ(table->Field("fleet_name"), "A");
    EXPECT_EQ(Sql("select fleet_name from fleet order by 1", "fleet_name"), QStringList({"A", "C"}));
}

TEST_F(RecordsetTest, DynasetFindsEditsAddsAndDeletes)
{
    AddAddress("Alpha", "1", 1, "Anna");
    AddAddress("Beta", "2", 2);
    AddAddress("Gamma", "3", 1, "Gus");
    const auto dynaset = Db().OpenDynaset("browse_individuals");
    EXPECT_FALSE(dynaset->Bof());
    dynaset->FindFirst("address_id=" + QString::number(IdOf("Beta"))); // a talkgroup
    EXPECT_TRUE(dynaset->NoMatch());
    dynaset->FindFirst("Address_ID = " + QString::number(IdOf("Gamma")) + " AND name='Gus'");
    ASSERT_FALSE(dynaset->NoMatch());
    dynaset->Edit();
    dynaset->SetField("callsign", "Delta");
    dynaset->SetField("note", QVariant());
    dynaset->SetField("dynamic", true);
    dynaset->Update();
    EXPECT_EQ(dynaset->Field("dynamic"), QVariant(true));
    EXPECT_FALSE(dynaset->Field("note").isValid());
    dynaset->AddNew();
    dynaset->SetField("callsign", "Aaron");
    dynaset->SetField("IDENT", "4");
    dynaset->SetField("Type", 1);
    EXPECT_EQ(Sql("select callsign from address where \"IDENT\"='4'", "callsign"),
              QStringList()); // not before Update
    dynaset->Update();
    EXPECT_EQ(dynaset->Field("callsign"), "Delta"); // adding does not move
    dynaset->MoveFirst();
    EXPECT_EQ(dynaset->Field("callsign"), "Aaron");
    dynaset->Delete();
    EXPECT_EQ(Sql("select * from address order by callsign", "callsign IDENT Type dynamic"),
              QStringList({"Alpha|1|1|0", "Beta|2|2|0", "Delta|3|1|1"}));
    EXPECT_EQ(KindOf([&] { dynaset->Seek(1); }), Kind::WrongUse);
    EXPECT_EQ(KindOf([&] { Db().OpenDynaset("dynamic_members"); }), Kind::NotUpdatable);

    const auto talkgroups = Db().OpenDynaset("browse_talkgroups");
    talkgroups->Edit();
    talkgroups->SetField("default_pos", "16"); // as the editor's list gives it
    talkgroups->Update();
    EXPECT_EQ(talkgroups->Field("default_pos"), 16);
}

TEST_F(RecordsetTest, CriteriaThatAreNoComparisonsAreRefused)
{
    const auto dynaset = Db().OpenDynaset("browse_individuals");
    for (const char* criterion :
         {"", "address_id", "address_id=", "address_id=1 or 1=1", "1=1", "address_id=1;drop table event",
          "callsign='x", "address_id=1 and", "callsign=(select 1)"})
        EXPECT_EQ(KindOf([&] { dynaset->FindFirst(criterion); }), Kind::BadCriterion) << criterion;
    EXPECT_EQ(KindOf([&] { dynaset->FindFirst("default_pos=1"); }), Kind::NoSuchField); // not in this query
    AddAddress("O", "1", 1, "it's");
    dynaset->FindFirst("name='it''s' and address_id>=1 and IDENT<>'2'");
    EXPECT_FALSE(dynaset->NoMatch());
}

TEST_F(RecordsetTest, RecordChangedElsewhereIsNotOverwritten)
{
    AddAddress("Unit20", "20");
    const auto other = Open();
    const QString found = QStringLiteral("address_id=%1").arg(IdOf("Unit20"));
    const auto change = [&](dao::Database& database, const char* field, const QVariant& value) {
        const auto records = database.OpenDynaset("browse_individuals");
        records->FindFirst(found);
        records->Edit();
        records->SetField(field, value);
        records->Update();
    };
    const auto dynaset = Db().OpenDynaset("browse_individuals");
    dynaset->FindFirst(found);
    change(other->Database(), "note", "theirs");
    dynaset->Edit();
    dynaset->SetField("Name", "mine");
    EXPECT_EQ(KindOf([&] { dynaset->Update(); }), Kind::RecordChanged);
    EXPECT_EQ(KindOf([&] { dynaset->Update(); }), Kind::RecordChanged); // not forgotten by trying again
    EXPECT_EQ(Sql("address", "note Name"), QStringList({"theirs|"}));

    dynaset->FindFirst(found); // read again, null fields and all
    dynaset->Edit();
    dynaset->SetField("Name", "mine");
    dynaset->Update();
    Execute("update_duty_status", {{"cs", "Unit20"}, {"ds", true}}); // a field that this query does not show
    dynaset->Edit();
    dynaset->SetField("dynamic", true);
    dynaset->Update();
    EXPECT_EQ(Sql("address", "note Name dynamic on_duty"), QStringList({"theirs|mine|1|1"}));
}

TEST_F(RecordsetTest, RecordDeletedElsewhereIsReportedAndSkipped)
{
    Add("status", {"status_code"}, {{1}, {2}, {3}});
    const auto other = Open();
    const auto table = Db().OpenTable("status");
    table->MoveFirst();
    const auto removing = other->Database().OpenTable("status");
    for (const int code : {1, 2}) {
        removing->Seek(code);
        removing->Delete();
    }
    table->Edit();
    table->SetField("in_desc", "x");
    EXPECT_EQ(KindOf([&] { table->Update(); }), Kind::RecordGone);
    table->CancelUpdate();
    EXPECT_EQ(KindOf([&] { table->Delete(); }), Kind::RecordGone);
    table->MoveNext();
    EXPECT_EQ(table->Field("status_code"), 3);
    table->MoveNext();
    EXPECT_TRUE(table->Eof());
    EXPECT_FALSE(table->Bof());
}

TEST_F(RecordsetTest, RefusedValuesNameTheFieldAndCanBeCorrected)
{
    AddAddress("Car", "1");
    struct Case {
        const char* table;
        QVariantMap values;
        Kind kind;
        QStringList texts;
    };
    const QString long256(256, 'x');
    const Case cases[] = {
        {"status", {{"status_code", 32}}, Kind::BadValue, {"status_code"}},
        {"status", {{"status_code", -1}}, Kind::BadValue, {"status_code"}},
        {"status", {{"status_code", 4}, {"in_desc", long256}}, Kind::BadValue, {"in_desc"}},
        {"address",
         {{"callsign", "cAR"}, {"IDENT", "2"}, {"Type", 1}},
         Kind::DuplicateKey,
         {"i_callsign", "cAR"}},
        {"address", {{"callsign", "X"}, {"IDENT", "1"}, {"Type", 1}}, Kind::DuplicateKey, {"i_ident", "1"}},
        {"address",
         {{"callsign", "ABCDEFGHIJKLMNO"}, {"IDENT", "2"}, {"Type", 1}},
         Kind::BadValue,
         {"callsign"}},
        {"address", {{"callsign", "X"}, {"Type", 1}}, Kind::BadValue, {"IDENT"}},
        {"address", {{"callsign", "X"}, {"IDENT", "2"}, {"Type", 3}}, Kind::BadValue, {"Type"}},
        {"address",
         {{"callsign", "X"}, {"IDENT", "2"}, {"Type", 2}, {"default_pos", 17}},
         Kind::BadValue,
         {"default_pos"}},
        {"dynamic_regroup", {{"group_id", 99}, {"member_id", 1}, {"pos", 1}}, Kind::InUse, {}},
        {"event", {{"time_stamp", "yesterday"}, {"event_type", 1}}, Kind::BadValue, {"time_stamp"}},
    };
    for (const Case& c : cases) {
        const auto table = Db().OpenTable(c.table);
        table->AddNew();
        for (auto value = c.values.begin(); value != c.values.end(); ++value)
            table->SetField(value.key(), value.value());
        const auto update = [&] { table->Update(); };
        EXPECT_EQ(KindOf(update), c.kind) << c.table << ' ' << c.texts.join(' ').toStdString();
        EXPECT_EQ(ValuesOf(update), c.texts) << c.table;
    }
    const auto table = Db().OpenTable("status");
    table->AddNew();
    table->SetField("status_code", 99);
    EXPECT_EQ(KindOf([&] { table->Update(); }), Kind::BadValue);
    table->SetField("status_code", 9); // still being edited
    table->Update();
    table->Seek(9);
    EXPECT_FALSE(table->NoMatch());
}

TEST_F(RecordsetTest, MisuseIsRefused)
{
    const auto status = Db().OpenTable("status");
    EXPECT_TRUE(status->Eof() && status->Bof());
    const auto snapshot = Db().OpenSnapshot("select * from status order by status_code");
    EXPECT_TRUE(snapshot->Eof());
    EXPECT_EQ(KindOf([&] { snapshot->MoveNext(); }), Kind::NoCurrentRecord);
    EXPECT_EQ(KindOf([&] { snapshot->AddNew(); }), Kind::NotUpdatable);
    EXPECT_EQ(KindOf([&] { status->Update(); }), Kind::NotEditing);
    EXPECT_EQ(KindOf([&] { status->SetField("in_desc", "x"); }), Kind::NotEditing);
    EXPECT_EQ(KindOf([&] { status->Field("nonsense"); }), Kind::NoSuchField);
    EXPECT_EQ(KindOf([&] { status->SetIndex("i_ident"); }), Kind::NoSuchIndex);
    EXPECT_EQ(KindOf([&] { status->Seek(1, 2); }), Kind::BadSeek);
    EXPECT_EQ(KindOf([&] { Db().OpenTable("nonsense"); }), Kind::NoSuchTable);
    EXPECT_EQ(KindOf([&] { Db().OpenSnapshot("nonsense"); }), Kind::NoSuchQuery);
    EXPECT_EQ(KindOf([&] { Db().QueryDef("nonsense"); }), Kind::NoSuchQuery);
    EXPECT_EQ(KindOf([&] { Db().OpenSnapshot("delete from status"); }), Kind::WrongUse);
    EXPECT_EQ(KindOf([&] { Db().OpenSnapshot("select 1; drop table status"); }), Kind::WrongUse);
    EXPECT_EQ(KindOf([&] { Db().OpenSnapshot("select nonsense"); }), Kind::Engine);
    EXPECT_EQ(Db().FieldSize("event", "DESC"), 255);
    EXPECT_EQ(Db().FieldSize("address", "callsign"), 14);
    EXPECT_EQ(Db().FieldSize("address", "Type"), 0);
    status->Close();
    EXPECT_EQ(KindOf([&] { status->MoveFirst(); }), Kind::Closed);
}

TEST_F(RecordsetTest, SnapshotReadsWhileOthersWriteOnlyUntilItsEnd)
{
    Add("status", {"status_code"}, {{1}, {2}});
    const auto other = Open();
    const auto add = [&](int code) {
        const auto table = other->Database().OpenTable("status", true);
        table->AddNew();
        table->SetField("status_code", code);
        table->Update();
    };
    const auto snapshot = Db().OpenSnapshot("status");
    if (!OnServer()) {
        EXPECT_EQ(KindOf([&] { add(3); }), Kind::Locked); // the reader's lock
    }
    snapshot->MoveNext();
    snapshot->MoveNext();
    EXPECT_TRUE(snapshot->Eof());
    EXPECT_EQ(KindOf([&] { add(3); }), std::nullopt);
}

class EventTest : public DaoTest {
protected:
    void AddEvent(const QDateTime& time, const QString& from = "A", const QString& to = "B")
    {
        const auto table = Db().OpenTable("event", true);
        table->AddNew();
        table->SetField("time_stamp", time);
        table->SetField("event_type", 2);
        table->SetField("desc", "Héllo");
        table->SetField("from_address", from);
        table->SetField("to_address", to);
        table->Update();
    }
};

TEST_F(EventTest, TimesKeepTheirMillisecondsInUtc)
{
    const QDateTime local(QDate(2024, 3, 31), QTime(3, 30, 0, 7), Qt::OffsetFromUTC, 7200);
    AddEvent(local);
    const auto snapshot = Db().OpenSnapshot("select time_stamp from event");
    const QDateTime read = snapshot->Field("time_stamp").toDateTime();
    EXPECT_EQ(read, local);
    EXPECT_EQ(read.timeSpec(), Qt::UTC);
    EXPECT_EQ(read.time(), QTime(1, 30, 0, 7));
}

TEST_F(EventTest, RecordsCanOnlyBeAppended)
{
    AddEvent(m_now);
    const auto table = Db().OpenTable("event");
    table->MoveFirst();
    const Kind refused = OnServer() ? Kind::NotPermitted : Kind::Refused;
    EXPECT_EQ(KindOf([&] { table->Delete(); }), refused);
    table->Edit();
    table->SetField("desc", "changed");
    EXPECT_EQ(KindOf([&] { table->Update(); }), refused);
    if (OnServer())
        return;

    Add("event", {"time_stamp", "event_type", "desc", "record_id"}, {{m_now, 1, "second", "7"}});
    m_workspace->Close();
    sqlite3* handle = nullptr; // the file itself refuses, whoever tries
    ASSERT_EQ(sqlite3_open(m_location.database.toUtf8().constData(), &handle), SQLITE_OK);
    for (const char* sql :
         {"update event set \"desc\"=''", "delete from event",
          "insert or replace into event (event_id, time_stamp, event_type) values (1, 0, 0)",
          "insert or replace into event (record_id, time_stamp, event_type) values ('7', 0, 0)"})
        EXPECT_EQ(sqlite3_exec(handle, sql, nullptr, nullptr, nullptr), SQLITE_CONSTRAINT) << sql;
    sqlite3_close(handle);
    m_workspace = Open();
    EXPECT_EQ(Sql("select * from event", "desc"), QStringList({"Héllo", "second"}));
}

TEST_F(EventTest, RecordGivenTwiceIsStoredOnce)
{
    const QString id = "6ba7b810-9dad-41d1-80b4-00c04fd430c8";
    const auto add = [&] {
        Add("event",
            {"time_stamp", "event_type", "record_id", "console", "operator", "console_number", "chain"},
            {{m_now, 1, id, "desk 1", "Boss", 7, "ab"}});
    };
    add();
    EXPECT_EQ(KindOf(add), Kind::DuplicateKey);
    EXPECT_EQ(ValuesOf(add).value(0), "i_record_id");
    const auto table = Db().OpenTable("event");
    table->SetIndex("i_record_id");
    table->Seek(id);
    EXPECT_EQ(table->Field("console_number"), 7);
    EXPECT_EQ(Sql("select * from event", "record_id console operator console_number chain"),
              QStringList({id + "|desk 1|Boss|7|ab"}));
}

TEST_F(EventTest, AppendingReadsNothing)
{
    const auto appending = Db().OpenTable("event", true);
    EXPECT_TRUE(appending->Eof());
    EXPECT_EQ(KindOf([&] { appending->Field("desc"); }), Kind::NoCurrentRecord);
    EXPECT_EQ(KindOf([&] { appending->MoveFirst(); }), Kind::WrongUse);
    EXPECT_EQ(KindOf([&] { appending->Seek(1); }), Kind::WrongUse);
    EXPECT_EQ(KindOf([&] { appending->Edit(); }), Kind::NotUpdatable);
    EXPECT_EQ(KindOf([&] { appending->Update(); }), Kind::NotEditing);
}
