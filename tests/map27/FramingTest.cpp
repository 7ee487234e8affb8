#include "map27/link/Framing.h"
#include "map27/Script.h"
#include "map27/Vectors.h"
#include "map27/link/Fcs.h"
#include "support/Table.h"

#include <random>
#include <sstream>

using namespace map27;

TEST(Fcs, GoldenVectors)
{
    int checked = 0;
    for (const QJsonValue& vector : Vectors("fcs")) {
        if (Text(vector, "data").empty())
            continue;
        const Octets octets = FromHex(Text(vector, "fcs_octets"));
        Fcs fcs;
        fcs.Add(FromHex(Text(vector, "data")));
        EXPECT_EQ(fcs.Value(), octets[0] | octets[1] << 8) << Text(vector, "id");
        EXPECT_FALSE(fcs.ResidueIsGood());
        fcs.Add(octets);
        EXPECT_TRUE(fcs.ResidueIsGood()) << Text(vector, "id");
        ++checked;
    }
    EXPECT_EQ(checked, 2);
}

TEST(Framing, GoldenFrames)
{
    for (const QJsonValue& vector : Vectors("frames")) {
        const Octets body = FromHex(Text(vector, "body"));
        EXPECT_EQ(ToHex(EncodeFrame(body)), Text(vector, "frame")) << Text(vector, "id");
        EXPECT_EQ(FrameDecoder().Feed(FromHex(Text(vector, "frame"))), std::vector<Octets>{body})
            << Text(vector, "id");
    }
    EXPECT_EQ(Vectors("frames").size(), 9);
}

TEST(Framing, DamageIsCountedAndTheNextFrameFound)
{
    // What is on the line, bodies found, counters: frames, wrongFcs, brokenEscapes, restarts, overlong,
    // noiseOctets. Longest body: 8 octets.
    for (const TableRow& row : ReadTable("map27-codec.tsv", "Damage", 13)) {
        std::string octets = row.at(1);
        for (std::size_t at; (at = octets.find("good")) != std::string::npos;)
            octets.replace(at, 4, "16 10 02 02 01 01 00 10 03 8F FB"); // LA N(R)=1
        FrameDecoder decoder(8);
        EXPECT_EQ(std::to_string(decoder.Feed(FromHex(octets)).size()), row.at(2)) << row.at(0);
        const FramingCounters& seen = decoder.Counters();
        std::ostringstream counters;
        counters << seen.frames << ' ' << seen.wrongFcs << ' ' << seen.brokenEscapes << ' ' << seen.restarts
                 << ' ' << seen.overlong << ' ' << seen.noiseOctets;
        EXPECT_EQ(counters.str(), row.at(3)) << row.at(0);
    }
}

// FCS octets may look like flags, and pieces may end anywhere.
TEST(Framing, AnyBodyInAnyPiecesComesThrough)
{
    std::mt19937 random(27);
    FrameDecoder decoder;
    Octets line;
    std::vector<Octets> sent;
    int flagLikeFcs = 0;
    const std::uint8_t awkward[] = {Syn, Dle, Stx, Etx, 0x00, 0xFF};
    for (int count = 0; count < 3000; ++count) {
        Octets body(1 + random() % 40);
        for (auto& octet : body)
            octet = random() % 2 == 0 ? awkward[random() % std::size(awkward)]
                                      : static_cast<std::uint8_t>(random());
        const Octets frame = EncodeFrame(body);
        for (const std::uint8_t flag : {Syn, Dle, Stx, Etx})
            flagLikeFcs += frame.back() == flag || frame[frame.size() - 2] == flag ? 1 : 0;
        line.insert(line.end(), frame.begin(), frame.end());
        sent.push_back(body);
    }
    EXPECT_GT(flagLikeFcs, 50);
    std::vector<Octets> received;
    for (std::size_t at = 0; at < line.size();) {
        const std::size_t piece = std::min<std::size_t>(1 + random() % 7, line.size() - at);
        for (Octets& body : decoder.Feed(OctetSpan(line).subspan(at, piece)))
            received.push_back(std::move(body));
        at += piece;
    }
    EXPECT_EQ(received, sent);
}
