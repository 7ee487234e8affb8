#include "map27/link/Framing.h"
#include "map27/Script.h"
#include "map27/Vectors.h"
#include "map27/link/Fcs.h"

#include <gtest/gtest.h>

#include <random>

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
    // LA N(R)=1 is 16 10 02 02 01 01 00 10 03 8F FB. Longest body here: 8 octets.
    const std::string good = "16 10 02 02 01 01 00 10 03 8F FB";
    struct Case {
        const char* what;
        std::string octets;
        std::size_t bodies;
        FramingCounters counters; // frames, wrongFcs, brokenEscapes, restarts, overlong, noiseOctets
    };
    const Case cases[] = {
        {"two frames back to back", good + good, 2, {2, 0, 0, 0, 0, 0}},
        {"noise between frames", "55 AA" + good + "00" + good, 2, {2, 0, 0, 0, 0, 3}},
        {"SYN repeated before the flag", "16 16" + good, 1, {1, 0, 0, 0, 0, 2}},
        {"half a start flag", "16 10 16 10 03" + good, 1, {1, 0, 0, 0, 0, 5}},
        {"a bit changed", "16 10 02 02 01 01 01 10 03 8F FB" + good, 1, {1, 1, 0, 0, 0, 0}},
        {"the FCS changed", "16 10 02 02 01 01 00 10 03 8F FA" + good, 1, {1, 1, 0, 0, 0, 0}},
        {"the end lost, the next frame begins", "16 10 02 02 01 01" + good, 1, {1, 0, 0, 1, 0, 0}},
        {"one FCS octet lost", "16 10 02 02 01 01 00 10 03 8F" + good, 1, {1, 1, 0, 0, 0, 0}},
        {"both FCS octets lost", "16 10 02 02 01 01 00 10 03" + good, 1, {1, 1, 0, 0, 0, 0}},
        {"DLE before something meaningless", "16 10 02 02 10 55 01" + good, 1, {1, 0, 1, 0, 0, 1}},
        {"DLE before SYN", "16 10 02 02 10" + good, 1, {1, 0, 1, 0, 0, 0}},
        {"longer than anything agreed",
         "16 10 02 01 02 03 04 05 06 07 08 09 0A 10 03 00" + good,
         1,
         {1, 0, 0, 0, 1, 4}},
        {"empty body", "16 10 02 10 03 FE 40" + good, 1, {1, 1, 0, 0, 0, 0}},
    };
    for (const Case& test : cases) {
        FrameDecoder decoder(8);
        EXPECT_EQ(decoder.Feed(FromHex(test.octets)).size(), test.bodies) << test.what;
        const FramingCounters& seen = decoder.Counters();
        EXPECT_TRUE(seen == test.counters)
            << test.what << ": " << seen.frames << ' ' << seen.wrongFcs << ' ' << seen.brokenEscapes << ' '
            << seen.restarts << ' ' << seen.overlong << ' ' << seen.noiseOctets;
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
