#include "Bench.h"

#include "simulator/replay/MessageReplay.h"
#include "simulator/replay/Replay.h"

#include <QFile>
#include <QTemporaryDir>

using map27::Direction;
using map27::Milliseconds;
using map27::TimePoint;
using map27::TraceEntry;

namespace {

std::vector<TraceEntry> EntriesOf(const sim::SimulationOutput& output)
{
    std::vector<TraceEntry> entries;
    for (const sim::TracedFrame& frame : output.traced)
        entries.push_back(sim::EntryOf(frame));
    return entries;
}

std::vector<TraceEntry> EntriesOf(const sim::ReplayOutput& output)
{
    return output.traced;
}

// A console that sends a status, a text and a call at fixed times, and its radio's side, in virtual time.
template <typename RadioSide> class Conversation {
public:
    explicit Conversation(RadioSide& radioSide, bool sendsAnother = false, int late = 0)
        : m_radio(radioSide),
          m_another(sendsAnother)
    {
        Deliver(m_console.Start(m_now));
        Deliver(m_radio.ConsoleCame(m_now));
        RunUntil(1000);
        Deliver(m_console.SendStatus({0, 2}, m_another ? 6 : 5, m_now).output);
        RunUntil(20000 + late);
        Deliver(m_console.SendText({0, 16}, "sixteen", map27::TextCoding::SevenBit, m_now).output);
        RunUntil(40000 + 2 * late);
        Tell("status Unit20 17");
        RunUntil(60000);
        Deliver(m_console.MakeCall({0, 2}, false, false, true, m_now).output);
        RunUntil(70000);
        Deliver(m_console.ClearCall(m_now));
        RunUntil(150000);
    }

    std::vector<TraceEntry> traced;

private:
    void RunUntil(int milliseconds)
    {
        const TimePoint end{Milliseconds(milliseconds)};
        for (;;) {
            const map27::Deadline next = map27::Earlier(m_console.NextDeadline(), m_radio.NextDeadline());
            if (!next || *next > end)
                break;
            m_now = std::max(m_now, *next);
            Deliver(m_radio.OnTime(m_now));
            Deliver(m_console.OnTime(m_now));
        }
        m_now = end;
    }

    void Tell(const std::string& command)
    {
        const auto [text, output] = m_radio.Execute(command, m_now);
        if constexpr (std::is_same_v<RadioSide, sim::Simulation>)
            traced.push_back(
                {.kind = TraceEntry::Kind::Command, .at = m_now, .command = command, .answer = text});
        Deliver(output);
    }

    void Deliver(const map27::TerminalOutput& output)
    {
        for (const map27::Octets& frame : output.frames)
            Deliver(m_radio.Feed(frame, m_now));
    }

    template <typename Output> void Deliver(const Output& output)
    {
        for (TraceEntry& entry : EntriesOf(output))
            traced.push_back(std::move(entry));
        if (!output.toConsole.empty())
            Deliver(m_console.Feed(output.toConsole, m_now));
    }

    TimePoint m_now{};
    map27::Terminal m_console;
    RadioSide& m_radio;
    bool m_another;
};

// Without times, which are those of the moment when frames are delivered.
std::vector<std::string> Story(const std::vector<TraceEntry>& entries)
{
    std::vector<std::string> story;
    for (TraceEntry entry : entries) {
        entry.at = {};
        story.push_back(map27::WriteTraceEntry(entry));
    }
    return story;
}

const std::vector<TraceEntry>& Recorded()
{
    static const std::vector<TraceEntry> entries = [] {
        sim::Simulation simulation(sim::LoadScenario("tour"), {.bitsPerSecond = 0});
        return Conversation(simulation).traced;
    }();
    return entries;
}

sim::Replay ReplayOf(const sim::ReplaySettings& settings)
{
    return sim::Replay(sim::ToReplay(Recorded()), settings);
}

TEST(Replay, WhatWasRecordedComesAgain)
{
    sim::Replay replay = ReplayOf({.withCommands = true});
    const Conversation again(replay);
    EXPECT_GT(Recorded().size(), 60U);
    EXPECT_EQ(Story(again.traced), Story(Recorded()));
    ASSERT_TRUE(replay.TheEnd());
    EXPECT_TRUE(replay.TheEnd()->isFaithful) << replay.TheEnd()->text;
}

TEST(Replay, FastOrWithoutCommandsItComesAgain)
{
    for (const sim::ReplaySettings& settings : {sim::ReplaySettings{.withCommands = false},
                                                sim::ReplaySettings{.fast = true, .withCommands = true}}) {
        sim::Replay replay = ReplayOf(settings);
        const Conversation again(replay);
        ASSERT_TRUE(replay.TheEnd());
        EXPECT_TRUE(replay.TheEnd()->isFaithful) << replay.TheEnd()->text;
    }
}

// The console is up to 14 s later than then, so that it asks at other places and its numbers are others.
TEST(Replay, MessagesComeAgainWhenTheConsoleIsLater)
{
    sim::Replay literally = ReplayOf({.withCommands = true});
    const Conversation one(literally, false, 7000);
    EXPECT_FALSE(literally.TheEnd() && literally.TheEnd()->isFaithful);

    for (const bool isFast : {false, true}) {
        sim::MessageReplay replay(sim::ToReplay(Recorded()), {.fast = isFast, .withCommands = true});
        const Conversation again(replay, false, 7000);
        ASSERT_TRUE(replay.TheEnd());
        EXPECT_TRUE(replay.TheEnd()->isFaithful) << replay.TheEnd()->text;
    }
    sim::MessageReplay replay(sim::ToReplay(Recorded()), {});
    const Conversation other(replay, true, 7000);
    ASSERT_TRUE(replay.TheEnd());
    EXPECT_NE(replay.TheEnd()->text.find(
                  "the console sends SEND STATUS to 0/2: 6 [80 00 00 02 00 06] where it then "
                  "sent SEND STATUS to 0/2: 5 ["),
              std::string::npos)
        << replay.TheEnd()->text;
}

TEST(Replay, TheFirstDeviationEndsItWithBothFrames)
{
    sim::Replay replay = ReplayOf({});
    const Conversation other(replay, true);
    ASSERT_TRUE(replay.TheEnd());
    EXPECT_FALSE(replay.TheEnd()->isFaithful);
    const std::string& text = replay.TheEnd()->text;
    for (const char* part : {"line ", " ms: the console sends LT ", "SEND STATUS to 0/2: 6 [16 10 02 04",
                             "where it then sent LT ", "SEND STATUS to 0/2: 5 ["})
        EXPECT_NE(text.find(part), std::string::npos) << text;
}

TEST(Replay, AConsoleThatSaysNothingIsWaitedForSoLong)
{
    sim::Replay replay = ReplayOf({.patience = Milliseconds(5000)});
    replay.ConsoleCame({});
    std::vector<std::string> notes;
    while (const map27::Deadline next = replay.NextDeadline())
        for (const std::string& note : replay.OnTime(*next).notes)
            notes.push_back(note);
    ASSERT_TRUE(replay.TheEnd());
    EXPECT_NE(replay.TheEnd()->text.find("the console does not send LR"), std::string::npos)
        << replay.TheEnd()->text;
    EXPECT_EQ(notes.size(), 1U);
}

// Those of the middle of a link have numbers that no new link has.
TEST(Replay, WhyAllFramesCannotBePlayedIsSaidBefore)
{
    const auto why = [](std::vector<TraceEntry> entries) {
        return sim::WhyNotAllFrames(sim::ToReplay(entries)).value_or("");
    };
    const std::vector<TraceEntry>& all = Recorded();
    const std::vector<TraceEntry> half(all.begin() + 30, all.end());
    std::vector<TraceEntry> openedLater = half;
    openedLater.push_back({.kind = TraceEntry::Kind::Opened, .at = half.back().at});
    std::vector<TraceEntry> withGap = all;
    withGap.insert(withGap.begin() + 30, {.kind = TraceEntry::Kind::Lost, .at = all[30].at, .number = 12});
    std::vector<TraceEntry> openedBefore = half;
    openedBefore.insert(openedBefore.begin(), {.kind = TraceEntry::Kind::Opened, .at = half.front().at});
    EXPECT_EQ(why(all), "");
    EXPECT_EQ(why(openedBefore), "");
    EXPECT_EQ(why(half), "line 1: the trace begins in the middle of a link, and no new link can go on there");
    EXPECT_EQ(why(openedLater), why(half) + "; the line is opened in line " +
                                    std::to_string(openedLater.size()) +
                                    ", so that what follows can be played by itself");
    EXPECT_EQ(why(withGap), "line 31: 12 lines of the trace are missing there");
}

TEST(Replay, FilesThatAreNoTraceSayWhere)
{
    struct Row {
        const char* content;
        const char* reason; // empty: it can be played
    };
    constexpr auto good = R"({"ms":1,"dir":"R>D","frame":"16 10 02 01 0E 01 01 10 03 8A 09"})";
    const std::string twice = std::string(good) + "\n{\"ms\":2,\"dir\":\"R>X\",\"frame\":\"16\"}\n";
    const std::string cutOff = std::string(good) + "\n{\"ms\":2,";
    const Row rows[] = {
        {"", "there is no frame in it"},
        {"hello\n", "line 1, column 1: "},
        {twice.c_str(), "line 2, column 16: \"dir\" is neither D>R nor R>D"},
        {"{\"ms\":-1,\"event\":\"closed\"}\n", "line 1, column 7: "},
        {"{\"ms\":1,\"dir\":\"D>R\",\"frame\":\"16 1\"}\n", "line 1, column 33: not a pair"},
        {"{\"ms\":1,\"event\":\"time\",\"time\":\"\xC3\"}\n", "line 1, column 32: not UTF-8"},
        {cutOff.c_str(), ""},
    };
    const QTemporaryDir folder;
    for (const Row& row : rows) {
        QFile file(folder.filePath("trace"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(row.content) >= 0);
        file.close();
        std::string reason;
        try {
            sim::LoadReplay(file.fileName());
        } catch (const std::runtime_error& error) {
            reason = error.what();
        }
        EXPECT_EQ(reason.empty(), *row.reason == '\0') << reason;
        EXPECT_NE(reason.find(row.reason), std::string::npos) << reason;
    }
}

} // namespace
