// What is given away of the console's state, and what is not.

#include "health/SupportReport.h"
#include "map27/codec/Messages.h"
#include "map27/link/Framing.h"
#include "map27/trace/FrameParts.h"
#include "map27/trace/TraceEntry.h"
#include "support/Files.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using map27::TraceEntry;

namespace {

const std::string Secret = "man down at gate 7";

map27::Octets Characters(const std::string& text)
{
    return {text.begin(), text.end()};
}

map27::Octets FrameOf(const map27::Octets& message)
{
    map27::Octets body{0x04, 1, 0, 0};
    body.insert(body.end(), message.begin(), message.end());
    return map27::EncodeFrame(body);
}

map27::Party PartyOf(std::uint16_t ident)
{
    map27::Party party;
    party.address = {2, ident};
    return party;
}

map27::Octets TextMessage()
{
    return map27::EncodeToRadio(map27::ShortDataMessage{
        map27::DataSize::Medium, PartyOf(31), {map27::Coding::PcCharacters, 8, Characters(Secret)}});
}

QByteArray LineOf(const TraceEntry& entry)
{
    return QByteArray::fromStdString(map27::WriteTraceEntry(entry)) + '\n';
}

TraceEntry At(int ms, TraceEntry entry)
{
    entry.at = map27::TimePoint{map27::Milliseconds{ms}};
    return entry;
}

// In characters and in hexadecimal, of either case.
bool Tells(const QByteArray& report, const std::string& text)
{
    const QByteArray plain = QByteArray::fromStdString(text);
    QByteArray hex = report.toLower();
    hex.replace(' ', "");
    return report.contains(plain) || hex.contains(plain.toHex());
}

class SupportReportTest : public testing::Test {
protected:
    void SetUp() override
    {
        constexpr int hour = 3'600'000; // ms
        map27::Octets damaged = FrameOf(TextMessage());
        damaged.back() = static_cast<std::uint8_t>(damaged.back() ^ 0xFF);
        map27::Octets unknown = Characters(Secret);
        unknown.insert(unknown.begin(), 0x7F);
        using enum TraceEntry::Kind;
        QByteArray lines;
        for (const TraceEntry& entry :
             {At(0, {.kind = Opened, .time = "2026-03-01T09:00:00.000Z", .port = "COM1", .number = 9600}),
              At(1000, {.kind = Frame,
                       .octets = FrameOf(map27::EncodeToRadio(map27::StatusMessage{PartyOf(32), 9}))}),
              At(2 * hour, {.kind = Frame, .octets = FrameOf(TextMessage())}),
              At(2 * hour, {.kind = Frame, .octets = damaged}),
              At(2 * hour, {.kind = Frame, .octets = FrameOf(unknown)}),
              At(2 * hour, {.kind = Noise, .octets = Characters(Secret)}),
              At(2 * hour, {.kind = Said, .octets = TextMessage()}),
              At(2 * hour, {.kind = Command, .command = "text 2 " + Secret, .answer = Secret}),
              At(2 * hour, {.kind = Frame,
                           .octets = FrameOf(map27::EncodeToRadio(map27::StatusMessage{PartyOf(31), 5}))})})
            lines += LineOf(entry);
        WriteFile(folder.filePath("line-trace.jsonl"), lines + "{\"ms\":1,\"frame\":\"" + Secret.c_str());
        WriteFile(folder.filePath("veltorkyn.log"),
                  "2026-03-01T10:00:00 cannot reach postgresql://anna:sesame@db/site?sslpassword=mellon\n");
    }

    QByteArray Written(bool withTexts)
    {
        SupportReport{"Radio\n", folder.path(), withTexts, now}.Write(path);
        return ReadFile(path);
    }

    QTemporaryDir folder;
    const QString path = folder.filePath("report.txt");
    const QDateTime now{QDate(2026, 3, 1), QTime(11, 30), Qt::UTC};
};

TEST_F(SupportReportTest, HoldsNeitherTextsNorPasswordsUnlessAsked)
{
    const QByteArray without = Written(false);
    EXPECT_FALSE(Tells(without, Secret)) << without.toStdString();
    const QByteArray with = Written(true);
    EXPECT_TRUE(Tells(with, Secret));
    for (const QByteArray& report : {without, with}) {
        EXPECT_FALSE(Tells(report, "sesame") || Tells(report, "mellon")) << report.toStdString();
        EXPECT_TRUE(report.contains("cannot reach postgresql://db/site")) << report.toStdString();
    }
    EXPECT_EQ(static_cast<int>(QFile::permissions(path)) & 0x77, 0);
}

// What is left is a trace of the last hour, whose frames are right and as long as they were.
TEST_F(SupportReportTest, TheTraceIsWhole)
{
    std::vector<TraceEntry> entries;
    for (const QByteArray& line : Written(false).split('\n')) {
        const auto read = map27::ReadTraceEntry(line.toStdString());
        if (line.startsWith('{') && std::holds_alternative<TraceEntry>(read))
            entries.push_back(std::get<TraceEntry>(read));
    }
    std::vector<map27::Octets> bodies;
    for (const TraceEntry& entry : entries)
        if (const auto parts = map27::TakeApart(entry.octets); parts && parts->IsGood())
            bodies.push_back(parts->body);
    ASSERT_EQ(bodies.size(), 3u); // the text, the unknown one, the status; not that of two hours ago
    map27::Octets text = TextMessage();
    ASSERT_EQ(bodies[0].size(), text.size() + 4);
    EXPECT_TRUE(std::equal(text.begin(), text.end() - static_cast<std::ptrdiff_t>(Secret.size()),
                           bodies[0].begin() + 4));
    EXPECT_EQ(map27::EncodeFrame(bodies[2]),
              FrameOf(map27::EncodeToRadio(map27::StatusMessage{PartyOf(31), 5})));
}

} // namespace
