// Waiting for a server that accepts and never answers, and for a file that another program has locked.

#include "core/desktop/Waiting.h"
#include "core/desktop/WaitSign.h"
#include "core/session/DatabaseChanges.h"
#include "core/texts/StringSourceImpl.h"
#include "support/DialogDriver.h"
#include "support/FakeClock.h"
#include "support/QtPrinters.h"
#include "support/TestDatabase.h"

#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTcpServer>
#include <QVBoxLayout>
#include <deque>
#include <sqlite3.h>

using namespace std::chrono_literals;
using driver::Child;
using driver::VisibleWindow;

namespace {

class WaitingTest : public testing::Test {
protected:
    WaitingTest()
    {
        auto* content = new QWidget;
        auto* lines = new QVBoxLayout(content);
        lines->addWidget(field);
        lines->addWidget(button);
        window.setCentralWidget(content);
        window.show();
        window.activateWindow();
        field->setFocus();
        QObject::connect(button, &QPushButton::clicked, [this] { ++clicks; });
        QObject::connect(&m_turn, &QTimer::timeout, [this] { TakeStep(); });
        m_turn.start(5ms);
    }

    // Done in turn from whatever event loop runs, each once its condition holds.
    void Then(std::function<bool()> when, std::function<void()> act) { m_steps.push_back({when, act}); }
    void Then(std::function<void()> act)
    {
        Then([] { return true; }, std::move(act));
    }
    bool AllDone() const { return m_steps.empty(); }
    void RunOn()
    {
        while (!AllDone() || waiting.IsWaiting())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

    static QWidget* Sign() { return VisibleWindow("waitSign"); }
    static bool IsShown() { return Sign() != nullptr; }
    void Press(QWidget& in, Qt::Key key) const { QTest::keyClick(in.windowHandle(), key); }

    FakeClock clock;
    CStringSourceImpl strings{QStringList{}};
    Waiting waiting{strings, clock};
    QMainWindow window;
    QLineEdit* field = new QLineEdit;
    QPushButton* button = new QPushButton;
    int clicks = 0;

private:
    struct Step {
        std::function<bool()> when;
        std::function<void()> act;
    };

    void TakeStep()
    {
        if (m_steps.empty() || m_inStep || !m_steps.front().when())
            return;
        m_inStep = true;
        const Step step = m_steps.front();
        step.act();
        m_steps.pop_front();
        m_inStep = false;
    }

    std::deque<Step> m_steps;
    QTimer m_turn;
    bool m_inStep = false;
};

TEST_F(WaitingTest, GivesUpAServerThatNeverAnswersOnlyOnPurpose)
{
    const std::function<void()> waysOut[] = {
        [this] { Press(window, Qt::Key_Escape); },
        [] { driver::Click(*Sign(), "cmdGiveUp"); },
        [this] { waiting.EndSoon([this] { ++clicks; }), clock.Step(1s); },
        [this] { waiting.SetUnasked(true), clock.Step(700ms); },
    };
    for (const auto& giveUp : waysOut) {
        QTcpServer silent;
        ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
        field->clear();
        clicks = 0;
        const bool ends = &giveUp == &waysOut[2];
        Then([this] { return waiting.IsWaiting(); },
             [this] {
                 EXPECT_FALSE(IsShown());
                 clock.Step(299ms);
                 Press(window, Qt::Key_X);
             });
        Then([this] { clock.Step(1ms); });
        Then(IsShown, [this] {
            EXPECT_TRUE(Child<QLabel>(*Sign(), "lblWaiting").text().contains("127.0.0.1"));
            EXPECT_FALSE(Child<QPushButton>(*Sign(), "cmdGiveUp").isEnabled());
            for (QWidget* in : {static_cast<QWidget*>(&window), Sign()})
                for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Escape})
                    Press(*in, key);
            QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                              button->mapTo(&window, button->rect().center()));
            EXPECT_FALSE(window.close());
            EXPECT_TRUE(waiting.IsWaiting());
            clock.Step(1s);
        });
        Then([] { return Child<QPushButton>(*Sign(), "cmdGiveUp").isEnabled(); }, giveUp);
        try {
            dao::OpenWorkspace(
                {QString("postgresql://127.0.0.1:%1/kyn?sslmode=disable").arg(silent.serverPort()), {}},
                "anna", "secret");
            ADD_FAILURE() << "nobody answered";
        } catch (const dao::Error& failure) {
            EXPECT_EQ(failure.kind, dao::Kind::GivenUp) << failure.what();
        }
        RunOn();
        waiting.SetUnasked(false);
        EXPECT_FALSE(IsShown());
        EXPECT_EQ(field->text(), "x"); // typed once, for the window that waited
        EXPECT_EQ(clicks, ends ? 1 : 0);
        Press(window, Qt::Key_Y);
        EXPECT_EQ(field->text(), "xy");
    }
}

TEST_F(WaitingTest, ShowsThatAPortIsWaitedFor)
{
    int givenUp = 0;
    auto sign = waiting.ShowFor("tcp:radio:4001", [&] { ++givenUp; });
    ASSERT_TRUE(IsShown());
    EXPECT_TRUE(Child<QLabel>(*Sign(), "lblWaiting").text().contains("tcp:radio:4001"));
    Press(window, Qt::Key_Escape);
    EXPECT_EQ(givenUp, 0);
    clock.Step(1s);
    Press(window, Qt::Key_Escape);
    Press(window, Qt::Key_Escape);
    EXPECT_EQ(givenUp, 1);
    EXPECT_FALSE(window.close());
    sign.reset();
    EXPECT_TRUE(QTest::qWaitFor([] { return !IsShown(); }));
    EXPECT_TRUE(window.close());
}

TEST_F(WaitingTest, KeepsEverythingElseFromALockedFile)
{
    if (TestServer::IsWanted())
        GTEST_SKIP() << "about files";
    const TestDatabase database;
    dao::OpenOptions options = TestDatabase::Options();
    options.busyTimeout = 1min;
    const auto workspace = database.Open(TestDatabase::userName, TestDatabase::password, options);
    DatabaseChanges changes;
    QObject::connect(&waiting, &Waiting::WaitingChanged, &changes, &DatabaseChanges::SetBusy);
    int told = 0;
    QObject::connect(&changes, &DatabaseChanges::Changed, [&] {
        EXPECT_NO_THROW(workspace->Database().OpenSnapshot("address"));
        ++told;
    });
    QPushButton call;
    call.setWindowFlag(Qt::WindowStaysOnTopHint);
    int answered = 0;
    QObject::connect(&call, &QPushButton::clicked, [&] { ++answered; });

    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(database.location.database.toUtf8(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    clock.Step(1s);
    Then([&] { return waiting.IsWaiting(); },
         [&] {
             EXPECT_THROW(
                 {
                     try {
                         workspace->Database().OpenSnapshot("address");
                     } catch (const dao::Error& failure) {
                         EXPECT_EQ(failure.kind, dao::Kind::Busy);
                         throw;
                     }
                 },
                 dao::Error);
             changes.Tell("address");
             changes.MayHaveChanged();
             EXPECT_EQ(told, 0);
             clock.Step(300ms);
         });
    Then(IsShown, [&] {
        EXPECT_TRUE(Child<QLabel>(*Sign(), "lblWaiting").text().contains(database.location.database));
        call.show();
        Press(call, Qt::Key_Space);
        EXPECT_EQ(answered, 1);
        sqlite3_close(other);
    });
    EXPECT_TRUE(workspace->Database().OpenSnapshot("address")->Eof());
    EXPECT_EQ(told, 0);
    RunOn();
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(IsShown());
}

} // namespace
