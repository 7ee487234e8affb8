#include "ctl/Site.h"
#include "ctl/TerminalRun.h"
#include "dao/Recovery.h"
#include "dao/Workspace.h"
#include "dao/tables/RegistryTable.h"
#include "support/OtherUser.h"

namespace {

class Databases : public Site {
protected:
    CtlRun CreateForAda() const { return Create({"--admin", "Ada"}); }

    CtlRun User(const QStringList& arguments, const QByteArray& passwords) const
    {
        return RunWithPasswords(QStringList{"user", arguments[0], m_target} + arguments.mid(1), passwords);
    }
};

TEST_F(Databases, CreatedOnceAndSound)
{
    const CtlRun created = CreateForAda();
    ASSERT_EQ(created.code, 0) << created.err.toStdString();
    EXPECT_TRUE(QFile::exists(m_target));
    EXPECT_TRUE(QFile::exists(m_folder.filePath("site.kynw")));

    const CtlRun check = RunCtl({"db", "check", m_target});
    EXPECT_EQ(check.code, 0) << check.err.toStdString();
    EXPECT_TRUE(check.out.contains("no problems found"));

    ExpectFailure(CreateForAda(), m_target.toUtf8());
    const QString other = m_folder.filePath("b.kyndb");
    ExpectFailure(RunWithPasswords({"db", "create", other, "--group", "nobodys"}), "no group nobodys");
}

TEST_F(Databases, CheckTellsWhatIsWrong)
{
    EXPECT_EQ(RunCtl({"db", "check", m_target}).code, 1) << "nothing there";
    ASSERT_EQ(CreateForAda().code, 0);
    QFile::remove(m_folder.filePath("site.kynw"));
    const CtlRun run = RunCtl({"db", "check", m_target});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.startsWith("error: ") && run.err.contains("site.kynw")) << run.err.toStdString();
}

TEST_F(Databases, NoPasswordNoDatabase)
{
    ExpectFailure(RunWithPasswords({"db", "create", m_target}, ""), "No password was given");
    EXPECT_EQ(RunWithPasswords({"db", "create", m_target}, "\n").code, 1) << "an empty one";
    EXPECT_FALSE(QFile::exists(m_target));
}

TEST_F(Databases, AccountsAreAddedListedAndTheirPasswordsChanged)
{
    ASSERT_EQ(CreateForAda().code, 0);
    CtlRun run = User({"add", "Bo", "--as", "Ada", "--callsign", "Control_2", "--allow-regrouping"},
                      "secret\nfirst\n");
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    ASSERT_EQ(User({"add", "Cy", "--as", "Ada", "--group", "Admins"}, "secret\nsecond\n").code, 0);

    run = User({"list", "--as", "Bo"}, "first\n");
    EXPECT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains("\nBo\tControl_2\tUsers\tyes\tno\n")) << run.out.toStdString();
    EXPECT_TRUE(run.out.contains("\nCy\tCy\tAdmins,Users\tno\tno\n")) << run.out.toStdString();

    EXPECT_EQ(User({"password", "Bo"}, "first\nthird\n").code, 0);
    EXPECT_EQ(User({"list", "--as", "Bo"}, "first\n").code, 1);
    EXPECT_EQ(User({"list", "--as", "Bo"}, "third\n").code, 0);
    EXPECT_EQ(User({"password", "Bo", "--as", "Cy"}, "second\nfourth\n").code, 0);
    EXPECT_EQ(User({"list", "--as", "Bo"}, "fourth\n").code, 0);
    EXPECT_EQ(RunCtl({"db", "check", m_target}).code, 0);
}

// A forgotten password, and a numbering that nobody can log on with.
TEST_F(Databases, WaysBackInAreForTheOwnerAndLeaveARecord)
{
    ASSERT_EQ(CreateForAda().code, 0);
    ASSERT_EQ(User({"add", "Bo", "--as", "Ada"}, "secret\nfirst\n").code, 0);
    EXPECT_EQ(RunCtl({"user", "recover", m_target}).out, "Administrators: Ada\n");
    ExpectFailure(User({"recover", "Cy"}, "new\n"), "Cy");
    ExpectFailure(User({"recover", "Ada"}, "\n"), "");
    for (const QString& path : {m_target, dao::WorkgroupFileFor(m_target)})
        QFile::setPermissions(path, QFile::Permissions(0x6666)); // who may write is not who owns
    QFile::setPermissions(m_folder.path(), QFile::Permissions(0x7777));
    EXPECT_TRUE(AsNobody([&] {
        try {
            dao::RecoverAccount(dao::LocationOf(m_target), "Ada", "mine", "note");
        } catch (const dao::Error& error) {
            return error.kind == dao::Kind::NotOwner;
        }
        return false;
    }));
    EXPECT_EQ(User({"list", "--as", "Ada"}, "secret\n").code, 0);

    EXPECT_EQ(User({"recover", "ADA"}, "new\n").out, "Ada has a new password; the log has a record of it\n");
    EXPECT_EQ(User({"list", "--as", "Ada"}, "secret\n").code, 1);
    const auto workspace = dao::OpenWorkspace(dao::LocationOf(m_target), "Ada", "new");
    const auto events = workspace->Database().OpenTable("event");
    EXPECT_TRUE(events->Field("desc").toString().contains("new password for ADA"));

    for (const char* key : {"subscriber_numbering", "ANN_FPP"})
        dao::RegistryTable::Store(workspace->Database(), key, "nonsense");
    const auto settings = [&](const QStringList& arguments, const QByteArray& passwords) {
        return RunWithPasswords(QStringList{"settings", arguments[0], m_target} + arguments.mid(1),
                                passwords);
    };
    EXPECT_EQ(settings({"reset", "--as", "Ada"}, "new\n").code, 2) << "says not which";
    ExpectFailure(settings({"reset", "ANN_FPP", "--as", "Bo"}, "first\n"), "Only an administrator");
    EXPECT_EQ(settings({"show", "--as", "Bo"}, "first\n").out,
              "ANN_FPP\tnonsense\nsubscriber_numbering\tnonsense\n");
    EXPECT_EQ(settings({"reset", "subscriber_numbering", "--as", "Ada"}, "new\n").out,
              "Was: subscriber_numbering\tnonsense\n");
    EXPECT_EQ(settings({"show", "--as", "Ada"}, "new\n").out, "ANN_FPP\tnonsense\n");
}

TEST_F(Databases, RefusedChangesLeaveNothingBehind)
{
    ASSERT_EQ(CreateForAda().code, 0);
    ASSERT_EQ(User({"add", "Bo", "--as", "Ada"}, "secret\nfirst\n").code, 0);
    const QByteArray before = User({"list", "--as", "Ada"}, "secret\n").out;

    ExpectFailure(User({"add", "Cy", "--as", "Ada"}, "wrong\nx\n"), "");
    ExpectFailure(User({"add", "Cy", "--as", "Bo"}, "first\nx\n"), "");
    ExpectFailure(User({"add", "bo", "--as", "Ada"}, "secret\nx\n"), "bo");
    ExpectFailure(User({"add", "Cy", "--as", "Ada", "--group", "Nobody"}, "secret\nx\n"), "Nobody");
    ExpectFailure(User({"add", "Cy", "--as", "Ada"}, "secret\n\n"), "");
    ExpectFailure(User({"add", "Cy", "--as", "Ada"}, "secret\n"), "No password was given");
    ExpectFailure(User({"password", "Cy", "--as", "Ada"}, "secret\nx\n"), "Cy");
    ExpectFailure(User({"password", "Ada", "--as", "Bo"}, "first\nx\n"), "");

    EXPECT_EQ(User({"list", "--as", "Ada"}, "secret\n").out, before);
    EXPECT_EQ(RunCtl({"db", "check", m_target}).code, 0);
}

TEST_F(Databases, PasswordsAreAskedForUnseen)
{
    TerminalRun differing({"db", "create", m_target});
    differing.Answer("New password of admin: ", "secret\n");
    differing.Answer("The same again: ", "secrte\n");
    EXPECT_EQ(differing.Finish(), 1);
    EXPECT_NE(differing.Seen().find("differ"), std::string::npos) << differing.Seen();
    EXPECT_FALSE(QFile::exists(m_target));

    TerminalRun agreeing({"db", "create", m_target});
    agreeing.Answer("New password of admin: ", "secret\n");
    agreeing.Answer("The same again: ", "secret\n");
    EXPECT_EQ(agreeing.Finish(), 0) << agreeing.Seen();
    EXPECT_EQ(agreeing.Seen().find("secret"), std::string::npos) << agreeing.Seen();

    TerminalRun interrupted({"user", "list", m_target});
    interrupted.Answer("Password of admin: ", "\x03");
    EXPECT_EQ(interrupted.Finish(), -SIGINT);
    EXPECT_TRUE(interrupted.Echoes());
}

} // namespace
