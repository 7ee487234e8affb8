#include "core/session/AccountChanges.h"

#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

NewAccount Olga()
{
    return {"Olga", "PID", "pw", "Control", "Admins", false};
}

// Accounts as "name:groups:profiles of that name:its callsign", and profiles without an account.
QStringList Accounts(dao::Workspace& workspace)
{
    QStringList lines;
    QStringList profiles;
    QHash<QString, QString> callsigns;
    const auto rows = workspace.Database().OpenTable("user_profile");
    for (; !rows->Eof(); rows->MoveNext()) {
        profiles.append(rows->Field("UserName").toString());
        callsigns[profiles.last()] = rows->Field("callsign").toString();
    }
    for (const QString& name : workspace.Users().Names()) {
        lines.append(QStringLiteral("%1:%2:%3:%4")
                         .arg(name, workspace.Users().Item(name)->Groups().Names().join(','))
                         .arg(profiles.removeAll(name))
                         .arg(callsigns.value(name)));
    }
    return lines + profiles;
}

qlonglong ProfileOf(dao::Workspace& workspace, const QString& name)
{
    const auto rows = workspace.Database().OpenTable("user_profile");
    rows->SetIndex("i_user");
    rows->Seek(name);
    return rows->NoMatch() ? 0 : rows->Field("profile_id").toLongLong();
}

AccountChange Change(qlonglong profile, const char* name, const char* callsign, const char* oldGroup,
                     const char* newGroup)
{
    return {profile, name, callsign, oldGroup, newGroup, false};
}

// Kills this process before one of the engine's changes to its files, counted from 1.
int changesLeft = 0;

void CountOrDie()
{
    if (--changesLeft == 0)
        kill(getpid(), SIGKILL);
}

ssize_t WriteOrDie(int file, const void* bytes, size_t count, off_t offset)
{
    CountOrDie();
    return pwrite(file, bytes, count, offset);
}

int UnlinkOrDie(const char* path)
{
    CountOrDie();
    return unlink(path);
}

int TruncateOrDie(int file, off_t size)
{
    CountOrDie();
    return ftruncate(file, size);
}

void DieBeforeChange(int number)
{
    changesLeft = number;
    sqlite3_vfs* vfs = sqlite3_vfs_find(nullptr);
    const auto replace = [vfs](const char* call, auto* function) {
        vfs->xSetSystemCall(vfs, call, reinterpret_cast<sqlite3_syscall_ptr>(function));
    };
    replace("pwrite", WriteOrDie);
    replace("pwrite64", WriteOrDie);
    replace("unlink", UnlinkOrDie);
    replace("ftruncate", TruncateOrDie);
}

// Runs `change` on the database in a process that is killed before its change number `number` of a file. True
// when it was killed, false when it had finished by then.
bool KilledAt(int number, const TestDatabase& database, const std::function<void(dao::Workspace&)>& change)
{
    const pid_t child = fork();
    if (child == 0) {
        const auto workspace = database.Open();
        DieBeforeChange(number);
        try {
            change(*workspace);
        } catch (...) {
            _exit(1);
        }
        _exit(0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0) << "change " << number;
    return WIFSIGNALED(status);
}

} // namespace

// Every change of an account is cut off at every point at which it touches a file.
TEST(AccountChanges, KilledAnywhereLeaveBothFilesOrNeitherChanged)
{
    struct Case {
        const char* name;
        bool withOlga;
        std::function<void(dao::Workspace&)> change;
    };
    const Case cases[] = {
        {"add", false, [](dao::Workspace& w) { AddAccount(w, Olga()); }},
        {"modify", true,
         [](dao::Workspace& w) {
             ChangeAccount(w, Change(ProfileOf(w, "Olga"), "Olga", "Night", "Admins", "Watch"));
         }},
        {"delete", true, [](dao::Workspace& w) { DeleteAccount(w, ProfileOf(w, "Olga"), "Olga"); }},
    };
    for (const Case& c : cases) {
        int before = 0;
        int after = 0;
        for (int number = 1; number < 500; ++number) {
            TestDatabase database;
            QStringList as;
            {
                const auto workspace = database.Open();
                workspace->Groups().Append("Watch");
                if (c.withOlga)
                    AddAccount(*workspace, Olga());
                as = Accounts(*workspace);
            }
            const bool killed = KilledAt(number, database, c.change);
            const auto workspace = database.Open();
            const QStringList now = Accounts(*workspace);
            if (now == as) {
                ++before;
                c.change(*workspace); // nothing is in the way of trying again
                as = Accounts(*workspace);
            } else {
                ++after;
                QStringList whole = {"admin:Admins,Users:1:"};
                if (QLatin1String(c.name) == QLatin1String("add"))
                    whole.append("Olga:Admins,Users:1:Control");
                else if (QLatin1String(c.name) == QLatin1String("modify"))
                    whole.append("Olga:Users,Watch:1:Night");
                ASSERT_EQ(now, whole) << c.name << ", killed at change " << number;
            }
            if (!killed)
                break;
        }
        EXPECT_GT(before, 5) << c.name;
        EXPECT_GT(after, 1) << c.name; // once killed after the decisive point, and once not at all
    }
}

TEST(AccountChanges, RefusedOnesChangeNothing)
{
    TestDatabase database;
    const auto workspace = database.Open();
    AddAccount(*workspace, Olga());
    const QStringList as = Accounts(*workspace);
    NewAccount twice = Olga();
    twice.userName = "OLGA";
    NewAccount lost = Olga();
    lost.userName = "Zoe";
    lost.group = "nowhere";
    const qlonglong admin = ProfileOf(*workspace, "admin");
    struct Case {
        dao::Kind kind;
        std::function<void()> act;
    };
    const Case cases[] = {
        {dao::Kind::UserExists, [&] { AddAccount(*workspace, twice); }},
        {dao::Kind::NoSuchGroup, [&] { AddAccount(*workspace, lost); }},
        {dao::Kind::RecordGone, [&] { ChangeAccount(*workspace, Change(99, "Olga", "", "", "")); }},
        {dao::Kind::NotAMember,
         [&] { ChangeAccount(*workspace, Change(admin, "admin", "x", "Watch", "Users")); }},
        {dao::Kind::RecordGone, [&] { DeleteAccount(*workspace, 99, "Olga"); }},
        {dao::Kind::NoSuchUser, [&] { DeleteAccount(*workspace, admin, "nobody"); }},
    };
    for (const Case& c : cases) {
        try {
            c.act();
            ADD_FAILURE() << "not refused";
        } catch (const dao::Error& error) {
            EXPECT_EQ(dao::TextId(error.kind), dao::TextId(c.kind)) << error.what();
        }
        EXPECT_EQ(Accounts(*workspace), as);
    }
    DeleteAccount(*workspace, ProfileOf(*workspace, "Olga"), "Olga");
    EXPECT_THROW(DeleteAccount(*workspace, admin, "admin"), dao::Error); // the last administrator
    // The group that stays is not taken away for a moment.
    ChangeAccount(*workspace, Change(admin, "admin", "Head", "Admins", "Admins"));
    EXPECT_EQ(Accounts(*workspace), QStringList({"admin:Admins,Users:1:Head"}));
}
