#include "core/backup/DailyBackup.h"
#include "core/settings/Settings.h"
#include "core/texts/StringSourceImpl.h"
#include "dao/Backup.h"
#include "support/FakeClock.h"
#include "support/TestDatabase.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>
#include <mutex>

namespace {

using namespace std::chrono_literals;

class DailyBackupTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (TestServer::IsWanted())
            GTEST_SKIP() << "for files";
        QDir().mkpath(m_folder);
        m_settings.Write(DailyBackup::Section, DailyBackup::FolderKey, m_folder);
    }

    void Step(std::chrono::milliseconds time)
    {
        m_clock.Step(time);
        m_backup.Look();
    }
    QStringList Days() const
    {
        QStringList days;
        for (const dao::Generation& generation : dao::GenerationsIn(m_folder, m_database.location))
            days.append(QString::number(FakeClock().Now().daysTo(generation.time)));
        return days;
    }

    TestDatabase m_database;
    QTemporaryDir m_home;
    const QString m_folder = m_home.filePath("other disk");
    const CStringSourceImpl m_strings{QStringList{}};
    Settings m_settings{m_home.filePath("console.ini"), m_strings};
    FakeClock m_clock;
    DailyBackup m_backup{[this] { return m_database.location; }, m_settings, m_strings, m_clock,
                         Lane::Kind::Callers};
    QSignalSpy m_failed{&m_backup, &DailyBackup::Failed};
};

TEST_F(DailyBackupTest, OneADayOfWhichTheNewestAndTheLastDaysAreKept)
{
    m_settings.Write(DailyBackup::Section, DailyBackup::NewestKey, "2");
    m_settings.Write(DailyBackup::Section, DailyBackup::DaysKey, "3");
    Step(24h);
    EXPECT_EQ(Days(), QStringList()) << "nobody is logged on";
    m_backup.Begin();
    Step(23h);
    EXPECT_EQ(Days(), QStringList({"1"}));
    for (int day = 0; day < 5; ++day)
        Step(24h + 1min);
    EXPECT_EQ(Days(), QStringList({"5", "6", "7"}));
    Step(24h * 30); // a long leave
    EXPECT_EQ(Days(), QStringList({"7", "37"}));
    m_backup.End();
    Step(48h);
    EXPECT_EQ(Days().size(), 2);
    EXPECT_EQ(m_failed.size(), 0);
}

TEST_F(DailyBackupTest, AFailureIsToldOnceADayAndTriedAgainSoon)
{
    QDir(m_folder).removeRecursively();
    m_backup.Begin();
    ASSERT_EQ(m_failed.size(), 1);
    EXPECT_TRUE(m_failed[0][0].toString().contains(m_folder + " today: The folder is not there"));
    EXPECT_FALSE(QDir(m_folder).exists()) << "the other disk's place was filled";
    Step(11min);
    EXPECT_EQ(m_failed.size(), 1);
    QDir().mkpath(m_folder);
    Step(11min);
    EXPECT_EQ(Days(), QStringList({"0"}));
    QDir(m_folder).removeRecursively();
    Step(25h);
    EXPECT_EQ(m_failed.size(), 2);
}

} // namespace
