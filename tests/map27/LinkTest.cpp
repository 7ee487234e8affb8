#include "map27/link/Link.h"
#include "map27/Script.h"

#include <gtest/gtest.h>

using namespace map27;

namespace {

// One link, its other end played by the script. Bodies are written without framing:
//   start | stop | reset MS | send HEX | hold | release | noise HEX | + MS (time passes) | < BODY (from the
//   peer)
class LinkBench {
public:
    explicit LinkBench(LinkParameters parameters) : m_link(parameters) {}

    std::vector<std::string> operator()(const std::string& step)
    {
        m_seen.clear();
        const auto words = Words(step);
        const std::string rest = step.size() > words[0].size() ? step.substr(words[0].size()) : "";
        if (words[0] == "start")
            Take(m_link.Start(m_now));
        else if (words[0] == "stop")
            m_link.Stop();
        else if (words[0] == "reset")
            Take(m_link.Reset(m_now, Milliseconds(std::stoi(rest))));
        else if (words[0] == "send")
            Send(FromHex(rest));
        else if (words[0] == "hold" || words[0] == "release")
            Take(m_link.HoldReceiving(words[0] == "hold", m_now));
        else if (words[0] == "noise")
            Take(m_link.Feed(FromHex(rest), m_now));
        else if (words[0] == "<")
            Take(m_link.Feed(EncodeFrame(FromHex(rest)), m_now));
        else if (words[0] == "+")
            Pass(Milliseconds(std::stoi(rest)));
        else
            ADD_FAILURE() << "unknown step " << step;
        return m_seen;
    }

    const Link& TheLink() const { return m_link; }

private:
    void Pass(Milliseconds time)
    {
        const TimePoint end = m_now + time;
        for (auto deadline = m_link.NextDeadline(); deadline && *deadline <= end;
             deadline = m_link.NextDeadline()) {
            EXPECT_GE(*deadline, m_now);
            m_now = *deadline;
            Take(m_link.OnTime(m_now));
        }
        m_now = end;
    }

    void Send(const Octets& message)
    {
        static const char* const results[] = {"", "not ready", "empty", "too long", "queue full"};
        auto outcome = m_link.Send(message, m_now);
        if (outcome.result != SendResult::Accepted)
            m_seen.push_back(std::string("! ") + results[static_cast<int>(outcome.result)]);
        Take(outcome.output);
    }

    void Take(const LinkOutput& output)
    {
        FrameDecoder decoder;
        for (const Octets& frame : output.frames)
            for (const Octets& body : decoder.Feed(frame))
                m_seen.push_back("> " + ToHex(body));
        for (const LinkEvent& event : output.events) {
            if (const auto* ready = std::get_if<LinkReady>(&event))
                m_seen.push_back("! ready " + std::to_string(ready->n1) + ' ' + std::to_string(ready->k) +
                                 ' ' + std::to_string(ready->version));
            else if (const auto* failed = std::get_if<LinkFailed>(&event))
                m_seen.push_back("! failed: " + std::string(LinkFailureText(failed->reason)) + ", lost " +
                                 std::to_string(failed->messagesLost));
            else
                m_seen.push_back("! message " + ToHex(std::get<MessageReceived>(event).message));
        }
    }

    Link m_link;
    TimePoint m_now{Milliseconds(1000)};
    std::vector<std::string> m_seen;
};

// Our LR was answered, the peer answered by LA, and ours lets it send. Time: shortly after.
const std::string Up = R"(
    start => > 01 0E 01 01
    < 01 0E 01 01 => > 01 0E 01 01
    < 02 01 01 00 => > 02 01 01 00 ; ! ready 14 1 1
)";

LinkParameters Default()
{
    return {};
}

struct Case {
    const char* what;
    std::string script;
    LinkParameters parameters = Default();
};

std::string Times(const std::string& text, int count)
{
    std::string all;
    for (int index = 0; index < count; ++index)
        all += text;
    return all;
}

void RunCases(const std::vector<Case>& cases)
{
    for (const Case& test : cases) {
        SCOPED_TRACE(test.what);
        LinkBench bench(test.parameters);
        RunScript(test.script, std::ref(bench));
        if (testing::Test::HasFailure())
            return;
    }
}

} // namespace

TEST(Link, Establishment)
{
    LinkParameters small;
    small.n1 = 6;
    LinkParameters slow = LinkParameters::ForBitRate(1200);
    RunCases({
        {"nobody there: T0 doubles up to 15 s", R"(
            start => > 01 0E 01 01
            + 100 => > 01 0E 01 01
            + 199
            + 1 => > 01 0E 01 01
            + 12000 => > 01 0E 01 01 ; > 01 0E 01 01 ; > 01 0E 01 01  # intervals of 400, 800, 1600 and 3200
                > 01 0E 01 01
            + 700 => > 01 0E 01 01
            + 12800 => > 01 0E 01 01
            + 14699
            + 1 => > 01 0E 01 01
            + 15000 => > 01 0E 01 01)"},
        {"at 1200 bit/s T0 begins with 250 ms", "start\n > 01 0E 01 01\n + 249\n + 1\n > 01 0E 01 01", slow},
        {"the peer answers LR, LA; our LA follows", Up},
        {"the peer's LR finds us waiting, and its second is accepted", R"(
            start => > 01 0E 01 01
            < 01 0E 01 01 => > 01 0E 01 01
            < 01 0E 01 01 => > 02 01 01 00 ; ! ready 14 1 1
            send AA           # no credit before the peer's LA
            < 02 01 01 00 => > 04 01 01 00 AA)"},
        {"the peer proposes less: the third LR carries the minima", R"(
            start => > 01 0E 01 01
            < 01 06 01 01 => > 01 06 01 01
            < 01 06 01 01 => > 02 01 01 00 ; ! ready 6 1 1)"},
        {"the peer proposes more: not accepted until it agrees", R"(
            start => > 01 06 01 01
            < 01 0E 04 01 => > 01 06 01 01
            < 01 0E 04 01 => > 01 06 01 01
            < 01 06 01 01 => > 02 01 01 00 ; ! ready 6 1 1)",
         small},
        {"a window of none is taken as one", R"(
            start => > 01 0E 01 01
            < 01 0E 00 01 => > 01 0E 01 01
            < 01 0E 00 01 => > 02 01 01 00 ; ! ready 14 1 1)"},
        {"LA and LT in reset_wait are answered by LR", R"(
            start => > 01 0E 01 01
            < 02 05 01 00 => > 01 0E 01 01
            < 04 05 01 00 AA => > 01 0E 01 01)"},
        {"in link_wait an LT goes back to the request, an LA of the old link is ignored", R"(
            start => > 01 0E 01 01
            < 01 0E 01 01 => > 01 0E 01 01
            < 02 39 01 00
            < 04 05 01 00 AA => > 01 0E 01 01
            < 01 0E 01 01 => > 01 0E 01 01
            < 02 01 01 00 => > 02 01 01 00 ; ! ready 14 1 1)"},
        {"T0 in link_wait starts from our own maximum again", R"(
            start => > 01 0E 01 01
            < 01 06 01 01 => > 01 06 01 01
            + 100 => > 01 0E 01 01)"},
        {"answered in circles: waits for a quiet line",
         "start\n > 01 0E 01 01\n" + Times("< 02 05 01 00\n > 01 0E 01 01\n", 6) + R"(
            < 02 05 01 00
            + 99
            noise 55
            + 99
            < 01 0E 01 01
            + 99
            + 1 => > 01 0E 01 01
            < 01 0E 01 01 => > 01 0E 01 01)"},
        {"but not for ever", "start\n > 01 0E 01 01\n" + Times("< 02 05 01 00\n > 01 0E 01 01\n", 6) +
                                 "< 02 05 01 00\n" + Times("+ 90\n noise 55\n", 5) +
                                 "+ 49\n + 1\n > 01 0E 01 01"},
        {"stopped: silent", "start\n > 01 0E 01 01\n stop\n + 60000\n < 01 0E 01 01\n send AA\n ! not ready"},
        {"reset: nothing is answered during the pause", Up + R"(
            reset 500
            < 02 01 01 00
            < 01 0E 01 01
            + 499
            + 1 => > 01 0E 01 01
            < 01 0E 01 01 => > 01 0E 01 01
            < 02 01 01 00 => > 02 01 01 00 ; ! ready 14 1 1
            reset 0 => > 01 0E 01 01)"},
    });
}

TEST(Link, Transfer)
{
    LinkParameters wide;
    wide.k = 3;
    LinkParameters delayed;
    delayed.t2 = Milliseconds(300);
    LinkParameters tiny;
    tiny.n1 = 0;
    tiny.queueLimit = 2;
    const std::string wideUp = R"(
        start => > 01 0E 03 01
        < 01 0E 03 01 => > 01 0E 03 01
        < 02 01 03 00 => > 02 01 03 00 ; ! ready 14 3 1
        )";
    RunCases({
        {"one after another, the second waits for the first one's LA", Up + R"(
            send AA => > 04 01 01 00 AA
            send BB
            < 02 02 01 00 => > 04 02 01 00 BB
            < 02 03 01 00)"},
        {"received: delivered and acknowledged at once", Up + R"(
            < 04 01 00 00 80 01 => > 02 02 01 00 ; ! message 80 01
            < 04 02 01 00 80 02 => > 02 03 01 00 ; ! message 80 02)"},
        {"received again: acknowledged, not delivered", Up + R"(
            < 04 01 01 00 80 01 => > 02 02 01 00 ; ! message 80 01
            < 04 01 01 00 80 01 => > 02 02 01 00)"},
        {"out of order: the expected number is told", Up + "< 04 05 01 00 80 01\n > 02 01 01 00"},
        {"no data: acknowledged, nothing to deliver", Up + "< 04 01 01 00\n > 02 02 01 00"},
        {"lost LT: repeated after T1 with AR", Up + R"(
            send AA => > 04 01 01 00 AA
            + 1499
            + 1 => > 04 01 01 00 AA
            < 02 02 01 00
            + 8000
            + 600 => > 02 01 01 00)"}, // T3: ten seconds after the last LA
        {"the peer asks for a repetition", Up + R"(
            send AA => > 04 01 01 00 AA
            + 400
            < 02 01 01 00 => > 04 01 01 00 AA)"},
        {"a crossing LA, too early to be an answer, asks for none", Up + R"(
            send AA => > 04 01 01 00 AA
            + 5
            < 02 01 01 00
            + 255                     # held up behind a long LT
            < 02 01 01 00
            < 02 02 01 00)"},
        {"keep-alives without traffic are no repetition requests and are not answered", Up + R"(
            < 02 01 01 00
            < 02 01 01 00
            < 02 01 01 00)"},
        {"credit 0: waits for credit", Up + R"(
            send AA => > 04 01 01 00 AA
            < 02 02 00 00
            send BB
            + 5000
            < 02 02 01 00 => > 04 02 01 00 BB)"},
        {"no room while under way: repeated by T1, not by the LA", Up + R"(
            send AA => > 04 01 01 00 AA
            + 60
            < 02 01 00 00
            < 02 01 00 00
            + 1440 => > 04 01 01 00 AA
            + 400
            < 02 01 01 00 => > 04 01 01 00 AA)"},
        {"we have no room: dropped, credit told when there is", Up + R"(
            hold
            < 04 01 01 00 80 01 => > 02 01 00 00
            release => > 02 01 01 00
            < 04 01 01 00 80 01 => > 02 02 01 00 ; ! message 80 01)"},
        {"a window of three: AR with the last credit, all repeated", wideUp + R"(
            send AA => > 04 01 00 00 AA
            send BB => > 04 02 00 00 BB
            send CC => > 04 03 01 00 CC
            send DD
            < 02 02 03 00 => > 04 04 01 00 DD
            + 1500 => > 04 02 01 00 BB ; > 04 03 01 00 CC ; > 04 04 01 00 DD
            < 02 05 03 00)",
         wide},
        {"more credit than agreed is not used", wideUp + R"(
            < 02 01 FF 00
            send AA => > 04 01 00 00 AA
            send BB => > 04 02 00 00 BB
            send CC => > 04 03 01 00 CC
            send DD)",
         wide},
        {"with T2 an LA that is not wanted at once waits", Up + R"(
            < 04 01 00 00 80 01 => ! message 80 01
            + 299
            + 1 => > 02 02 01 00)",
         delayed},
        {"what cannot be sent", R"(
            send AA => ! not ready
            start => > 01 00 01 01
            < 01 00 01 01 => > 01 00 01 01
            < 01 00 01 01 => > 02 01 01 00 ; ! ready 0 1 1
            send => ! empty
            send 00112233445566778899AABBCCDDEEFF00 => ! too long
            send 00112233445566778899AABBCCDDEEFF
            send BB
            send CC => ! queue full)",
         tiny},
        {"sound frames that mean nothing",
         Up + "< 05 01 01 00\n < 02 01\n < 01\n noise 16 10 02 02 01 01 00 10 03 00 00"},
    });
}

TEST(Link, Failures)
{
    LinkParameters checked;
    checked.checkWindow = true;
    LinkParameters noRhythm;
    noRhythm.t3 = Milliseconds(1000000);
    const std::string failedToRequest = R"(
                > 01 0E 01 01
                ! failed: )";
    RunCases({
        {"ten times unanswered",
         Up + R"(
            send AA => > 04 01 01 00 AA
            send BB
            + 13500)" +
             Times("\n > 04 01 01 00 AA", 9) + R"(
            + 1500 => > 01 0E 01 01
                ! failed: message repeated too often without an acknowledgement, lost 2)",
         noRhythm},
        {"ten times asked for", Up + "send AA\n > 04 01 01 00 AA\n" +
                                    Times("+ 400\n < 02 01 01 00\n > 04 01 01 00 AA\n", 9) +
                                    "+ 400\n < 02 01 01 00" + failedToRequest +
                                    "message repeated too often without an acknowledgement, lost 1"},
        {"silence for T4",
         Up + "+ 79999\n + 1" + failedToRequest + "nothing valid received for too long, lost 0", noRhythm},
        {"anything valid restarts T4", Up + R"(
            + 79999
            < 02 01 01 00
            + 79999
            < 04 09 01 00 AA => > 02 01 01 00
            + 79999
            + 1 => > 01 0E 01 01 ; ! failed: nothing valid received for too long, lost 0)",
         noRhythm},
        {"an LA every T3, not restarted by what is received", Up + R"(
            + 9000
            < 02 01 01 00
            send AA => > 04 01 01 00 AA
            + 100
            < 02 02 01 00
            + 900 => > 02 01 01 00)"},
        {"an acknowledgement of what was never sent",
         Up + "< 02 02 01 00" + failedToRequest + "acknowledgement of something that was not sent, lost 0"},
        {"outside the window, when that is checked",
         Up + "< 04 09 01 00 AA" + failedToRequest + "message numbered outside the window, lost 0", checked},
        {"a repetition is inside the window", Up + R"(
            < 04 01 01 00 AA => > 02 02 01 00 ; ! message AA
            < 04 01 01 00 AA => > 02 02 01 00)",
         checked},
        {"LR while ready: told, and straight to link_wait", Up + R"(
            send AA => > 04 01 01 00 AA
            < 01 06 01 01 => > 01 06 01 01 ; ! failed: the other end asked for a new link, lost 1
            < 02 01 01 00 => > 02 01 01 00 ; ! ready 6 1 1
            send BB => > 04 01 01 00 BB)"},
        {"a peer that goes to reset_wait instead: its LR, then again LR", Up + R"(
            < 01 0E 01 01 => > 01 0E 01 01 ; ! failed: the other end asked for a new link, lost 0
            < 01 0E 01 01 => > 02 01 01 00 ; ! ready 14 1 1)"},
        {"the other end restarts, with more than before", R"(
            start => > 01 0E 01 01
            < 01 06 01 01 => > 01 06 01 01
            < 02 01 01 00 => > 02 01 01 00 ; ! ready 6 1 1
            < 01 10 01 01 => > 01 0E 01 01 ; ! failed: the other end asked for a new link, lost 0)"},
        {"after N1 went down with one link the next proposes the maximum again", Up + R"(
            < 01 06 01 01 => > 01 06 01 01 ; ! failed: the other end asked for a new link, lost 0
            + 100 => > 01 0E 01 01)"},
    });
}

TEST(Link, NumbersPassTwoHundredAndFiftyFive)
{
    LinkBench bench({});
    RunScript(Up, std::ref(bench));
    char text[256];
    for (int number = 1; number <= 600; ++number) {
        std::snprintf(text, sizeof text,
                      "send AA\n > 04 %02X 01 00 AA\n < 02 %02X 01 00\n"
                      "< 04 %02X 01 00 BB\n > 02 %02X 01 00\n ! message BB",
                      number & 255, (number + 1) & 255, number & 255, (number + 1) & 255);
        RunScript(text, std::ref(bench));
        ASSERT_FALSE(HasFailure()) << number;
    }
    EXPECT_EQ(bench.TheLink().Counters().resets, 0u);
}

TEST(Link, CountersTellWhatHappened)
{
    LinkBench bench({});
    RunScript(Up + R"(
        < 04 01 01 00 AA => > 02 02 01 00 ; ! message AA
        < 04 01 01 00 AA => > 02 02 01 00
        < 04 80 01 00 AA => > 02 02 01 00
        < 07 01 01 00
        < 02 01
        noise 16 10 02 02 01 01 00 10 03 00 00
        send BB => > 04 01 01 00 BB
        + 1500 => > 04 01 01 00 BB
        < 02 02 01 00
        reset 100
    )",
              std::ref(bench));
    const LinkCounters counters = bench.TheLink().Counters();
    EXPECT_EQ(counters.framesIn, 8u);
    EXPECT_EQ(counters.framesOut, 8u);
    EXPECT_EQ(counters.messagesIn, 1u);
    EXPECT_EQ(counters.messagesOut, 1u);
    EXPECT_EQ(counters.retransmissions, 1u);
    EXPECT_EQ(counters.duplicates, 1u);
    EXPECT_EQ(counters.sequenceErrors, 1u);
    EXPECT_EQ(counters.unknownPackets, 1u);
    EXPECT_EQ(counters.malformed, 1u);
    EXPECT_EQ(counters.framing.wrongFcs, 1u);
    EXPECT_EQ(counters.resets, 1u);
}
