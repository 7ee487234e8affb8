// What other consoles do to the database while this one works, and a server that goes and comes back.

#include "MainWindowStack.h"
#include "core/attention/AttentionBook.h"
#include "core/texts/TextIds.h"

#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTreeView>

namespace {

class SharedDatabase : public testing::Test {
protected:
    SharedDatabase()
    {
        stack.Open();
        stack.LogOn();
        QCoreApplication::processEvents(); // what the logon has still to read
        other = stack.database.Open();
    }

    // A server tells; files are read again when the window is activated.
    void Tell()
    {
        if (!TestServer::IsWanted()) {
            QEvent activation(QEvent::ActivationChange);
            QCoreApplication::sendEvent(&stack.Window(), &activation);
        }
    }
    void AddTalkgroup(const QString& callsign, const QString& ident)
    {
        const auto directory = other->Database().OpenTable("address");
        directory->AddNew();
        directory->SetField("callsign", callsign);
        directory->SetField("IDENT", ident);
        directory->SetField("Type", 2);
        directory->Update();
    }
    QModelIndex Group(const QString& callsign)
    {
        const QAbstractItemModel& model = *Tree().model();
        return model
            .match(model.index(0, 0), Qt::DisplayRole, callsign, 1, Qt::MatchRecursive | Qt::MatchContains)
            .value(0);
    }
    QTreeView& Tree() { return stack.Find<QTreeView>("tvGroups"); }

    MainWindowStack stack;
    std::unique_ptr<dao::Workspace> other;
};

TEST_F(SharedDatabase, WhatOthersChangeShowsAndTheOperatorsWorkStays)
{
    AddTalkgroup("Night", "200200900");
    Tell();
    ASSERT_TRUE(QTest::qWaitFor([&] { return Group("Night").isValid(); }, 5000));
    Tree().setCurrentIndex(Group("Night"));
    auto& status = stack.Find<QComboBox>("cmbStatusMessage");
    status.setCurrentIndex(status.findData(7));
    stack.Address().setEditText("2002");

    AddTalkgroup("Alarm", "200200901");
    const auto texts = other->Database().OpenTable("status");
    texts->Seek(7);
    texts->Edit();
    texts->SetField("out_desc", "Hold on");
    texts->Update();
    Tell();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return Group("Alarm").isValid() && status.currentText().contains("Hold on"); }, 5000))
        << status.currentText().toStdString();
    EXPECT_EQ(Tree().currentIndex(), Group("Night"));
    EXPECT_EQ(status.currentData().toInt(), 7);
    EXPECT_EQ(stack.Address().currentText(), "2002");
}

// Another console of the database, without its window.
TEST_F(SharedDatabase, AnEmergencyTakenElsewhereIsShownAndSilentWithinASecond)
{
    stack.database.AddOperator("olga", "olga");
    TestSession session(stack.database);
    session.Logoff();
    session.logonName = session.logonPassword = "olga";
    session.Logon(true, true);
    const QTemporaryDir folder;
    EventLog log(session, stack.strings, folder.path());
    FakeClock clock;
    AttentionBook book(session, log, clock, stack.strings);
    const auto text = [&] { return stack.Find<QLabel>("attentionText").text(); };
    const auto learns = [&](const std::function<bool()>& of) {
        return QTest::qWaitFor(
            [&] {
                session.Changes().MayHaveChanged();
                return of();
            },
            1100); // files are looked at once a second
    };
    Q_EMIT stack.control->IncomingCall(165, 0, 0, 2);
    ASSERT_TRUE(learns([&] { return book.Entries().size() == 1; }));
    EXPECT_TRUE(stack.Find<QWidget>("cmdSilence").isVisible());
    book.Take(book.Entries().front());
    EXPECT_TRUE(learns([&] { return text().contains("taken by olga at "); })) << text().toStdString();
    EXPECT_FALSE(stack.Find<QWidget>("cmdSilence").isVisible());

    // Both at once: the earlier has it.
    Q_EMIT stack.control->IncomingCall(165, 0, 0, 4);
    ASSERT_TRUE(learns([&] { return book.Entries().size() == 2; }));
    stack.clock.Step(std::chrono::seconds(2));
    stack.Click("cmdTake");
    book.Take(*std::find_if(book.Entries().begin(), book.Entries().end(),
                            [](const auto& entry) { return entry.caller == "Unit22"; }));
    EXPECT_TRUE(learns([&] { return stack.Find<QLabel>("failedText").text().contains("olga"); }));
    stack.executive.ResetTran();
}

// Not at each activation: the sign of a regroup and the place in a list stay while nothing was changed
// elsewhere.
TEST_F(SharedDatabase, FilesAreReadAgainOnlyWhenOthersChangedThem)
{
    if (TestServer::IsWanted())
        GTEST_SKIP() << "a server tells";
    int reads = 0;
    QObject::connect(Tree().model(), &QAbstractItemModel::rowsInserted, [&] { ++reads; });
    AddTalkgroup("Night", "200200900");
    Tell();
    EXPECT_NE(std::exchange(reads, 0), 0);
    stack.AddEvent(stack.clock.Now(), 1, "x", "A", "B");
    const auto log = other->Database().OpenTable("event", true);
    log->AddNew();
    log->SetField("time_stamp", stack.clock.Now());
    log->SetField("event_type", 1);
    log->Update();
    stack.AddRow("address", {{"callsign", "Own"}, {"IDENT", "200200902"}, {"Type", 2}});
    Tell();
    EXPECT_EQ(reads, 0);

    // What cannot be read is due until it could be.
    AddTalkgroup("Alarm", "200200901");
    int uses = 0;
    stack.session.onUse = [&] {
        if (++uses > 1) // the look itself
            throw Error(ErrorCode::General, "locked");
    };
    Tell();
    stack.session.onUse = nullptr;
    EXPECT_FALSE(Group("Alarm").isValid());
    Tell();
    EXPECT_TRUE(Group("Alarm").isValid());
}

class ServerStrip : public SharedDatabase {};

TEST_F(ServerStrip, TellsThatTheServerIsAwayAndWhatWaits)
{
    if (!TestServer::IsWanted())
        GTEST_SKIP() << "needs a server";
    auto& row = stack.Find<QWidget>("databaseRow");
    EXPECT_TRUE(row.isHidden());
    TestServer::Get().StopAtOnce();
    EXPECT_TRUE(QTest::qWaitFor([&] { return row.isVisible(); }, 5000));
    QString cause;
    const QObject context; // the log outlives the test
    QObject::connect(&stack.eventLog, &EventLog::WaitingChanged, &context, [&] {
        if (std::exchange(cause, stack.eventLog.Cause()).isEmpty() && !cause.isEmpty())
            stack.prompt.ExpectWarning(cause + ' ' + stack.Text(CoreText::RecordsKept));
    });
    for (int i = 0; i < 2; ++i)
        stack.eventLog.AppendLogRecord(stack.clock.Now(), EventType::Text, "x", "A", "B");
    EXPECT_EQ(stack.Find<QLabel>("databaseText").text(),
              "The database server does not answer. Trying again... Log records waiting to be stored: 2");
    TestServer::Get().Start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return row.isHidden(); }, 20000));
    EXPECT_TRUE(stack.Window().LoggedOn());
    EXPECT_EQ(stack.eventLog.Waiting(), 0);
}

} // namespace
