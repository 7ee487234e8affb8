// Backups of a database of files; those of a server are in ctl/ServerCopyTest.

#include "dao/Backup.h"
#include "DaoFixture.h"
#include "dao/Maintenance.h"
#include "support/OtherUser.h"
#include <QDir>
#include <sys/mount.h>
#include <sys/stat.h>

using namespace dao;

class BackupTest : public DaoTest {
protected:
    void SetUp() override { QDir(m_folder.path()).mkdir("new"); }
    QStringList Entries() const
    {
        return QDir(m_backups).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    std::optional<Kind> Make(int day = 0) const
    {
        return KindOf([&] { MakeBackupOfFiles(m_location, m_backups, Time.addDays(day)); });
    }
    // Of the first generation, into a folder that is there.
    std::optional<Kind> Restore(const char* password = "secret") const
    {
        return KindOf([&] { RestoreBackup(m_backups + FirstName, m_restored, "Boss", password); });
    }

    static inline const QDateTime Time{QDate(2026, 11, 23), QTime(16, 30), Qt::UTC};
    static inline const QString FirstName = "/fleet-20261123T163000Z";
    const QString m_backups = m_folder.filePath("backups");
    const Location m_restored = LocationOf(m_folder.filePath("new/restored.kyndb"));
};

TEST_F(BackupTest, EachIsAWholeDatabaseOfItsMoment)
{
    Add("status", {"status_code"}, {{7}});
    const BackupReport report = MakeBackupOfFiles(m_location, m_backups, Time);
    EXPECT_EQ(report.generation, m_backups + FirstName);
    EXPECT_EQ(Make(), Kind::FileExists);
    Add("status", {"status_code"}, {{8}});
    EXPECT_EQ(Make(-1), std::nullopt);
    QDir().mkpath(m_backups + "/fleet-2-20261123T163000Z"); // of another database
    QStringList times;
    for (const Generation& generation : GenerationsIn(m_backups, m_location))
        times.append(generation.time.toString(Qt::ISODate));
    EXPECT_EQ(times, QStringList({"2026-11-22T16:30:00Z", "2026-11-23T16:30:00Z"}));

    EXPECT_EQ(Restore("wrong"), Kind::WrongPassword);
    EXPECT_FALSE(QFile::exists(m_restored.database) || QFile::exists(m_restored.workgroup));
    // From a medium that cannot be written to, by somebody who is no better than others.
    const QString open = m_restored.database.section('/', 0, -2);
    chmod(m_folder.path().toUtf8(), 0755);
    chmod(m_backups.toUtf8(), 0755);
    chmod(open.toUtf8(), 0777);
    for (const char* file : {"/fleet.kyndb", "/fleet.kynw"})
        chmod((report.generation + file).toUtf8(), 0444);
    chmod(report.generation.toUtf8(), 0555);
    EXPECT_TRUE(AsNobody([&] { return Restore() == std::nullopt; }));
    chmod(report.generation.toUtf8(), 0700);
    EXPECT_EQ(Restore(), Kind::FileExists);
    m_location = m_restored;
    m_workspace = Open();
    EXPECT_EQ(Sql("status", "status_code"), QStringList({"7"}));
    EXPECT_TRUE(CheckDatabase(m_restored).isEmpty());
}

TEST_F(BackupTest, OneThatFailsLeavesNothingAndKeepsTheOthers)
{
    ASSERT_EQ(Make(), std::nullopt);
    for (const QString& path : {m_folder.path(), m_location.database, m_location.workgroup})
        chmod(path.toUtf8(), 0777);
    chmod(m_backups.toUtf8(), 0555);
    EXPECT_TRUE(AsNobody([&] { return Make(1) == Kind::CannotCreate; }));
    chmod(m_backups.toUtf8(), 0700);
    EXPECT_EQ(Entries().size(), 1);
    EXPECT_EQ(KindOf([&] { MakeBackupOfFiles(m_location, m_location.database + "/x", Time); }),
              Kind::CannotCreate);

    QFile file(m_backups + FirstName + "/fleet.kyndb");
    ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.seek(4096) && file.write(QByteArray(8192, 'x')) > 0);
    file.close();
    EXPECT_EQ(Restore(), Kind::Damaged);
    EXPECT_FALSE(QFile::exists(m_restored.database) || QFile::exists(m_restored.workgroup));

    if (mount("tmpfs", m_backups.toUtf8(), "tmpfs", 0, "size=128k") != 0)
        GTEST_SKIP() << "a small disk needs root";
    const auto failure = Make(1);
    const QStringList left = Entries();
    umount(m_backups.toUtf8());
    EXPECT_EQ(failure, Kind::DiskFull);
    EXPECT_EQ(left, QStringList());
}
