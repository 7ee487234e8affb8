#include "map27/LateLine.h"

#include <gtest/gtest.h>

using map27::Milliseconds;

// Every kind of end, delay and variation: up in time and with few requests, never lost again, every message
// once and in order, the line used, and nothing that the trace's observer takes for a breach.
TEST(LateLine, SettlesAndStays)
{
    static const char* const peers[] = {"our own", "table, T0 stays", "table, T0 grows",
                                        "table, only answers"};
    struct Kind {
        const char* what;
        Varying varying;
        unsigned seeds;
    };
    // That each frame is late for itself tears apart what was sent together; only our own end can expect
    // that.
    const Kind kinds[] = {{"constant", Varying::No, 1},
                          {"half to all", Varying::ByHalf, 2},
                          {"each frame", Varying::EachFrame, 1}};
    int cases = 0;
    for (const Peer peer : {Peer::Ours, Peer::TableT0Stays, Peer::TableT0Grows, Peer::TableAnswers}) {
        for (const Kind& kind : kinds) {
            if (kind.varying == Varying::EachFrame && peer != Peer::Ours)
                continue;
            for (const int delay : {0, 25, 50, 150, 300, 600, 1500, 3000}) {
                for (const int later : {0, 1000, -20000}) {
                    for (unsigned seed = 1; seed <= kind.seeds; ++seed) {
                        SCOPED_TRACE(testing::Message()
                                     << peers[static_cast<int>(peer)] << ", " << kind.what << ", " << delay
                                     << " ms each way, starts " << later << " ms later, seed " << seed);
                        const LateResult result = LateLine({.delay = Milliseconds(delay),
                                                            .peer = peer,
                                                            .varying = kind.varying,
                                                            .peerLater = Milliseconds(later),
                                                            .seed = seed})
                                                      .Run();
                        // With T0 that grows it counts from the peer's first octet.
                        const Milliseconds heard{peer == Peer::TableT0Grows ? delay : 0};
                        EXPECT_GE(result.up, Milliseconds(0)) << "never up";
                        EXPECT_LE(result.up, heard + 3 * result.roundTrip + Milliseconds(2000));
                        EXPECT_LE(result.requests, 8);
                        EXPECT_EQ(result.flaps, 0);
                        EXPECT_EQ(result.requestsAfter, 0);
                        EXPECT_EQ(result.wrong, 0);
                        EXPECT_EQ(result.breaches, "");
                        EXPECT_GE(result.use, 0.8);
                        ++cases;
                    }
                }
            }
        }
    }
    EXPECT_EQ(cases, 4 * 24 + 4 * 48 + 24);
}
