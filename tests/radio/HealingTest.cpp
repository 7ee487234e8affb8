// The link recovers by itself: what the operator is told, how soon, and that nothing is left behind.

#include "RadioStack.h"
#include "core/base/Clock.h"
#include "core/texts/FormatMessage.h"
#include "radio/base/TextIds.h"
#include "radio/line/SerialRadioPort.h"
#include "simulator/program/Program.h"

#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

class Healing : public testing::Test {
protected:
    void SetUp() override
    {
        QObject::connect(&stack.executive, &Map27Executive::LinkChanged, &stack.executive,
                         [this](const LinkStatus& changed) { status = changed; });
        QObject::connect(stack.control, &Map27Control::NumberingReceived, stack.control,
                         [this] { ++numberings; });
        stack.LogOn();
    }

    bool Runs(LinkStatus::State state, int milliseconds)
    {
        return stack.RunUntil([&] { return status.state == state; }, milliseconds);
    }
    static QByteArray Nothing(const QByteArray&) { return {}; }

    RadioStack stack;
    LinkStatus status;
    int numberings = 0;
};

TEST_F(Healing, ARadioThatFallsSilentIsNoticedThoughNobodySends)
{
    for (int offset : {0, 3700, 7900}) {
        stack.Run(offset);
        stack.radio.instead = Nothing;
        EXPECT_TRUE(Runs(LinkStatus::State::Silent, 15000)) << offset;
        EXPECT_EQ(status.text, FormatMessage(stack.strings, RadioText::LinkOwes, {QStringLiteral("COM2")}));
        stack.radio.instead = {};
        EXPECT_TRUE(Runs(LinkStatus::State::Ready, 3000)) << "by repetition, without a new link";
    }
    EXPECT_EQ(numberings, 1) << "the link itself never failed";
}

TEST_F(Healing, AQuietLineIsNotTakenForASilentRadio)
{
    bool complained = false;
    QObject::connect(&stack.executive, &Map27Executive::LinkChanged, &stack.executive,
                     [&](const LinkStatus& changed) { complained |= !changed.text.isEmpty(); });
    stack.Run(600000);
    EXPECT_FALSE(complained);
}

TEST_F(Healing, ATransactionEndsWithTheLinkAndTheNextOneWorks)
{
    struct Case {
        const char* what;
        std::function<void()> start;
    };
    const Case cases[] = {
        {"status", [this] { stack.executive.SendStatus(QStringLiteral("Unit20"), 5); }},
        {"text",
         [this] { stack.executive.SendText(QStringLiteral("Unit20"), QStringLiteral("on the way"), false); }},
        {"call", [this] { stack.executive.StartCall(QStringLiteral("Unit22"), false, false, true); }},
    };
    for (const Case& silent : cases) {
        for (bool unplug : {false, true}) {
            SCOPED_TRACE(std::string(silent.what) + (unplug ? " unplugged" : " silent"));
            const int asked = numberings;
            const qsizetype recorded = stack.Records().size();
            silent.start();
            if (unplug)
                stack.radio.Unplug();
            else
                stack.radio.instead = Nothing;
            EXPECT_TRUE(Runs(unplug ? LinkStatus::State::Lost : LinkStatus::State::Silent, 5000));
            EXPECT_TRUE(stack.RunToEnd());
            EXPECT_FALSE(stack.AgentShown());
            stack.Run(120000); // it stays away and is tried again forever
            stack.radio.plugged = true;
            stack.radio.instead = {};
            EXPECT_TRUE(Runs(LinkStatus::State::Ready, 16000)) << status.text.toStdString();
            stack.Run(2000);
            EXPECT_EQ(numberings, asked + 1);
            EXPECT_EQ(stack.Records().size(), recorded) << "what was not acknowledged is not in the log";
            stack.executive.SendStatus(QStringLiteral("Unit20"), 5);
            EXPECT_TRUE(stack.RunToEnd());
            EXPECT_EQ(stack.Records().size(), recorded + 1);
        }
    }
}

TEST_F(Healing, WhatComesInsteadOfARadioIsSaid)
{
    unsigned seed = 1;
    const auto noise = [&seed](const QByteArray& sent) {
        QByteArray octets;
        for (qsizetype i = 0; i < 2 * sent.size(); ++i)
            octets.append(static_cast<char>((seed = seed * 1103515245U + 12345U) >> 16 | 0x80));
        return octets;
    };
    const auto damaged = [](const QByteArray& sent) {
        QByteArray octets = sent;
        if (octets.size() > 8)
            octets[octets.size() - 1] = static_cast<char>(octets.back() ^ 1);
        return octets;
    };
    const std::pair<std::function<QByteArray(const QByteArray&)>, QString> cases[] = {
        {Nothing, stack.Text(RadioText::LinkLostSilent)},
        {[](const QByteArray& sent) { return sent.isEmpty() ? QByteArray() : QByteArray("$GPGGA,12\r\n"); },
         stack.Text(RadioText::LinkForeign).replace(QStringLiteral("#02"), QStringLiteral("$GPGGA,12"))},
        {noise, stack.Text(RadioText::LinkNoise).replace(QStringLiteral("#02"), QStringLiteral("9600"))},
        {damaged, stack.Text(RadioText::LinkDamaged)},
        {[](const QByteArray& sent) { return sent; },
         FormatMessage(stack.strings, RadioText::LinkLostPort, {stack.Text(RadioText::LinkEcho)})},
    };
    for (const auto& [instead, text] : cases) {
        stack.executive.Disconnect();
        stack.radio.instead = instead;
        stack.executive.Connect();
        const QString expected = QString(text).replace(QStringLiteral("#01"), QStringLiteral("COM2"));
        EXPECT_TRUE(stack.RunUntil([&] { return status.text.startsWith(expected.left(60)); }, 6000))
            << expected.toStdString() << "\nsaid: " << status.text.toStdString();
        stack.radio.instead = {};
        EXPECT_TRUE(Runs(LinkStatus::State::Ready, 16000)) << expected.toStdString();
    }
}

TEST_F(Healing, LoggingOffAndOnLeavesNoHalfOpenPort)
{
    for (int afterMs : {0, 10, 150, 1000}) {
        stack.executive.Disconnect();
        EXPECT_EQ(status.state, LinkStatus::State::Closed);
        EXPECT_FALSE(stack.radio.IsOpen());
        stack.executive.Connect();
        stack.Run(afterMs);
        EXPECT_TRUE(stack.radio.IsOpen());
    }
    EXPECT_TRUE(Runs(LinkStatus::State::Ready, 5000));
}

// A line that opens once and later is neither opened nor refused, like a network that drops everything.
struct SwallowedPort : RadioPort {
    void Open() override
    {
        open = !std::exchange(wasOpen, true);
        if (open)
            Q_EMIT Opened();
    }
    void Close() override { open = false; }
    bool IsOpen() const override { return open; }
    void Write(const QByteArray&) override {}
    bool open = false;
    bool wasOpen = false;
};

TEST(RealLine, LoggingOffWhileItIsOpenedAgainLeavesNothingBehind)
{
    CStringSourceImpl source{QStringList{}};
    FakeClock clock;
    SerialMap27Control control(source.CreateStringSource(QStringLiteral("CKYN")), clock,
                               SerialMap27Control::Place::UsersThread,
                               [](const QString&, int) { return std::make_unique<SwallowedPort>(); });
    control.OpenLink();
    clock.Step(LinkWatch::ReopenInterval);
    control.OnTime();
    EXPECT_TRUE(QTest::qWaitFor([&] { return control.Link().state == LinkStatus::State::Lost; }));
    control.CloseLink();
    control.OpenLink();
    EXPECT_EQ(control.Link().state, LinkStatus::State::Connecting);
}

// The port under its own name, then its adapter under another.
struct OneAdapter : SerialAdapters {
    QString IdentityOf(const QString&) const override { return QStringLiteral("A100"); }
    QString DeviceOf(const QString&) const override { return QFileInfo(link).canonicalFilePath(); }
    QString link;
};

TEST(RealLine, ARadioIsFoundAgainAtOnceWhereverItComesBack)
{
    QTemporaryDir folder;
    const auto adapter = std::make_shared<OneAdapter>();
    const auto plugIn = [&](const char* name) {
        sim::Options options;
        options.ptyLink = adapter->link = folder.filePath(QString::fromLatin1(name));
        options.scenario = QStringLiteral(":/veltorkyn/scenarios/tour.json");
        options.simulation.bitsPerSecond = 0;
        return std::make_unique<sim::Program>(
            options, sim::Program::Console{[](const std::string&) {}, [](const std::string&) {}});
    };
    CStringSourceImpl source{QStringList{}};
    const IStringSource& strings = source.CreateStringSource(QStringLiteral("CKYN"));
    SystemClock clock;
    SerialMap27Control control(strings, clock, SerialMap27Control::Place::OwnThread,
                               [&](const QString& name, int bitsPerSecond) {
                                   return std::make_unique<SerialRadioPort>(name, bitsPerSecond, adapter);
                               });
    int numberings = 0;
    QObject::connect(&control, &Map27Control::NumberingReceived, &control, [&] { ++numberings; });
    const auto becomes = [&](LinkStatus::State state) {
        return QTest::qWaitFor([&] { return control.Link().state == state; });
    };

    auto radio = plugIn("ttyUSB0");
    control.SetCommPort(adapter->link);
    control.OpenLink();
    for (const char* comesBackAs : {"ttyUSB0", "ttyUSB1", "ttyUSB0"}) {
        EXPECT_TRUE(becomes(LinkStatus::State::Ready)) << control.Link().text.toStdString();
        EXPECT_TRUE(QTest::qWaitFor([&] { return numberings > 0; }));
        numberings = 0;
        radio.reset();
        EXPECT_TRUE(becomes(LinkStatus::State::Lost));
        radio = plugIn(comesBackAs);
    }
    EXPECT_TRUE(becomes(LinkStatus::State::Ready)) << control.Link().text.toStdString();
}

} // namespace
