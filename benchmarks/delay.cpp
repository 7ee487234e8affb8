// The link over lines that are late, in virtual time: requests, time until it stays up, how often it was lost
// again, and how much of the window is used.

#include "map27/LateLine.h"

#include <cstdio>

int main()
{
    static const char* const peers[] = {"our own", "table, T0 100 ms", "table, T0 to 15 s", "answers only"};
    static const char* const varyings[] = {"", "half to all of it", "0 to it", "0 to it, each frame"};
    std::printf("| Other end | Delay each way | varying | Requests | Up after | Lost again | Requests in the "
                "10 minutes after "
                "| Messages wrong | Window used |\n"
                "|---|---|---|---|---|---|---|---|---|\n");
    for (const Peer peer : {Peer::Ours, Peer::TableT0Stays, Peer::TableT0Grows, Peer::TableAnswers}) {
        for (const int delay : {0, 50, 150, 600, 3000}) {
            for (const Varying varying : {Varying::No, Varying::FromNothing}) {
                if (delay == 0 && varying != Varying::No)
                    continue;
                const LateResult result =
                    LateLine({.delay = map27::Milliseconds(delay), .peer = peer, .varying = varying}).Run();
                std::printf("| %s | %.2f s | %s | %d | ", peers[static_cast<int>(peer)], delay / 1000.0,
                            varyings[static_cast<int>(varying)], result.requests);
                if (result.up < map27::Milliseconds(0))
                    std::printf("never");
                else
                    std::printf("%.2f s", static_cast<double>(result.up.count()) / 1000.0);
                std::printf(" | %d | %d | %d | %.0f %% |\n", result.flaps, result.requestsAfter, result.wrong,
                            result.use * 100);
            }
        }
    }
    return 0;
}
