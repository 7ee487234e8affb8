// The line on a thread of its own: a simulated radio at the other end of the real wire, in virtual time.
// Radio, clock and wire belong to the line's thread; the test's own is that of the windows, which are blocked
// as long as it handles no events.

#include "RadioEnd.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSourceImpl.h"
#include "radio/base/TextIds.h"
#include "radio/line/SerialMap27Control.h"
#include "support/QtPrinters.h"

#include <QEventLoop>
#include <QTcpServer>
#include <QTimer>

namespace {

constexpr int Minute = 60000;

class LineThread : public testing::Test {
protected:
    LineThread()
    {
        control = std::make_unique<SerialMap27Control>(
            strings, radio.clock, SerialMap27Control::Place::OwnThread,
            [this](const QString& name, int bitsPerSecond) { return makePort(name, bitsPerSecond); });
        QObject::connect(control.get(), &Map27Control::StatusReceived, control.get(),
                         [this](int, int ident, int status) {
                             EXPECT_FALSE(operating);
                             received.append(Shown(ident, status));
                             if (onStatus)
                                 onStatus();
                         });
        QObject::connect(control.get(), &Map27Control::LinkChanged, control.get(),
                         [this](const LinkStatus& link) { states.push_back(link.state); });
    }

    static QString Shown(int ident, int status) { return QStringLiteral("%1:%2").arg(ident).arg(status); }

    // The windows handle nothing meanwhile.
    void Pass(
        int milliseconds, const std::function<void()>& first = [] {})
    {
        control->OnTime(first);
        for (int passed = 0; passed < milliseconds; passed += 10)
            control->OnTime([this] {
                radio.clock.Step(std::chrono::milliseconds(10));
                radio.radio.Step();
            });
    }
    bool PassUntil(const std::function<bool()>& condition, int milliseconds = Minute)
    {
        for (int passed = 0; passed < milliseconds && !condition(); passed += 10) {
            Pass(10);
            QCoreApplication::processEvents();
        }
        return condition();
    }
    void Connect()
    {
        operating = true;
        control->OpenLink();
        operating = false;
        ASSERT_TRUE(PassUntil([this] { return control->Link().state == LinkStatus::State::Ready; }));
        ASSERT_TRUE(PassUntil([this] { return control->RadioIdent() != 0; }));
        Pass(1000);
        QCoreApplication::processEvents();
    }
    // From the air.
    void Bring(int ident, int status)
    {
        radio.radio.Perform(
            sim::StatusAction{{0, static_cast<std::uint16_t>(ident)}, static_cast<std::uint8_t>(status)});
        expected.append(Shown(ident, status));
    }
    QString Raised(const std::function<void()>& operation)
    {
        try {
            operation();
        } catch (const Error& error) {
            return error.Description();
        }
        return {};
    }

    CStringSourceImpl source{QStringList{}};
    const IStringSource& strings = source.CreateStringSource(QStringLiteral("CKYN"));
    RadioEnd radio;
    std::function<std::unique_ptr<RadioPort>(const QString&, int)> makePort = radio.radio.Ports();
    std::unique_ptr<SerialMap27Control> control;
    std::function<void()> onStatus;
    QStringList expected;
    QStringList received;
    std::vector<LinkStatus::State> states;
    bool operating = false;
};

TEST_F(LineThread, BlockedWindowsLoseNothingAndNoLink)
{
    for (int round = 0; round < 2; ++round) {
        Connect();
        states.clear();
        std::size_t heldBack = 0;
        for (int i = 0; i < 300; ++i)
            Pass(30, [&] { Bring(2 + i / 32, i % 32); });
        Pass(Minute, [&] { heldBack = radio.radio.radio.Waiting(); });
        EXPECT_GT(heldBack, 0U) << "the radio keeps what would wait in vain";
        EXPECT_LT(heldBack, 60U);
        EXPECT_TRUE(received.isEmpty());
        EXPECT_TRUE(PassUntil([&] { return received.size() == expected.size(); }));
        EXPECT_EQ(received, expected);
        EXPECT_TRUE(states.empty()) << "the link was " << static_cast<int>(states.front());
        control->OnTime([&] { EXPECT_EQ(radio.radio.radio.LinkCounters().retransmissions, 0U); });

        // What waits does not outlive its opening.
        for (int i = 0; i < 200; ++i)
            Pass(30, [&] { Bring(2, i % 32); });
        control->CloseLink();
        expected.clear();
        received.clear();
    }
}

TEST_F(LineThread, AReceiverMayWaitWhileTheNextOnesArriveOrCloseTheLine)
{
    Connect();
    QEventLoop box;
    onStatus = [&] {
        if (received.size() == 1)
            box.exec();
        if (received.size() == 3)
            box.quit();
        if (received.size() == 4)
            control->CloseLink();
    };
    for (int status = 1; status <= 6; ++status)
        Pass(100, [&] { Bring(9, status); });
    PassUntil([] { return false; }, 1000);
    EXPECT_EQ(received, expected.mid(0, 4));
    EXPECT_EQ(control->Link().state, LinkStatus::State::Closed);
}

TEST_F(LineThread, RefusalsAreRaisedWhereTheOperationWasAsked)
{
    const auto send = [&](int ident) {
        return Raised([&] { control->SendStatusMessage(0, static_cast<qint16>(ident), 5); });
    };
    EXPECT_EQ(send(2), strings.LoadString(RadioText::NotConnected));
    operating = true;
    control->OpenLink();
    EXPECT_EQ(send(2), strings.LoadString(RadioText::LinkNotReady));
    Connect();
    EXPECT_EQ(send(0), FormatMessage(strings, RadioText::AddressNotSendable, {QStringLiteral("/0000000")}));
    EXPECT_EQ(send(2), QString());
    EXPECT_EQ(send(2), strings.LoadString(RadioText::RadioBusy));
    EXPECT_EQ(Raised([&] { control->CancelTransaction(); }), QString());
}

TEST_F(LineThread, TheHangUpStillGoesOutWhenTheProgramEnds)
{
    Connect();
    Pass(500, [&] { radio.radio.Perform(sim::CallAction{.from = {0, 9}, .rings = false}); });
    control->OnTime([&] { EXPECT_TRUE(radio.radio.radio.Condition().offHook); });
    control->ClearCall();
    control.reset();
    EXPECT_FALSE(radio.radio.IsOpen());
    EXPECT_FALSE(radio.radio.offHookAtClose);
}

// Neither opens nor fails.
struct SilentPort : RadioPort {
    void Open() override {}
    void Close() override {}
    bool IsOpen() const override { return false; }
    void Write(const QByteArray&) override {}
};

TEST_F(LineThread, WaitingForAPortHandlesEventsAndCanBeGivenUp)
{
    makePort = [](const QString&, int) { return std::make_unique<SilentPort>(); };
    control->SetCommPort(QStringLiteral("tcp://far:1"));
    const QString givenUp =
        FormatMessage(strings, RadioText::OpeningGivenUp, {QStringLiteral("tcp://far:1")});
    QTimer::singleShot(0, control.get(), [&] { control->CloseLink(); });
    EXPECT_EQ(Raised([&] { control->OpenLink(); }), givenUp);

    QString shown;
    std::weak_ptr<void> sign;
    control->SetWaitSign([&](const QString& port, const std::function<void()>& giveUp) {
        shown = port;
        auto window = std::make_shared<QTimer>();
        QObject::connect(window.get(), &QTimer::timeout, window.get(), giveUp);
        window->start(0);
        sign = window;
        return window;
    });
    EXPECT_EQ(Raised([&] { control->OpenLink(); }), givenUp);
    EXPECT_EQ(shown, QStringLiteral("tcp://far:1"));
    EXPECT_TRUE(sign.expired());

    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    makePort = &MakeRadioPort;
    const QString address = QStringLiteral("tcp://127.0.0.1:%1").arg(server.serverPort());
    control->SetCommPort(address);
    EXPECT_EQ(Raised([&] { control->OpenLink(); }), QString());
    EXPECT_EQ(control->Link().state, LinkStatus::State::Connecting);
    control->CloseLink();
    server.close();
    EXPECT_EQ(Raised([&] { control->OpenLink(); }),
              FormatMessage(strings, RadioText::PortHostRefused, {address}));
}

TEST(LineCallsTest, WhatComesTooLateIsDroppedUnlessItIsKept)
{
    QString done;
    LineCalls calls([] {});
    EXPECT_FALSE(calls.Await([&] { done += QLatin1Char('d'); }, std::chrono::milliseconds(0),
                             LineCalls::Late::Dropped));
    EXPECT_FALSE(
        calls.Await([&] { done += QLatin1Char('k'); }, std::chrono::milliseconds(0), LineCalls::Late::Kept));
    calls.Leave([&] { done += QLatin1Char('l'); });
    calls.RunAll();
    EXPECT_EQ(done, QStringLiteral("kl"));
}

} // namespace
