// What this library reads and writes in the open database: profile, registry, log records.

#include "core/base/FileLock.h"
#include "core/base/ProgramLog.h"
#include "core/eventlog/EventLog.h"
#include "core/session/Registry.h"
#include "core/session/UserProfile.h"
#include "core/texts/StringSourceImpl.h"
#include "support/Files.h"
#include "support/ScriptedPrompt.h"
#include "support/TestDatabase.h"

#include <QDir>

namespace {

const QString retryQuestion = "Can't read or update user profile. Retry?";

class RecordsTest : public testing::Test {
protected:
    // Makes the next uses of the session fail.
    void FailNext(int uses)
    {
        session.onUse = [this, uses]() mutable {
            if (uses-- > 0)
                throw dao::Error(dao::Kind::Locked, {"the file"});
            session.onUse = nullptr;
        };
    }

    bool LoggedOnFlag()
    {
        const auto workspace = database.Open();
        const auto rows = workspace->Database().OpenTable("user_profile");
        rows->SetIndex("i_user");
        rows->Seek(QString("admin"));
        return rows->Field("logged_on").toBool();
    }

    CStringSourceImpl strings{QStringList{}};
    TestDatabase database;
    TestSession session{database};
    ScriptedPrompt prompt;
};

TEST_F(RecordsTest, ProfileIsMarkedAndUnmarkedOnce)
{
    UserProfile profile(session, prompt, strings);
    EXPECT_FALSE(profile.AllowDynamicRegrouping());
    profile.ReadUserProfile();
    EXPECT_TRUE(profile.Marker().has_value());
    EXPECT_TRUE(LoggedOnFlag());

    profile.ClearLoggedOnFlag();
    EXPECT_FALSE(profile.Marker().has_value());
    EXPECT_FALSE(LoggedOnFlag());
    FailNext(1); // a second call touches nothing
    profile.ClearLoggedOnFlag();
    EXPECT_TRUE(session.onUse);
}

TEST_F(RecordsTest, TheRightComesFromTheRowAndNotFromTheOperatorBefore)
{
    database.AddOperator("guest", "guest");
    const auto rows = session.Database().OpenTable("user_profile");
    rows->SetIndex("i_user");
    rows->Seek(QString("admin"));
    rows->Edit();
    rows->SetField("allow_dr", true);
    rows->Update();

    UserProfile profile(session, prompt, strings);
    profile.ReadUserProfile();
    EXPECT_TRUE(profile.AllowDynamicRegrouping());
    profile.ClearLoggedOnFlag();

    session.logonName = session.logonPassword = "guest";
    session.Logon(true, true);
    profile.ReadUserProfile(); // an account without a profile
    EXPECT_FALSE(profile.Marker().has_value());
    EXPECT_FALSE(profile.AllowDynamicRegrouping());
    profile.ClearLoggedOnFlag();
}

// The directory may say something else when the record is read.
TEST_F(RecordsTest, LogRecordsKeepNumberAndWay)
{
    const auto entry = session.Database().OpenTable("address");
    entry->AddNew();
    entry->SetField("callsign", "Unit20");
    entry->SetField("IDENT", "2020");
    entry->SetField("Type", 1);
    entry->Update();
    session.Memory().ReadAgain();
    EventLog log(session, strings, {}, Lane::Kind::Callers);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    log.AppendLogRecord(now, EventType::Text, "in", "UNIT20", "2000", MessageWay::In);
    log.AppendLogRecord(now, EventType::Text, "out", "2000", "Unit20", MessageWay::Out);
    log.AppendLogRecord(now, EventType::Text, "other", "3000", "2000");
    QStringList rows;
    const auto events = session.Database().OpenSnapshot(
        "select \"desc\", from_number, to_number, direction from event order by event_id");
    for (; !events->Eof(); events->MoveNext())
        rows.append(
            QStringList{events->TextAt(0), events->TextAt(1), events->TextAt(2), events->TextAt(3)}.join(
                '|'));
    EXPECT_EQ(rows, QStringList({"in|2020||1", "out||2020|2", "other|||"}));
}

TEST_F(RecordsTest, ProfileOffersRetries)
{
    UserProfile profile(session, prompt, strings);
    FailNext(2);
    prompt.ExpectQuestion(retryQuestion, true);
    prompt.ExpectQuestion(retryQuestion, true);
    profile.ReadUserProfile();
    EXPECT_TRUE(profile.Marker().has_value());

    FailNext(1);
    prompt.ExpectQuestion(retryQuestion, false);
    profile.ClearLoggedOnFlag();
    EXPECT_TRUE(profile.Marker().has_value()) << "still to be cleared";
    session.onUse = nullptr;
    profile.ClearLoggedOnFlag();
    EXPECT_FALSE(LoggedOnFlag());

    FailNext(1);
    prompt.ExpectQuestion(retryQuestion, false);
    profile.ReadUserProfile();
    EXPECT_FALSE(profile.Marker().has_value());
}

TEST_F(RecordsTest, RegistryAddsEditsAndNeverFails)
{
    EXPECT_EQ(RegistryGet(session, "ANN_FPP", "10"), "10");
    RegistrySet(session, "ANN_FPP", "11");
    RegistrySet(session, "ANN_FPP", "12");
    EXPECT_EQ(RegistryGet(session, "ANN_FPP", "10"), "12");
    RegistrySet(session, "ANN_FPP", "");
    EXPECT_EQ(RegistryGet(session, "ANN_FPP", "10"), "");

    session.Logoff();
    RegistrySet(session, "ANN_FPP", "13");
    EXPECT_EQ(RegistryGet(session, "ANN_FPP", "10"), "10");
}

class EventLogTest : public RecordsTest {
protected:
    // The only record of the last day that the station's address takes part in.
    std::unique_ptr<dao::Recordset> Stored()
    {
        const auto query = session.Database().QueryDef("get_events");
        query->SetParameter("MyAdr", "200");
        query->SetParameter("MyCallsign", "Base");
        query->SetParameter("TimeUnit", "d");
        query->SetParameter("TimeVal", 1);
        return query->OpenSnapshot();
    }

    EventLog log{session, strings};
    const QDateTime time = QDateTime::currentDateTime().addSecs(-60);
};

TEST_F(EventLogTest, StoresTheRecordAsItIs)
{
    log.AppendLogRecord(time, EventType::Text,
                        QString::fromUtf8("Gr\xC3\xBC\xC3\x9F"
                                          "e; 'x'"),
                        "Car 1", "200");
    const auto record = Stored();
    ASSERT_FALSE(record->Eof());
    EXPECT_EQ(record->Field("time_stamp").toDateTime(), time);
    EXPECT_EQ(record->Field("event_type").toInt(), 2);
    EXPECT_EQ(record->Field("Desc").toString(), QString::fromUtf8("Gr\xC3\xBC\xC3\x9F"
                                                                  "e; 'x'"));
    EXPECT_EQ(record->Field("from_address").toString(), "Car 1");
    EXPECT_EQ(record->Field("to_address").toString(), "200");
}

TEST_F(EventLogTest, CutsTheDescriptionToItsFieldWithoutHalfCharacters)
{
    const int size = session.Database().FieldSize("event", "desc");
    ASSERT_GT(size, 0);
    const QString picture = QString::fromUtf8("\xF0\x9F\x93\xBB");
    log.AppendLogRecord(time, EventType::Text, picture.repeated(size + 1), "Car 1", "200");
    EXPECT_EQ(Stored()->Field("Desc").toString(), picture.repeated(size));
}

TEST_F(EventLogTest, WhatCannotBeStoredWaitsAndIsToldOnce)
{
    QStringList told;
    QObject::connect(&log, &EventLog::Delayed, [&](const QString& text) { told.append(text); });
    FailNext(100);
    const QString first = log.AppendLogRecord(time, EventType::Call, "1", "Car 1", "200");
    const QString second = log.AppendLogRecord(time, EventType::Call, "2", "Car 1", "200");
    EXPECT_EQ(told,
              QStringList(
                  "the file is locked by another program or workstation. Nothing is lost "
                  "and nothing has to be repeated: log records are kept on this computer and stored as soon "
                  "as the cause is gone."));
    EXPECT_EQ(log.Waiting(), 2);
    EXPECT_FALSE(log.IsSafe(first));
    session.onUse = nullptr;
    log.WriteWaiting();
    EXPECT_EQ(log.Waiting(), 0);
    EXPECT_TRUE(log.IsSafe(first) && log.IsSafe(second));
    EXPECT_EQ(Stored()->Field("Desc").toString(), "1");
}

// What another console of the same user writes, and one that cannot write.
TEST(ProgramLogTest, IsBoundedAndNobodyElses)
{
    QTemporaryDir folder;
    const QString path = folder.filePath("made/here");
    QDir().mkpath(path);
    FileLock another(path + "/veltorkyn.log.lock");
    ASSERT_EQ(another.TryLock(), FileLock::Result::Locked);
    ProgramLog::Open(path);
    EXPECT_EQ(ProgramLog::FileName(), path + "/veltorkyn-2.log");
    const QString line(1000, u'x');
    for (int i = 0; i < 7000; ++i)
        ProgramLog::Write(QString("%1 %2").arg(i).arg(line));
    const QFileInfoList files = QDir(path).entryInfoList({"*-2.log", "*-2.log.?"}, QDir::Files, QDir::Name);
    EXPECT_EQ(files.size(), ProgramLog::OlderFiles + 1);
    for (const QFileInfo& file : files)
        EXPECT_LE(file.size(), ProgramLog::LargestFile) << file.fileName().toStdString();
    EXPECT_TRUE(ReadFile(ProgramLog::FileName()).contains(" 6999 xxx"));
    EXPECT_FALSE(ReadFile(files.last().filePath()).contains(" 0 xxx"));

    WriteFile(folder.filePath("a file"), "");
    ProgramLog::Open(folder.filePath("a file/below"));
    ProgramLog::Write("nowhere"); // to standard error
    ProgramLog::Open(path);
}

} // namespace
