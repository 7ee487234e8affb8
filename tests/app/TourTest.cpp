// The guided tour from beginning to end, and what it put on the wire.

#include "map27/codec/Messages.h"
#include "map27/link/Framing.h"
#include "support/TraceConsole.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <map>
#include <optional>

namespace {

constexpr int TourLimit = 110'000; // ms

// What one end sent and the other acknowledged, by the rules of the link (MAP27 v1.5, 4.4).
struct Direction {
    std::optional<std::uint8_t> lastNumber; // N(S) of the last new LT
    std::optional<std::uint8_t> credited;   // highest N(S) + 1 that the peer's last LA allows
    bool agreed = false;                    // it has sent an LA since the last LR of either
};

class TraceChecker {
public:
    void Check(const QByteArray& line, int number)
    {
        const QJsonObject entry = QJsonDocument::fromJson(line).object();
        if (!entry.contains(QStringLiteral("frame")))
            return; // what the radio was told, and when the console came
        const bool toRadio = entry.value(QStringLiteral("dir")).toString() == QLatin1String("D>R");
        const QByteArray octets =
            QByteArray::fromHex(entry.value(QStringLiteral("frame")).toString().toLatin1());
        map27::FrameDecoder decoder;
        const auto* first = reinterpret_cast<const std::uint8_t*>(octets.constData());
        const auto bodies = decoder.Feed({first, static_cast<std::size_t>(octets.size())});
        ASSERT_EQ(bodies.size(), 1U) << "line " << number << ": " << line.toStdString();
        CheckBody(bodies.front(), toRadio, number);
    }

    int messages = 0;

private:
    void CheckBody(const map27::Octets& body, bool toRadio, int number)
    {
        ASSERT_GE(body.size(), 4U) << "line " << number;
        Direction& own = toRadio ? m_toRadio : m_fromRadio;
        Direction& other = toRadio ? m_fromRadio : m_toRadio;
        switch (body[0]) {
        case 1: // LR: everything begins anew
            m_toRadio = m_fromRadio = {};
            break;
        case 2: // LA
            own.agreed = true;
            other.credited = static_cast<std::uint8_t>(body[1] + body[2]);
            break;
        case 4:
            CheckTransfer(body, own, other, toRadio, number);
            break;
        default:
            ADD_FAILURE() << "line " << number << ": packet type " << int(body[0]);
        }
    }

    void CheckTransfer(const map27::Octets& body, Direction& own, const Direction& other, bool toRadio,
                       int number)
    {
        const std::uint8_t sequence = body[1];
        const std::uint8_t expected = own.lastNumber ? static_cast<std::uint8_t>(*own.lastNumber + 1) : 1;
        const bool repeated = own.lastNumber && sequence == *own.lastNumber;
        // While requests for a link cross, an end may send for a moment on a link that the other has left.
        if (!own.agreed || !other.agreed) {
            own.lastNumber = sequence;
            return;
        }
        EXPECT_TRUE(sequence == expected || repeated) << "line " << number << ": N(S) " << int(sequence);
        ASSERT_TRUE(own.credited) << "line " << number << ": sent without credit";
        if (!repeated) {
            const auto left = static_cast<std::uint8_t>(*own.credited - sequence);
            EXPECT_TRUE(left >= 1 && left < 128) << "line " << number << ": beyond the credit";
        }
        own.lastNumber = sequence;
        const map27::OctetSpan message(body.data() + 4, body.size() - 4);
        if (toRadio)
            EXPECT_TRUE(std::holds_alternative<map27::ToRadio>(map27::DecodeToRadio(message)))
                << "line " << number;
        else
            EXPECT_TRUE(std::holds_alternative<map27::FromRadio>(map27::DecodeFromRadio(message)))
                << "line " << number;
        ++messages;
    }

    Direction m_toRadio;
    Direction m_fromRadio;
};

QStringList LinesOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

TEST(Tour, EveryStepSucceedsAndTheWireIsSound)
{
    QTemporaryDir folder;
    QProcess console;
    console.setProcessChannelMode(QProcess::ForwardedChannels);
    console.start(QStringLiteral(CONSOLE_PROGRAM), {QStringLiteral("--tour"), folder.path()});
    ASSERT_TRUE(console.waitForFinished(TourLimit));
    const QStringList log = LinesOf(folder.filePath(QStringLiteral("tour.log")));
    for (const QString& line : log)
        EXPECT_TRUE(line.endsWith(QLatin1String(": ok"))) << line.toStdString();
    EXPECT_EQ(console.exitCode(), 0);
    EXPECT_GT(log.size(), 40);
    EXPECT_EQ(QDir(folder.path()).entryList({QStringLiteral("*.png")}).size(), log.size());

    TraceChecker checker;
    // One trace for each time that the radio was started; one that was killed may have left half a line.
    const QDir files(folder.path());
    for (const QString& name : files.entryList({QStringLiteral("wire*.jsonl")}, QDir::Files)) {
        const QStringList trace = LinesOf(files.filePath(name));
        for (int i = 0; i < trace.size(); ++i) {
            if (i + 1 < trace.size() || trace[i].endsWith(QLatin1Char('}')))
                checker.Check(trace[i].toUtf8(), i + 1);
        }
    }
    EXPECT_GT(checker.messages, 50);
    // What was recorded at either end can be played again.
    std::size_t again = 0;
    for (const QString& name :
         files.entryList({QStringLiteral("wire*.jsonl"), QStringLiteral("line-trace.jsonl")}, QDir::Files))
        again += ExpectToComeAgain(files.filePath(name));
    EXPECT_GT(again, 150U);
}

} // namespace
