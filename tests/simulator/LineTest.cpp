#include "Bench.h"

#include "map27/link/Framing.h"
#include "map27/trace/FrameParts.h"

#include <QJsonDocument>
#include <QJsonObject>

using map27::Milliseconds;
using map27::Octets;
using map27::TimePoint;

namespace {

TimePoint At(int milliseconds)
{
    return TimePoint(Milliseconds(milliseconds));
}

const Octets frame = map27::EncodeFrame(Octets{4, 0x10, 1, 0, 0x80, 0x10, 0x10, 0x03, 0, 5});

} // namespace

TEST(Pacer, CarriesTenBitsAnOctetWithoutLosingTime)
{
    sim::Pacer pacer(9600);
    const Octets octets(48, 0x55);
    std::size_t carried = 0;
    TimePoint now = At(1000);
    pacer.Push(octets, now);
    // A sender that pushes the next frame the moment the one before is over, told in whole milliseconds.
    while (now < At(11000)) {
        now = *pacer.NextDeadline();
        const Octets ready = pacer.Take(now);
        EXPECT_LE(ready.size(), 2U);
        carried += ready.size();
        if (!pacer.NextDeadline())
            pacer.Push(octets, now);
    }
    EXPECT_NEAR(static_cast<double>(carried), 9600, 10);

    // After a pause the first octet takes its full time again.
    pacer.Clear();
    pacer.Push(octets, At(20000));
    EXPECT_TRUE(pacer.Take(At(20001)).empty());
    EXPECT_EQ(pacer.Take(At(20002)).size(), 1U);
}

TEST(Pacer, AnUnpacedLineTakesNoTime)
{
    sim::Pacer pacer(0);
    pacer.Push(Octets(5000, 1), At(10));
    EXPECT_EQ(pacer.NextDeadline(), At(10));
    EXPECT_EQ(pacer.Take(At(10)).size(), 5000U);
}

TEST(FrameSplitter, KeepsEveryOctetInWhateverPiecesItComes)
{
    const Octets noise{0x00, 0x16, 0x16, 0x10, 0x41};
    const Octets unfinished{0x16, 0x10, 0x02, 0x04, 0x10, 0x07};
    Octets stream = noise;
    for (const Octets& part : {frame, unfinished, frame, frame})
        stream.insert(stream.end(), part.begin(), part.end());

    for (std::size_t size = 1; size <= stream.size(); ++size) {
        map27::FrameSplitter splitter;
        Octets together;
        int frames = 0;
        for (std::size_t begin = 0; begin < stream.size(); begin += size) {
            const auto length = std::min(size, stream.size() - begin);
            for (const map27::LinePiece& piece :
                 splitter.Feed(map27::OctetSpan(stream).subspan(begin, length))) {
                together.insert(together.end(), piece.octets.begin(), piece.octets.end());
                frames += piece.isFrame ? 1 : 0;
                EXPECT_TRUE(!piece.isFrame || piece.octets == frame);
            }
        }
        EXPECT_EQ(frames, 3) << size;
        EXPECT_EQ(together, stream) << size;
    }
}

// What the trace shows is what the receiver takes, wherever a frame breaks off and whatever of the next one
// is lost.
TEST(FrameSplitter, FindsTheFramesThatTheReceiverFinds)
{
    for (std::size_t kept = 0; kept <= frame.size(); ++kept) {
        for (std::size_t lost = 0; lost < 4; ++lost) {
            Octets stream(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(kept));
            stream.insert(stream.end(), frame.begin() + static_cast<std::ptrdiff_t>(lost), frame.end());
            stream.insert(stream.end(), frame.begin(), frame.end());
            std::vector<Octets> shown;
            Octets together;
            for (const map27::LinePiece& piece : map27::FrameSplitter().Feed(stream)) {
                together.insert(together.end(), piece.octets.begin(), piece.octets.end());
                const auto parts = map27::TakeApart(piece.octets);
                EXPECT_EQ(piece.isFrame, parts.has_value());
                if (parts && parts->IsGood())
                    shown.push_back(parts->body);
            }
            EXPECT_EQ(shown, map27::FrameDecoder().Feed(stream)) << kept << ' ' << lost;
            EXPECT_EQ(together, stream);
        }
    }
}

TEST(Line, TheLinkSurvivesAnUnreliableLine)
{
    sim::SimulationSettings settings;
    settings.faults.Set(sim::FaultKind::BitErrors, 0.0005);
    settings.faults.Set(sim::FaultKind::DropFrames, 0.05);
    TerminalBench bench(sim::LoadScenario("tour"), settings);
    bench.RunFor(std::chrono::minutes(2));
    bench.Forget();
    for (int i = 0; i < 200; ++i) {
        bench.Execute("status Unit20 " + std::to_string(i % 32));
        bench.RunFor(std::chrono::seconds(20));
    }
    EXPECT_EQ(bench.Events<map27::StatusReceived>().size(), 200U);
    int dropped = 0;
    int spoiled = 0;
    for (const sim::TracedFrame& one : bench.traced) {
        dropped += one.fault == "drop-frames";
        spoiled += one.fault == "bit-errors";
    }
    EXPECT_NEAR(dropped, bench.traced.size() * 0.05, bench.traced.size() * 0.02);
    EXPECT_GT(spoiled, 0);
}

TEST(Line, TheSameSeedGivesTheSameRun)
{
    const auto run = [](std::uint64_t seed) {
        sim::SimulationSettings settings{.seed = seed};
        for (const sim::FaultKind kind : {sim::FaultKind::BitErrors, sim::FaultKind::DropFrames,
                                          sim::FaultKind::Noise, sim::FaultKind::Delay})
            settings.faults.Set(kind, sim::DescriptionOf(kind).usual);
        TerminalBench bench(sim::LoadScenario("busy-day"), settings);
        bench.RunFor(std::chrono::minutes(10));
        std::string trace;
        for (const sim::TracedFrame& one : bench.traced)
            trace += map27::WriteTraceEntry(sim::EntryOf(one)) + '\n';
        return trace;
    };
    EXPECT_EQ(run(5), run(5));
    EXPECT_NE(run(5), run(6));
}

TEST(Line, FallingSilentIsNoticedByTheConsoleAndCanEnd)
{
    sim::SimulationSettings settings{.bitsPerSecond = 0, .silentAfter = Milliseconds(5000)};
    TerminalBench bench(sim::LoadScenario("tour"), settings);
    bench.RunFor(std::chrono::minutes(3));
    const auto failures = bench.Events<map27::LinkFailed>();
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_FALSE(bench.console.IsLinkReady());

    EXPECT_EQ(bench.Execute("silent off"), "ok");
    bench.RunFor(std::chrono::minutes(1));
    EXPECT_TRUE(bench.console.IsLinkReady());
}

TEST(Trace, LinesAreJsonWithTheFrameAsOnTheWire)
{
    TerminalBench bench;
    bench.Deliver(bench.console.SendStatus({0, 16}, 16, bench.now).output);
    ASSERT_FALSE(bench.traced.empty());
    const sim::TracedFrame& sent = bench.traced.front();
    const QJsonObject line =
        QJsonDocument::fromJson(QByteArray::fromStdString(map27::WriteTraceEntry(sim::EntryOf(sent))))
            .object();
    EXPECT_EQ(line.keys(), (QStringList{"dir", "frame", "ms"}));
    EXPECT_EQ(line["ms"].toInteger(), sent.at.time_since_epoch().count());
    EXPECT_EQ(line["dir"].toString(), "D>R");
    EXPECT_TRUE(line["frame"].toString().startsWith("16 10 02 04 "));
    EXPECT_TRUE(line["frame"].toString().contains("80 00 00 10 10 00 10 10 10 03 "));

    const sim::TracedFrame lost{At(1), map27::Direction::FromRadio, {0x16}, "lost-la"};
    EXPECT_EQ(map27::WriteTraceEntry(sim::EntryOf(lost)),
              R"({"ms":1,"dir":"R>D","frame":"16","fault":"lost-la"})");
}
