#include "support/Files.h"
#include "DaoFixture.h"
#include "dao/Maintenance.h"
#include "dao/base/FileAccess.h"
#include "dao/base/TextIds.h"
#include "dao/sqlite/FilesCopy.h"
#include "dao/sqlite/Migrations.h"
#include "dao/sqlite/Session.h"
#include <QDir>
#include <algorithm>
#include <csignal>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace dao;

class FilesTest : public DaoTest {
protected:
    FilesTest() { m_workspace.reset(); }

    // Runs SQL on a file without this program's help but its folding, which the indexes need; checks nothing,
    // as damage is what the tests are after.
    static void Tamper(const QString& path, const char* sql)
    {
        sqlite3* handle = nullptr;
        sqlite3_open(path.toUtf8().constData(), &handle);
        const auto fold = [](sqlite3_context* context, int, sqlite3_value** values) {
            const QByteArray folded =
                QByteArray(reinterpret_cast<const char*>(sqlite3_value_text(values[0]))).toLower();
            sqlite3_result_text(context, folded.constData(), -1, SQLITE_TRANSIENT);
        };
        sqlite3_create_function(handle, "kyn_fold", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, fold,
                                nullptr, nullptr);
        sqlite3_exec(handle, sql, nullptr, nullptr, nullptr);
        sqlite3_close(handle);
    }
    QStringList Entries()
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
};

// What `action` fails with when it is run as the user "nobody"; -1 for nothing.
static int KindAsNobody(const std::function<void()>& action)
{
    const pid_t child = fork();
    if (child == 0) {
        if (setgid(65534) != 0 || setuid(65534) != 0)
            _exit(250);
        const auto kind = KindOf(action);
        _exit(kind ? static_cast<int>(*kind) : 255);
    }
    int state = 0;
    waitpid(child, &state, 0);
    const int code = WIFEXITED(state) ? WEXITSTATUS(state) : 250;
    return code == 255 ? -1 : code;
}

TEST_F(FilesTest, BadFilesAreToldApart)
{
    const QString database = m_location.database;
    const QString workgroup = m_location.workgroup;
    const QString other = m_folder.filePath("other.kyndb");
    CreateDatabase(LocationOf(other), "Boss", "secret", PasswordCost::Lowest());
    WriteFile(m_folder.filePath("text"), QByteArray(5000, 'x'));
    WriteFile(m_folder.filePath("empty"), "");
    Tamper(m_folder.filePath("foreign"), "create table t (a)");
    WriteFile(m_folder.filePath("newer.kyndb"), ReadFile(database));
    Tamper(m_folder.filePath("newer.kyndb"), "update file_info set value='8' where name='schema_version'");
    WriteFile(m_folder.filePath("newer.kynw"), ReadFile(workgroup));
    Tamper(m_folder.filePath("newer.kynw"), "update file_info set value='7' where name='schema_version'");
    WriteFile(m_folder.filePath("torn.kyndb"), ReadFile(database).left(8192) + QByteArray(4096, '\xA5'));
    WriteFile(m_folder.filePath("torn.kynw"), ReadFile(workgroup).left(4096));
    struct Case {
        QString database;
        QString workgroup;
        Kind kind;
        QString named; // the first value
    };
    const auto in = [&](const char* name) { return m_folder.filePath(name); };
    const Case cases[] = {
        {"", workgroup, Kind::NoSuchFile, ""},
        {in("missing"), workgroup, Kind::NoSuchFile, in("missing")},
        {in("no/such/folder.kyndb"), workgroup, Kind::NoSuchFile, in("no/such/folder.kyndb")},
        {m_folder.path(), workgroup, Kind::NotADatabase, m_folder.path()},
        {"/dev/null", workgroup, Kind::NotADatabase, "/dev/null"},
        {in("text"), workgroup, Kind::NotADatabase, in("text")},
        {in("empty"), workgroup, Kind::NotADatabase, in("empty")},
        {in("foreign"), workgroup, Kind::NotADatabase, in("foreign")},
        {workgroup, workgroup, Kind::NotADatabase, workgroup},
        {in("newer.kyndb"), workgroup, Kind::Newer, in("newer.kyndb")},
        {in("torn.kyndb"), workgroup, Kind::Damaged, in("torn.kyndb")},
        {"postgresql://boss:pw@/fleet?host=/nowhere", "", Kind::ServerAway,
         "postgresql:///fleet?host=/nowhere"},
        {"postgresql://server/fleet?nonsense=1&password=x", "", Kind::BadServerAddress,
         "postgresql://server/fleet?nonsense=1&password=..."},
        {"postgresql://server", "", Kind::BadServerAddress, "postgresql://server"},
        {database, "", Kind::WorkgroupMissing, ""},
        {database, in("missing"), Kind::WorkgroupMissing, in("missing")},
        {database, in("text"), Kind::NotADatabase, in("text")},
        {database, m_folder.path(), Kind::NotADatabase, m_folder.path()},
        {database, database, Kind::NotADatabase, database},
        {database, in("newer.kynw"), Kind::Newer, in("newer.kynw")},
        {database, in("torn.kynw"), Kind::Damaged, in("torn.kynw")},
        {database, in("other.kynw"), Kind::WorkgroupMismatch, in("other.kynw")},
    };
    const QStringList entries = Entries();
    for (const Case& c : cases) {
        const auto open = [&] { OpenWorkspace({c.database, c.workgroup}, "Boss", "secret", m_options); };
        EXPECT_EQ(KindOf(open), c.kind) << c.database.toStdString() << ", " << c.workgroup.toStdString();
        EXPECT_EQ(ValuesOf(open).value(0), c.named);
    }
    EXPECT_EQ(Entries(), entries); // nothing was created or left
    EXPECT_EQ(KindOf([&] { Open(); }), std::nullopt);
}

TEST_F(FilesTest, FilesLockedByOthers)
{
    for (const QString& path : {m_location.database, m_location.workgroup}) {
        sqlite3* handle = nullptr;
        ASSERT_EQ(sqlite3_open(path.toUtf8().constData(), &handle), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(handle, "begin exclusive", nullptr, nullptr, nullptr), SQLITE_OK);
        EXPECT_EQ(KindOf([&] { Open(); }), Kind::Locked);
        EXPECT_EQ(ValuesOf([&] { Open(); }), QStringList({path}));
        sqlite3_close(handle);
    }
}

TEST_F(FilesTest, RightsOfTheOperatingSystem)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "needs to become another user";
    const auto open = [&] { Open(); };
    const auto create = [&] {
        CreateDatabase(LocationOf(m_folder.filePath("new.kyndb")), "Boss", "x", PasswordCost::Lowest());
    };
    const QByteArray folder = m_folder.path().toUtf8();
    const QByteArray database = m_location.database.toUtf8();
    const QByteArray workgroup = m_location.workgroup.toUtf8();
    struct Case {
        int folder, database, workgroup;
        int kind;
    };
    const Case cases[] = {
        {0777, 0666, 0666, -1},
        {0777, 0444, 0666, static_cast<int>(Kind::ReadOnly)},
        {0777, 0666, 0444, static_cast<int>(Kind::ReadOnly)},
        {0777, 0000, 0666, static_cast<int>(Kind::NotReadable)},
        {0777, 0666, 0000, static_cast<int>(Kind::NotReadable)},
        {0555, 0666, 0666, static_cast<int>(Kind::ReadOnly)}, // no place for the journal
    };
    for (const Case& c : cases) {
        ASSERT_EQ(chmod(database, static_cast<mode_t>(c.database)), 0);
        ASSERT_EQ(chmod(workgroup, static_cast<mode_t>(c.workgroup)), 0);
        ASSERT_EQ(chmod(folder, static_cast<mode_t>(c.folder)), 0);
        EXPECT_EQ(KindAsNobody(open), c.kind)
            << std::oct << c.folder << ' ' << c.database << ' ' << c.workgroup;
    }
    EXPECT_EQ(KindAsNobody(create), static_cast<int>(Kind::CannotCreate));
    chmod(folder, 0700);
}

TEST_F(FilesTest, CreationLeavesBothFilesOrNone)
{
    const auto in = [&](const char* name) { return m_folder.filePath(name); };
    WriteFile(in("taken.kynw"), "mine");
    struct Case {
        Location location;
        const char* user;
        const char* password;
        Kind kind;
    };
    const Case cases[] = {
        {m_location, "Boss", "x", Kind::FileExists},
        {LocationOf(in("taken.kyndb")), "Boss", "x", Kind::FileExists},
        {LocationOf(in("no/folder.kyndb")), "Boss", "x", Kind::CannotCreate},
        {{in("a.kyndb"), in("no/a.kynw")}, "Boss", "x", Kind::CannotCreate},
        {{in("a.kyndb"), in("a.kyndb")}, "Boss", "x", Kind::FileExists},
        {{in("a.kyndb"), ""}, "Boss", "x", Kind::CannotCreate},
        {LocationOf(in("a.kyndb")), "Boss", "", Kind::BadPassword},
        {LocationOf(in("a.kyndb")), "", "x", Kind::BadUserName},
        {LocationOf("postgresql://server/Big"), "Boss", "x", Kind::BadDatabaseName},
    };
    const QStringList entries = Entries();
    for (const Case& c : cases) {
        EXPECT_EQ(KindOf([&] { CreateDatabase(c.location, c.user, c.password, PasswordCost::Lowest()); }),
                  c.kind)
            << c.location.database.toStdString();
        EXPECT_EQ(Entries(), entries);
    }
    EXPECT_EQ(ReadFile(in("taken.kynw")), "mine");
}

// What the lists show, by others, and nothing else: no log records, nothing of its own, nothing that was
// undone.
TEST_F(FilesTest, TablesThatOthersChangedAreKnown)
{
    m_workspace = Open();
    const auto other = Open();
    const auto later = Open();
    struct Case {
        const char* name;
        std::function<void()> change;
        QStringList tables;
    };
    const Case cases[] = {
        {"entry", [&] { AddAddress("Unit21", "21"); }, {"address"}},
        {"duty",
         [&] {
             Execute("update_duty_status", {{"cs", "Unit21"}, {"ds", true}});
         },
         {"address"}},
        {"status", [&] { Add("status", {"status_code"}, {{5}}); }, {"status"}},
        {"regrouping",
         [&] {
             Add("dynamic_regroup", {"group_id", "member_id", "pos"}, {{1, 1, 1}});
         },
         {"dynamic_regroup"}},
        {"dissolved",
         [&] {
             Execute("ungroup", {{"gi", 1}, {"p", 1}});
         },
         {"dynamic_regroup"}},
        {"setting", [&] { Add("kyn_registry", {"Key"}, {{"x"}}); }, {"kyn_registry"}},
        {"account", [&] { AddOperator(); }, {"account", "membership", "user_profile"}},
        {"account deleted", [&] { m_workspace->Users().Delete("Olga"); }, {"account", "membership"}},
        {"log record",
         [&] {
             Add("event", {"time_stamp", "event_type"}, {{m_now, 1}});
         },
         {}},
        {"undone",
         [&] {
             m_workspace->BeginTrans();
             AddAddress("Unit22", "22");
             m_workspace->Rollback();
         },
         {}},
    };
    for (const Case& c : cases) {
        c.change();
        EXPECT_EQ(other->ChangedElsewhere(), c.tables) << c.name;
        EXPECT_EQ(other->ChangedElsewhere(), QStringList()) << c.name;
        EXPECT_EQ(m_workspace->ChangedElsewhere(), QStringList()) << c.name;
    }
    // A session made again is no other one, in a transaction or without, and hides no other one's change.
    const auto duty = [](Workspace& workspace) {
        const auto query = workspace.Database().QueryDef("update_duty_status");
        query->SetParameter("cs", "Unit21");
        query->SetParameter("ds", true);
        query->Execute();
    };
    for (int time = 0; time < 2; ++time) {
        const auto again = m_workspace->Again()();
        duty(*again);
        again->BeginTrans();
        duty(*again);
        again->Rollback();
        again->BeginTrans();
        duty(*again);
        again->CommitTrans();
        EXPECT_EQ(m_workspace->ChangedElsewhere(), QStringList()) << time;
        EXPECT_EQ(other->ChangedElsewhere(), QStringList("address")) << time;
        duty(*other);
        duty(*again);
        EXPECT_EQ(m_workspace->ChangedElsewhere(), QStringList("address")) << time;
        other->ChangedElsewhere();
    }
    EXPECT_EQ(later->ChangedElsewhere(), QStringList({"account", "address", "dynamic_regroup", "kyn_registry",
                                                      "membership", "status", "user_profile"}));
    EXPECT_EQ(Open()->ChangedElsewhere(), QStringList()); // before its time
}

TEST(LocationTest, WorkgroupFileStandsBesideTheDatabase)
{
    const QStringList cases[] = {
        {"/data/site.kyndb", "/data/site.kynw"},
        {"site.kyndb", "site.kynw"},
        {"./site.kyndb", "./site.kynw"},
        {"/a.b/c.d.kyndb", "/a.b/c.d.kynw"},
        {"/data/plain", "/data/plain.kynw"},
        {"", ""},
        {"postgresql://host/db", ""},
    };
    for (const QStringList& c : cases)
        EXPECT_EQ(LocationOf(c[0]).workgroup, c[1]);
}

class MigrationTest : public FilesTest {
protected:
    const int m_newest = static_cast<int>(sqlite::MigrationsOf(sqlite::FileKind::Database).size());
    const QString m_copy = m_location.database + QStringLiteral(".v%1").arg(m_newest);

    static int SchemaOf(Workspace& workspace)
    {
        const auto info =
            workspace.Database().OpenSnapshot("select value from file_info where name = 'schema_version'");
        return info->Field("value").toInt();
    }

    sqlite::MigrationResult Migrate(const QStringList& later)
    {
        auto migrations = sqlite::MigrationsOf(sqlite::FileKind::Database);
        for (const QString& sql : later)
            migrations.append({static_cast<int>(migrations.size()) + 1, sql});
        return sqlite::Migrate(m_location.database, sqlite::FileKind::Database, migrations,
                               m_options.busyTimeout);
    }
};

TEST_F(MigrationTest, RunsTheMissingStepsAfterACopy)
{
    EXPECT_TRUE(Migrate({}).copy.isEmpty());
    WriteFile(m_copy + ".bak", "kept from earlier");
    m_workspace = Open();
    AddAddress("Car", "1");
    AddAddress("Ops", "2", 2);
    Add("dynamic_regroup", {"group_id", "member_id", "pos"}, {{2, 1, 1}});
    m_workspace.reset();
    // Rebuilds a table that another one refers to, which needs references unchecked on the way.
    const auto result =
        Migrate({"create table extra (id integer primary key); insert into extra values (5);",
                 "create table a2 (address_id integer primary key, callsign); insert into a2 select "
                 "address_id, callsign "
                 "from address; drop table address; alter table a2 rename to address; insert into extra "
                 "values (6);"});
    EXPECT_EQ(result.fromVersion, m_newest);
    EXPECT_EQ(result.toVersion, m_newest + 2);
    EXPECT_EQ(result.copy, m_copy + "-2.bak");
    EXPECT_EQ(ReadFile(m_copy + ".bak"), "kept from earlier");
    EXPECT_EQ(KindOf([&] { Open(); }), Kind::Newer); // for the program without these steps
    EXPECT_EQ(ValuesOf([&] { Open(); }),
              QStringList({m_location.database, QString::number(m_newest + 2), QString::number(m_newest)}));
    const auto migrated = sqlite::Connection::Open(m_location.database, sqlite::Connection::Mode::ReadWrite,
                                                   m_options.busyTimeout);
    EXPECT_EQ(migrated->Value("select sum(id) + count(member_id) from extra, dynamic_regroup"), 13);
    migrated->Close();
    m_location.database = result.copy; // the copy is a whole database of the old schema
    EXPECT_EQ(SchemaOf(*Open()), m_newest);
}

TEST_F(MigrationTest, FailureLeavesFileAndFolderAsTheyWere)
{
    const QStringList entries = Entries();
    const QByteArray before = ReadFile(m_location.database);
    for (const char* sql :
         {"create table extra (a); nonsense", "insert into dynamic_regroup values (8, 9, 1)"}) {
        const auto migrate = [&] { Migrate({"create table more (a)", sql}); };
        EXPECT_EQ(KindOf(migrate), Kind::MigrationFailed) << sql;
        EXPECT_EQ(ValuesOf(migrate), QStringList({m_location.database, QString::number(m_newest + 2)}));
        EXPECT_EQ(Entries(), entries);
        EXPECT_EQ(ReadFile(m_location.database), before);
    }
    const auto user = Open();
    user->BeginTrans();
    EXPECT_EQ(KindOf([&] { Migrate({"create table extra (a)"}); }), Kind::Locked);
    EXPECT_EQ(SchemaOf(*user), m_newest);
}

// The file as a program with the schema before this one would have made it.
static void MakeOlder(const QString& path, sqlite::FileKind kind)
{
    const QString newer = path + ".newer";
    ASSERT_TRUE(QFile::rename(path, newer));
    auto migrations = sqlite::MigrationsOf(kind);
    migrations.removeLast();
    constexpr std::chrono::seconds timeout(1);
    const auto file = sqlite::Connection::Open(path, sqlite::Connection::Mode::Create, timeout);
    file->Attach(newer, "newer");
    sqlite::BuildSchema(
        *file, kind, migrations,
        file->Value("select value from newer.file_info where name = 'database_id'").toString());
    file->Execute("PRAGMA foreign_keys=OFF");
    for (const QVariantList& table : file->AllRows(
             "select t.name, group_concat('\"' || f.name || '\"') from main.sqlite_master as t, "
             "pragma_table_info(t.name, 'main') as f where t.type = 'table' and t.name not like 'sqlite_%' "
             "and t.name not in ('file_info', 'index_def', 'stored_query') "
             "and t.name not like 'event_words%' group by 1"))
        file->Execute(QStringLiteral("insert or replace into main.%1 (%2) select %2 from newer.%1")
                          .arg(table[0].toString(), table[1].toString()));
    file->Close();
    ASSERT_TRUE(QFile::remove(newer) && QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
}

TEST_F(MigrationTest, FilesOfTheSchemaBeforeKeepWhatTheyHold)
{
    m_workspace = Open();
    AddOperator();
    AddAddress("Car", "1");
    AddAddress("Ops", "2", 2);
    Add("dynamic_regroup", {"group_id", "member_id", "pos"}, {{2, 1, 1}});
    Add("event", {"time_stamp", "event_type", "desc"}, {{m_now, 1, "old"}});
    m_workspace.reset();
    MakeOlder(m_location.database, sqlite::FileKind::Database);
    MakeOlder(m_location.workgroup, sqlite::FileKind::Workgroup);

    QMap<QString, QList<int>> told;
    m_options.migrating = [&](const QString& file, int percent) { told[file].append(percent); };
    EXPECT_EQ(KindOf([&] { Open(); }), std::nullopt);
    EXPECT_EQ(QDir(m_folder.path()).entryList({"*.bak"}).size(), 2);
    for (const QString& file : {m_location.database, m_location.workgroup}) {
        EXPECT_TRUE(std::is_sorted(told[file].begin(), told[file].end()));
        EXPECT_EQ(told[file].first(), 0);
        EXPECT_EQ(told[file].last(), 100);
    }
    EXPECT_TRUE(CheckDatabase(m_location).empty());
    m_workspace = Open("Olga", "pw");
    EXPECT_EQ(SchemaOf(*m_workspace), m_newest);
    EXPECT_EQ(Sql("select * from dynamic_regroup", "group_id member_id pos"), QStringList({"2|1|1"}));
    EXPECT_EQ(Sql("select * from event", "desc record_id console operator console_number chain"),
              QStringList({"old|||||"}));
    EXPECT_EQ(KindOf([&] { AddAddress("Van", "3"); }), Kind::NotPermitted);
    m_workspace = Open();
    AddAddress("Van", "3");
    EXPECT_EQ(IdOf("Van"), 3);
}

// Killed at each moment that it tells of, it leaves the old file or the new one, and the next opening gets
// on.
TEST_F(MigrationTest, KilledInTheMiddle)
{
    m_workspace = Open();
    m_workspace->BeginTrans();
    const auto events = Db().OpenTable("event", true);
    for (int i = 0; i < 60000; ++i) {
        events->AddNew();
        events->SetField("time_stamp", m_now);
        events->SetField("event_type", i);
        events->SetField("desc", QString(80, 'x'));
        events->Update();
    }
    m_workspace->CommitTrans();
    m_workspace.reset();
    const auto schema = [](sqlite::Connection& file) {
        return file.Value(
            "select group_concat(sql, ' ') from (select name, sql from sqlite_schema order by name)");
    };
    const auto schemaNow = [&] {
        return schema(*sqlite::Connection::Open(m_location.database, sqlite::Connection::Mode::ReadWrite,
                                                m_options.busyTimeout));
    };
    const QVariant newer = schemaNow();
    MakeOlder(m_location.database, sqlite::FileKind::Database);
    const QVariant older = schemaNow();
    int killed = 0;
    for (int moment = 1;; ++moment) {
        const pid_t child = fork();
        if (child == 0) {
            int calls = 0;
            MigrateDatabase(m_location, [&](const QString&, int) {
                if (++calls == moment)
                    raise(SIGKILL);
            });
            _exit(0);
        }
        int state = 0;
        waitpid(child, &state, 0);
        const auto file = sqlite::Connection::Open(m_location.database, sqlite::Connection::Mode::ReadWrite,
                                                   m_options.busyTimeout);
        const int version = ReadFileInfo(*file, "main", "", sqlite::FileKind::Database).version;
        EXPECT_EQ(schema(*file), version == m_newest ? newer : older) << moment << ": " << version;
        EXPECT_EQ(file->Value("select count(*) from event"), 60000);
        file->Close();
        if (WIFEXITED(state))
            break;
        ++killed;
    }
    EXPECT_GT(killed, 5);
    EXPECT_TRUE(CheckDatabase(m_location).empty());
}

class MaintenanceTest : public FilesTest {
protected:
    QList<int> Check()
    {
        QList<int> ids;
        for (const Finding& finding : CheckDatabase(m_location))
            ids.append(finding.textId);
        return ids;
    }
};

TEST_F(MaintenanceTest, CheckFindsWhatIsWrong)
{
    EXPECT_EQ(Check(), QList<int>());
    const QByteArray database = ReadFile(m_location.database);
    const QByteArray workgroup = ReadFile(m_location.workgroup);
    struct Case {
        const char* databaseSql;
        const char* workgroupSql;
        QList<int> found;
    };
    const Case cases[] = {
        {"drop table fleet",
         "",
         {DaoText::CheckTableMissing, DaoText::CheckIndexMissing, DaoText::CheckIndexMissing}},
        {"drop index MemberPos", "", {DaoText::CheckIndexMissing}},
        {"alter table event drop column chain", "", {DaoText::CheckFieldMissing}},
        {"drop trigger event_no_delete", "", {DaoText::CheckAppendable}},
        {"drop trigger status_update_counted",
         "drop trigger membership_insert_counted",
         {DaoText::CheckNotCounted, DaoText::CheckNotCounted}},
        {"delete from stored_query where name='ungroup'", "", {DaoText::CheckQueryMissing}},
        {"update stored_query set sql='select x from address' where name='ungroup'",
         "",
         {DaoText::CheckQueryFails}},
        {"insert into dynamic_regroup values (8, 9, 1)",
         "",
         {DaoText::CheckReference, DaoText::CheckReference}},
        {"delete from user_profile", "", {DaoText::CheckNoProfile}},
        {"", "delete from membership where group_name='Admins'", {DaoText::CheckNoAdministrator}},
        {"",
         "delete from account",
         {DaoText::CheckReference, DaoText::CheckReference, DaoText::CheckNoAccount}},
        {"update file_info set value='0' where name='schema_version'", "", {DaoText::CheckOlder}},
        {"update file_info set value='9' where name='schema_version'", "", {DaoText::Newer}},
        {"", "update file_info set value='x' where name='database_id'", {DaoText::WorkgroupMismatch}},
        {"insert into fleet values ('A', 1, 2, 3, 4, 5, null); pragma writable_schema=1; "
         "update sqlite_schema set sql=replace(sql, 'prefix, base_ident', 'max_ident') where "
         "name='i_fleetbase'",
         "",
         {DaoText::CheckDamage}},
    };
    for (const Case& c : cases) {
        Tamper(m_location.database, c.databaseSql);
        Tamper(m_location.workgroup, c.workgroupSql);
        EXPECT_EQ(Check(), c.found) << c.databaseSql << c.workgroupSql;
        WriteFile(m_location.database, database);
        WriteFile(m_location.workgroup, workgroup);
    }
    m_location.database = m_folder.filePath("missing");
    EXPECT_EQ(Check(), QList<int>({DaoText::NoSuchFile}));
}

// For the account of the system that makes it, or for a group: the files, what SQLite puts beside them, and
// every copy.
TEST_F(MaintenanceTest, FilesAreForTheirOwnerOrForAGroup)
{
    const auto mode = [](const QString& path) {
        struct stat status = {};
        stat(path.toUtf8().constData(), &status);
        return QString::number(status.st_mode & 07777, 8) +
               (status.st_gid == getegid() ? "" : " other group");
    };
    const auto create = [](const Location& location, const QString& group) {
        return KindOf([&] { CreateDatabase(location, "Boss", "secret", PasswordCost::Lowest(), group); });
    };
    const QString group = SystemGroups().last();
    const Location shared = LocationOf(m_folder.filePath("site/fleet.kyndb"));
    EXPECT_EQ(create(shared, "no such group"), Kind::NoSuchSystemGroup);
    EXPECT_EQ(create(shared, group), Kind::FolderOutOfReach); // below a private one
    chmod(m_folder.path().toUtf8(), 0711);
    EXPECT_EQ(create(LocationOf(m_folder.filePath("f.kyndb")), group), Kind::FolderNotShared);
    EXPECT_EQ(create(LocationOf("postgresql:///fleet"), group), Kind::FilesOnly);
    EXPECT_FALSE(QFile::exists(m_folder.filePath("site")));
    const mode_t before = umask(077); // which must not take the group's rights away
    EXPECT_EQ(create(shared, group), std::nullopt);
    umask(before);
    EXPECT_EQ(mode(m_folder.filePath("site")), "2770");

    const QString rights[] = {"600", "660"};
    const Location* location = &m_location;
    for (const QString& right : rights) {
        const auto workspace = OpenWorkspace(*location, "Boss", "secret", m_options);
        workspace->BeginTrans();
        const auto records = workspace->Database().OpenTable("status");
        records->AddNew();
        records->SetField("status_code", 1);
        records->Update();
        EXPECT_EQ(mode(location->database + "-journal"), right);
        workspace->Rollback();
        const Location copy{location->database + ".copy", location->workgroup + ".copy"};
        sqlite::CopyFiles(*location, copy);
        auto migrations = sqlite::MigrationsOf(sqlite::FileKind::Database);
        migrations.append({static_cast<int>(migrations.size()) + 1, "create table extra (a)"});
        const auto migrated =
            sqlite::Migrate(copy.database, sqlite::FileKind::Database, migrations, m_options.busyTimeout);
        for (const QString& path :
             {location->database, location->workgroup, copy.database, copy.workgroup, migrated.copy})
            EXPECT_EQ(mode(path), right) << path.toStdString();
        EXPECT_TRUE(CheckDatabase(*location).isEmpty());
        location = &shared;
    }

    // Existing ones stay as they are, and the check says what that means.
    chmod(m_location.database.toUtf8(), 0644);
    chmod(m_location.workgroup.toUtf8(), 0660); // in a folder of the owner
    EXPECT_EQ(KindOf([&] { Open(); }), std::nullopt);
    EXPECT_EQ(mode(m_location.database), "644");
    EXPECT_EQ(Check(), QList<int>({DaoText::CheckOpenToAll, DaoText::CheckHalfShared}));
    chmod(m_folder.path().toUtf8(), 0700);
}
