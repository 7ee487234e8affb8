// What the console keeps of the line's last hour.

#include "radio/trace/WireTrace.h"
#include "map27/codec/Messages.h"
#include "map27/link/Framing.h"
#include "radio/trace/TraceFile.h"
#include "radio/trace/TracedPort.h"
#include "support/FakeClock.h"
#include "support/Files.h"

#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using map27::TraceEntry;

namespace {

std::vector<TraceEntry> EntriesOf(const QString& path)
{
    QFile file(path);
    std::vector<TraceEntry> entries;
    if (!file.open(QIODevice::ReadOnly))
        return entries;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const auto read = map27::ReadTraceEntry(line.toStdString());
        if (!line.isEmpty() && std::holds_alternative<TraceEntry>(read))
            entries.push_back(std::get<TraceEntry>(read));
        else
            EXPECT_TRUE(line.isEmpty()) << line.toStdString();
    }
    return entries;
}

class FakePort : public RadioPort {
public:
    void Open() override { Q_EMIT Opened(); }
    void Close() override {}
    bool IsOpen() const override { return true; }
    void Write(const QByteArray& octets) override { written += octets; }
    void Bring(const char* hex) { Q_EMIT Received(QByteArray::fromHex(hex)); }

    QByteArray written;
};

TEST(WireTrace, FramesNoiseAndOpeningsAreKeptForTheOwnerAlone)
{
    const QTemporaryDir folder;
    FakeClock clock;
    WireTrace trace(folder.filePath("data"), clock, Lane::Kind::Callers);
    WireTrace second(folder.filePath("data"), clock, Lane::Kind::Callers);
    auto made = std::make_unique<FakePort>();
    FakePort& inner = *made;
    TracedPort port(std::move(made), "COM1", 9600, trace, clock);
    QByteArray received;
    QObject::connect(&port, &RadioPort::Received, [&](const QByteArray& octets) { received += octets; });
    port.Open();
    port.Write(QByteArray::fromHex("1610020201010010038FFB"));
    clock.Step(std::chrono::milliseconds(50));
    for (const char* piece : {"FF161002", "010E01011003", "8A09", "1610"})
        inner.Bring(piece);
    port.Close();
    second.Add({.kind = TraceEntry::Kind::Closed});

    EXPECT_EQ(inner.written.size(), 11);
    EXPECT_EQ(received.toHex(), "ff161002010e010110038a091610");
    const QString name = folder.filePath("data/line-trace.jsonl");
    const auto entries = EntriesOf(name);
    ASSERT_EQ(entries.size(), 7U);
    EXPECT_EQ(entries[0].kind, TraceEntry::Kind::Time);
    EXPECT_EQ(entries[0].time.substr(0, 23), "2024-03-01T10:00:00.000");
    EXPECT_EQ(entries[1].port, "COM1");
    EXPECT_EQ(map27::WriteTraceEntry(entries[2]),
              R"({"ms":1000000,"dir":"D>R","frame":"16 10 02 02 01 01 00 10 03 8F FB"})");
    EXPECT_EQ(map27::WriteTraceEntry(entries[3]), R"({"ms":1000050,"dir":"R>D","noise":"FF"})");
    EXPECT_EQ(map27::WriteTraceEntry(entries[4]),
              R"({"ms":1000050,"dir":"R>D","frame":"16 10 02 01 0E 01 01 10 03 8A 09"})");
    EXPECT_EQ(map27::WriteTraceEntry(entries[5]), R"({"ms":1000050,"dir":"R>D","noise":"16 10"})");
    EXPECT_EQ(entries[6].kind, TraceEntry::Kind::Closed);
    EXPECT_EQ(EntriesOf(folder.filePath("data/line-trace-2.jsonl")).size(), 2U);
    EXPECT_EQ(QFile::permissions(name) & (QFileDevice::ReadGroup | QFileDevice::ReadOther),
              QFileDevice::Permissions());
}

TEST(WireTrace, TheOlderFileMakesRoomByAgeAndBySize)
{
    for (const TraceFile::Bounds bounds :
         {TraceFile::Bounds{1000000, 3600000}, TraceFile::Bounds{300, 36000000}}) {
        const QTemporaryDir folder;
        TraceFile file(folder.filePath("line-trace"), bounds);
        QDateTime now(QDate(2024, 3, 1), QTime(10, 0));
        for (int number = 0; number < 100; ++number) {
            const map27::TimePoint at{std::chrono::minutes(10 * number)};
            file.Write({{.at = at, .octets = map27::Octets(20, 0x16)}}, now, at);
            now = now.addSecs(600);
        }
        const auto newer = EntriesOf(folder.filePath("line-trace.jsonl"));
        const auto older = EntriesOf(folder.filePath("line-trace.1.jsonl"));
        ASSERT_FALSE(newer.empty() || older.empty());
        EXPECT_EQ(newer.front().kind, TraceEntry::Kind::Time);
        EXPECT_EQ(older.front().kind, TraceEntry::Kind::Time);
        EXPECT_LE(newer.size() + older.size(), 16U);
        EXPECT_EQ(newer.back().at, map27::TimePoint{std::chrono::minutes(990)});
        EXPECT_EQ(newer[1].at - older.back().at, std::chrono::minutes(10)) << "nothing is lost between";
        EXPECT_EQ(QDir(folder.path()).entryList({"*.jsonl"}).size(), 2);
    }
}

// The newer file alone tells where the line stands: port, speed, link, and what the radio said of itself.
TEST(WireTrace, ANewFileSaysWhereTheLineStands)
{
    const QTemporaryDir folder;
    TraceFile file(folder.filePath("line-trace"), {1000000, 3600000});
    const QDateTime start(QDate(2024, 3, 1), QTime(10, 0));
    const auto write = [&](int seconds, const char* line) {
        const auto read = map27::ReadTraceEntry(line);
        ASSERT_TRUE(std::holds_alternative<TraceEntry>(read)) << line;
        TraceEntry entry = std::get<TraceEntry>(read);
        entry.at = map27::TimePoint{std::chrono::seconds(seconds)};
        file.Write({entry}, start.addSecs(seconds), entry.at);
    };
    for (const char* line : {R"({"ms":0,"event":"opened","port":"ttyUSB0","speed":19200})",
                             R"({"ms":0,"dir":"D>R","frame":"16 10 02 01 0E 01 01 10 03 8A 09"})",
                             R"({"ms":0,"dir":"R>D","frame":"16 10 02 01 06 01 01 10 03 6B C8"})",
                             R"({"ms":0,"dir":"D>R","frame":"16 10 02 01 06 01 01 10 03 6B C8"})",
                             R"({"ms":0,"dir":"R>D","frame":"16 10 02 02 01 01 00 10 03 8F FB"})",
                             R"({"ms":0,"dir":"D>R","frame":"16 10 02 02 01 01 00 10 03 8F FB"})",
                             R"({"ms":0,"dir":"D>R","frame":"16 10 02 04 01 01 00 B0 03 10 03 34 17"})",
                             R"({"ms":0,"dir":"R>D","frame":"16 10 02 02 02 01 00 10 03 CB FB"})"})
        write(1, line);
    const auto read = map27::Octets{4, 1, 1, 0, map27::Type::OperatingCondition, 4, 0x9E, 0xFF};
    const TraceEntry condition{.direction = map27::Direction::FromRadio, .octets = map27::EncodeFrame(read)};
    write(2, map27::WriteTraceEntry(condition).c_str());
    write(4000, R"({"ms":0,"dir":"D>R","frame":"16 10 02 02 02 01 00 10 03 CB FB"})");

    const auto newer = EntriesOf(folder.filePath("line-trace.jsonl"));
    ASSERT_EQ(newer.size(), 4U);
    EXPECT_EQ(map27::WriteTraceEntry(newer[1]),
              R"({"ms":4000000,"event":"continued","port":"ttyUSB0","speed":19200,"n1":6,"k":1,"version":1,)"
              R"("next_to_radio":2,"next_from_radio":2})");
    EXPECT_EQ(map27::WriteTraceEntry(newer[2]), R"({"ms":4000000,"event":"said","message":"B2 04 9E FF"})");
    map27::TraceObserver observer;
    observer.Take(newer[1]);
    EXPECT_EQ(observer.Link().Standing(), newer[1].link);

    write(4001, R"({"ms":0,"event":"closed"})");
    write(9000, R"({"ms":0,"event":"opened","port":"ttyUSB0","speed":19200})");
    EXPECT_EQ(EntriesOf(folder.filePath("line-trace.jsonl")).size(), 2U) << "nothing goes on";
}

// Half a line that was left, and an older file that cannot be put aside for a while.
TEST(WireTrace, WhatCannotBeWrittenIsCountedAndSpoilsNothing)
{
    const QTemporaryDir folder;
    const QString name = folder.filePath("line-trace");
    const TraceEntry entry{.octets = map27::Octets(20, 0x16)};
    WriteFile(name + ".jsonl", QByteArray::fromStdString(map27::WriteTraceEntry(entry)) + "\n{\"ms\":12");
    QDir(folder.path()).mkdir("line-trace.1.jsonl");
    TraceFile file(name, {200, 36000000});
    const QDateTime now(QDate(2024, 3, 1), QTime(10, 0));
    file.Write({entry}, now, {});
    for (int number = 0; number < 3; ++number)
        file.Write({entry, entry}, now, {});
    EXPECT_EQ(EntriesOf(name + ".jsonl").size(), 3U) << "the two frames and a time";
    QDir(folder.path()).rmdir("line-trace.1.jsonl");
    file.Write({entry}, now, {});
    const auto entries = EntriesOf(name + ".jsonl");
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[1].kind, TraceEntry::Kind::Lost);
    EXPECT_EQ(entries[1].number, 6);
}

TEST(WireTrace, AFolderThatCannotBeWrittenCostsNothingElse)
{
    FakeClock clock;
    WireTrace trace("/proc/none", clock, Lane::Kind::Callers);
    trace.Add({.kind = TraceEntry::Kind::Closed});
}

} // namespace
