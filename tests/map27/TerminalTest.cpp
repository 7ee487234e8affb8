#include "map27/TerminalBench.h"

#include <gtest/gtest.h>

using namespace map27;

namespace {

struct Case {
    const char* what;
    std::string script;
};

void RunCases(const std::vector<Case>& cases)
{
    for (const Case& test : cases) {
        SCOPED_TRACE(test.what);
        TerminalBench bench;
        bench.BringUp();
        bench.RunScript(test.script);
        if (testing::Test::HasFailure())
            return;
    }
}

} // namespace

TEST(Terminal, Messages)
{
    RunCases({
        {"status delivered", R"(
            status 2/31 5 => > 80 02 00 1F 00 05
            < C0 02 00 1F 00 00 => ! message 192 00 to 2/31)"},
        {"any number of queued, then a failure", R"(
            status 2/31 5 => > 80 02 00 1F 00 05
            < D0 02 00 1F 00 02 => ! message 208 02 to 2/31
            < D0 02 00 1F 53 05 01 2C 26 => ! message 208 26 to 2/31
            < E0 02 00 1F 00 04 => ! message 224 04 to 2/31
            status 2/31 6 => > 80 02 00 1F 00 06)"},
        {"another prefix is acknowledged with the dummy address", R"(
            status 5/300 5 => > 80 05 01 2C 00 05
            < C0 00 00 00 00 00 => ! message 192 00 to 5/300)"},
        {"text, seven and eight bits, short and medium", R"(
            text7 2/31 HELLO => > 81 02 00 1F 00 B7 48 45 4C 4C 4F
            < C0 02 00 1F 00 00 => ! message 192 00 to 2/31
            text8 2/31 HELLO => > 81 02 00 1F 00 F7 48 45 4C 4C 4F
            < C0 02 00 1F 00 00 => ! message 192 00 to 2/31
            text8 2/31 MEET AT GATE 4 AT NOON!
                > 82 02 00 1F 00 F7 4D 45 45 54 20 41 54 20 47 41 54 45 20 34 20 41 54 20 4E 4F 4F 4E 21)"},
        {"binary", "binary 2/31 564B01\n > 81 02 00 1F 00 87 56 4B 01"},
        {"received at any time", R"(
            < 80 02 00 1F 00 1E => ! status 2/31 30
            status 2/31 5 => > 80 02 00 1F 00 05
            < 81 05 13 88 00 B7 49 3A 30 31 32 33 34 35 36 37 00 00 => ! text 5/5000 [I:01234567]
            < 82 05 13 88 00 84 A5 F8 => ! text 5/5000 [A5F8]
            < 80 02 00 1F 00 20 => ! report status range  # 32 is no status
            < 81 02 00 1F 00 E7 41 42 => ! report unknown coding ; ! text 2/31 [4142]
            < C0 02 00 1F 00 00 => ! message 192 00 to 2/31)"},
        {"the end of the radio's own making", R"(
            text7 2/31 HI => > 81 02 00 1F 00 B7 48 49
            < A6 02 00 1F 06 => ! cleared by radio A6 06
            < E0 02 00 1F 00 04 => ! report late)"},
        {"what speaks of a call does not end a message", R"(
            status 2/31 5 => > 80 02 00 1F 00 05
            < A6 02 00 1F 0E => ! report late
            < 86 02 00 1F 0B => ! report late
            < C4 02 00 1F 00 00 => ! report late
            < C0 02 00 1F 00 00 => ! message 192 00 to 2/31)"},
        {"the radio complains", R"(
            status 2/31 5 => > 80 02 00 1F 00 05
            < B4 06 => ! report protocol  # a notice, no complaint
            < B4 02 => ! report protocol ; ! message 224 02 via B4 to 2/31
            < B4 02 => ! report protocol)"},
        {"refusals change nothing", R"(
            status 2/31 32 => ! refused: status 32, at most 31
            status 2/0 5 => ! refused: not an address that can be called
            status 2/8103 5 => ! refused: not an address that can be called
            text8 2/8190 HELLO => ! refused: not an address that can be called
            text7 2/31 5 € => ! refused: the coding has no character "€"
            text7 2/31 => ! refused: the text is empty
            binary 2/31 00112233445566778899AABBCCDDEEFF00112233445566
                ! refused: octets of data: 23, at most 22
            answer => ! refused: no call rings
            refuse => ! refused: no call rings
            ptt on => ! refused: not in a call
            ptt off
            clear
            cancel
            ask 5 => ! refused: no such radio information
            status 2/31 5 => > 80 02 00 1F 00 05
            status 2/31 6 => ! refused: a message or call is in progress
            call 2/31 => ! refused: a message or call is in progress
            < C0 02 00 1F 00 00 => ! message 192 00 to 2/31)"},
    });
}

TEST(Terminal, AfterACancel)
{
    const std::string cancelled = R"(
        status 2/31 5 => > 80 02 00 1F 00 05
        cancel => > A6 02 00 1F 08
    )";
    RunCases({
        {"the late C0 does not confirm the next message, which waits for it", cancelled + R"(
            status 2/40 6
            < C0 02 00 1F 00 00 => > 80 02 00 28 00 06 ; ! report cancel confirmed
            < C0 02 00 28 00 00 => ! message 192 00 to 2/40)"},
        {"neither does a late D0 or a late E0", cancelled + R"(
            status 2/40 6
            < D0 02 00 1F 00 02 => ! report late
            < E0 02 00 1F 00 08 => > 80 02 00 28 00 06 ; ! report cancel confirmed
            < E0 02 00 28 00 04 => ! message 224 04 to 2/40)"},
        {"nor a late A6", cancelled + R"(
            status 2/40 6
            < A6 02 00 1F 00 => > 80 02 00 28 00 06 ; ! report cancel confirmed)"},
        {"it waits two seconds at most", cancelled + R"(
            + 500
            status 2/40 6
            + 1499
            + 1 => > 80 02 00 28 00 06)"},
        {"a message that waits can be cancelled, and is then never sent", cancelled + R"(
            status 2/40 6
            cancel
            + 5000
            status 2/41 7 => > 80 02 00 29 00 07)"},
        {"the answer to the cancelling is not the answer to the next message", cancelled + R"(
            < C0 02 00 1F 00 00 => ! report cancel confirmed  # it had been delivered already
            status 2/40 6 => > 80 02 00 28 00 06
            < B4 03 => ! report cancel confirmed  # so the radio had nothing to cancel
            < C0 02 00 28 00 00 => ! message 192 00 to 2/40)"},
        {"once the cancelling is confirmed a state mismatch is about the next message", cancelled + R"(
            < E0 02 00 1F 00 08 => ! report cancel confirmed
            status 2/40 6 => > 80 02 00 28 00 06
            < B4 03 => ! report protocol ; ! message 224 03 via B4 to 2/40)"},
        {"a call does not wait, and the cancelled message's end does not end it", cancelled + R"(
            call 2/40 => > A4 02 00 28 00 08
            < A6 02 00 1F 00 => ! report cancel confirmed
            < C4 02 00 28 00 00 => ! call 196 00)"},
        {"but no radio contact ends it", cancelled + R"(
            call 2/40 => > A4 02 00 28 00 08
            < A6 00 00 00 04 => ! cleared by radio A6 04)"},
        {"an incoming call takes over from one that waits", cancelled + R"(
            status 2/40 6
            < A5 02 00 1F 00 00 => ! cleared by incoming A5 00 ; ! incoming A5 00 2/31
            + 5000)"},
        {"with the link everything is forgotten", cancelled + R"(
            status 2/40 6
            radio resets => ! cleared by link lost 00 00 ; ! failed: the other end asked for a new link
                ! ready
                ! personality 123456
                ! numbering 2/31
                ! condition 100 128
                ! network 300 4660
            + 5000
            status 2/41 7 => > 80 02 00 29 00 07)"},
    });
}

TEST(Terminal, OutgoingCalls)
{
    RunCases({
        {"with ringing, talking and hanging up", R"(
            call 2/31 => > A4 02 00 1F 00 08
            < D4 02 00 1F 00 01 => ! call 212 01
            < C4 02 00 1F 00 00 => ! call 196 00
            ptt on => > B2 03
            < B2 07 C8 05 => ! condition 111 200
            ptt off => > B2 02
            status 2/31 5 => ! refused: a message or call is in progress
            < D5 02 00 1F 00 0A => ! answer 213 0A
            clear => > 86 02 00 1F 07
            clear)"},
        {"the octets of every kind", R"(
            call 2/31 priority => > A4 02 00 1F 00 00
            < E4 02 00 1F 00 0C => ! call 228 0C
            call 2/7000 oneway => > A4 02 1B 58 00 28
            < C4 02 1B 58 00 00 => ! call 196 00
            clear => > 86 02 1B 58 07
            call 0/8191 oneway => > A4 00 1F FF 00 28
            cancel => > A6 00 1F FF 08
            call 2/31 emergency => > A5 02 00 1F 00 00
            < D4 02 00 1F 00 05 => ! call 212 05
            < E4 02 00 1F 00 04 => ! call 228 04
            call 2/31 emergency oneway => > A5 02 00 1F 00 20
            cancel => > A6 02 00 1F 08
            gateway 1 01223 => > A4 00 1F A5 13 01 22 3F 08
            clear => > A6 00 1F A5 08
            gateway 2 4321 priority => > A4 00 1F A6 12 43 21 00)"},
        {"gateway refusals", R"(
            gateway 3 01223 => ! refused: no such gateway
            gateway 1 => ! refused: no telephone number
            gateway 1 01-23 => ! refused: a telephone number has digits, * and # only
            gateway 1 1234567890123456789012345 => ! refused: digits of the telephone number: 25, at most 24
            gateway 1 123456789012345678901234 => > A4 00 1F A5 1C 12 34 56 78 90 12 34 56 78 90 12 34 08
            cancel => > A6 00 1F A5 08
            call 2/8120 => ! refused: not an address that can be called)"},
        {"the far end hangs up", R"(
            call 2/31 => > A4 02 00 1F 00 08
            < C4 02 00 1F 00 00 => ! call 196 00
            < C4 02 00 1F 00 00       # said twice
            < 86 02 00 1F 0B => ! cleared by radio 86 0B
            < 86 02 00 1F 0B => ! report late)"},
        {"no contact", R"(
            call 2/31 => > A4 02 00 1F 00 08
            < A6 00 00 00 04 => ! cleared by radio A6 04)"},
        {"the radio complains while it sets up, and during the call", R"(
            call 2/31 => > A4 02 00 1F 00 08
            < B4 05 => ! report protocol ; ! call 228 05 via B4
            call 2/31 => > A4 02 00 1F 00 08
            < C4 02 00 1F 00 00 => ! call 196 00
            ptt on => > B2 03
            < B4 03 => ! report protocol
            clear => > 86 02 00 1F 07)"},
        {"late acknowledgements do not end a call", R"(
            call 2/31 => > A4 02 00 1F 00 08
            < C0 02 00 1F 00 00 => ! report late
            < C4 02 00 1F 00 00 => ! call 196 00
            < E0 02 00 1F 00 08 => ! report late
            < E4 02 00 1F 00 0C => ! report late
            ptt on => > B2 03)"},
        {"progress of the call given up just before is not the next one's", R"(
            call 2/31 => > A4 02 00 1F 00 08
            cancel => > A6 02 00 1F 08
            call 2/40 => > A4 02 00 28 00 08
            < C4 02 00 1F 00 00 => ! report late
            < B4 03 => ! report cancel confirmed
            < C4 02 00 28 00 00 => ! call 196 00)"},
        {"the radio confirms a hang-up when the next call is under way", R"(
            call 2/31 => > A4 02 00 1F 00 08
            < C4 02 00 1F 00 00 => ! call 196 00
            clear => > 86 02 00 1F 07
            call 2/40 => > A4 02 00 28 00 08
            < 86 02 00 1F 0B => ! report cancel confirmed
            < 86 02 00 28 0B => ! cleared by radio 86 0B  # a second one is meant)"},
    });
}

TEST(Terminal, IncomingCalls)
{
    RunCases({
        {"rings, answered, ended by the far end", R"(
            < A4 02 00 1F 00 08 => ! incoming A4 08 2/31
            status 2/40 5 => ! refused: a message or call is in progress
            answer => > B2 02
            < C5 02 00 1F 00 00 => ! answer 197 00
            < C5 02 00 1F 00 00
            < 86 02 00 1F 0B => ! cleared by radio 86 0B)"},
        {"refused", R"(
            < A4 02 00 1F 00 08 => ! incoming A4 08 2/31
            refuse => > B2 00
            < B4 03 => ! report cancel confirmed)"},
        {"cancelling refuses as well, and so does hanging up", R"(
            < A4 02 00 1F 00 08 => ! incoming A4 08 2/31
            cancel => > B2 00
            < A4 02 00 1F 00 08 => ! incoming A4 08 2/31
            clear => > B2 00)"},
        {"the caller gives up; and a call noted for call-back", R"(
            < A4 02 00 1F 00 08 => ! incoming A4 08 2/31
            < E5 02 00 1F 00 03 => ! answer 229 03
            < A4 02 00 1F 00 08 => ! incoming A4 08 2/31
            < E5 02 00 1F 00 07 => ! answer 229 07
            < E5 02 00 28 00 07 => ! answer 229 07
            < E5 02 00 28 00 03 => ! report late)"},
        {"already connected, and said again", R"(
            < A4 04 05 A0 00 00 => ! incoming A4 00 4/1440
            < B2 06 9E FF => ! condition 110 158
            < B2 07 9E FF => ! condition 111 158
            < C5 04 05 A0 00 00
            < B5 41 55 00 00 => ! network 341 0
            cancel                    # leaves a connected call alone
            clear => > 86 04 05 A0 07)"},
        {"group, emergency, system-wide, dummy caller", R"(
            < A4 02 00 1F 00 20 => ! incoming A4 20 2/31
            < A5 02 00 1F 00 28 => ! cleared by incoming A5 00 ; ! incoming A5 28 2/31
            answer => > B2 02
            < A4 05 1F FF 00 20 => ! cleared by incoming A4 00 ; ! incoming A4 20 5/8191
            < A4 00 00 00 00 20 => ! cleared by incoming A4 00 ; ! incoming A4 20 0/0)"},
        {"gateways: the radio's own prefix is told as 0, another as it is", R"(
            < A4 02 1F A5 00 08 => ! incoming A4 08 0/8101
            refuse => > B2 00
            < A4 02 1F A6 00 08 => ! incoming A4 08 0/8102
            answer => > B2 02
            < C5 02 1F A6 00 00 => ! answer 197 00
            clear => > 86 02 1F A6 07  # with the address of the wire
            < A4 03 1F A5 00 08 => ! incoming A4 08 3/8101)"},
        {"takes over from a message and from a call being set up", R"(
            status 2/31 5 => > 80 02 00 1F 00 05
            < A4 02 00 28 00 08 => ! cleared by incoming A4 00 ; ! incoming A4 08 2/40
            < C0 02 00 1F 00 00 => ! report late
            refuse => > B2 00
            call 2/31 => > A4 02 00 1F 00 08
            < A4 02 00 28 00 00 => ! cleared by incoming A4 00 ; ! incoming A4 00 2/40
            ptt on => > B2 03)"},
        {"the answer is refused; a complaint before answering is about something else", R"(
            < A4 02 00 1F 00 08 => ! incoming A4 08 2/31
            < B4 02 => ! report protocol
            answer => > B2 02
            < B4 03 => ! report protocol ; ! answer 229 03 via B4
            < A4 02 00 1F 00 08 => ! incoming A4 08 2/31
            < A6 02 00 1F 0E => ! cleared by radio A6 0E)"},
    });
}

TEST(Terminal, QuestionsAndAnswers)
{
    RunCases({
        {"the operator always gets an answer, a probe only news", R"(
            ask 3 => ! condition 100 128
            ask 1 => ! numbering 2/31
            ask 4 => ! network 300 4660
            ask 0 => ! personality 123456
            ask 2 => ! settings F8
            probe
            radio mute
            probe => > B0 03
            probe                     # one at a time
            < B2 04 81 FF => ! condition 100 129
            probe => > B0 03
            < B2 04 81 FF
            < B2 04 81 FF => ! condition 100 129  # unasked: always told)"},
        {"the operator asks while a probe is open", R"(
            radio mute
            probe => > B0 03
            ask 3 => > B0 03
            < B2 04 80 FF
            < B2 04 80 FF => ! condition 100 128)"},
        {"an operating condition that comes with the network information", R"(
            radio mute
            ask 4 => > B0 04
            < B2 04 80 FF
            < B5 01 2C 12 34 => ! network 300 4660)"},
        {"no answer", R"(
            radio mute
            ask 4 => > B0 04
            probe => > B0 03
            + 2999
            + 1 => ! report unanswered ; ! report unanswered
            < B5 01 2C 12 34 => ! network 300 4660
            probe => > B0 03)"},
        {"a question that the radio does not know does not fail the message", R"(
            radio mute
            radio resets => > B0 00 ; ! failed: the other end asked for a new link ; ! ready
            status 2/31 5 => > 80 02 00 1F 00 05
            < B4 02 => ! report unanswered
            < D0 02 00 1F 00 02 => > B0 01  # only now does the terminal go on asking
                ! message 208 02 to 2/31
            < B4 01 => > B0 03 ; ! report unanswered
            < C0 02 00 1F 00 00 => ! message 192 00 to 2/31
            < B2 04 80 FF => > B0 04 ; ! condition 100 128)"},
        {"a message refused while an answered question is open again", R"(
            radio mute
            probe => > B0 03
            status 2/31 5 => > 80 02 00 1F 00 05
            < B4 02 => ! report protocol ; ! message 224 02 via B4 to 2/31)"},
        {"a complaint before the radio has taken the message up is about the message, later about the "
         "question",
         R"(
            radio mute
            status 2/31 5 => > 80 02 00 1F 00 05
            ask 2 => > B0 02
            < B4 02 => ! report protocol ; ! message 224 02 via B4 to 2/31
            < B4 02 => ! report unanswered
            status 2/31 5 => > 80 02 00 1F 00 05
            ask 2 => > B0 02
            < D0 02 00 1F 00 02 => ! message 208 02 to 2/31
            < B4 02 => ! report unanswered
            < C0 02 00 1F 00 00 => ! message 192 00 to 2/31)"},
        {"a probe that the radio may refuse never meets a request; one refusal is reported once", R"(
            radio mute
            radio resets => > B0 00 ; ! failed: the other end asked for a new link ; ! ready
            < B4 02 => > B0 01 ; ! report unanswered
            < B4 02 => > B0 03 ; ! report unanswered
            < B4 02 => > B0 04 ; ! report unanswered
            < B4 02 => ! report unanswered
            probe => > B0 03
            < B4 02
            status 2/31 5 => > 80 02 00 1F 00 05
            probe
            < C0 02 00 1F 00 00 => ! message 192 00 to 2/31
            probe => > B0 03)"},
        {"messages that mean nothing here, and nonsense", R"(
            < 00 01 02 => ! report not used
            < 01 55 => ! report not used
            < A3 01 => ! report not used
            < C7 02 01 2C 00 00 => ! report not used
            < 0B 02 00 1F 01 => ! report undecodable
            < D7 02 00 1F 00 00 => ! report undecodable
            < 80 02 => ! report undecodable
            < C0 02 00 1F 00 00 => ! report late)"},
    });
}

TEST(Terminal, LinkTroubles)
{
    const std::string again = R"(
                ! ready
                ! personality 123456
                ! numbering 2/31
                ! condition 100 128
                ! network 300 4660
    )";
    RunCases({
        {"the radio restarts in the middle of a message", R"(
            status 2/31 5 => > 80 02 00 1F 00 05
            radio resets => ! cleared by link lost 00 00 ; ! failed: the other end asked for a new link)" +
                                                              again},
        {"the radio goes silent in a call", R"(
            < A4 02 00 1F 00 00 => ! incoming A4 00 2/31
            radio silent
            + 79000
            + 1000 => ! cleared by link lost 00 00 ; ! failed: nothing valid received for too long
            clear
            cancel
            ptt off
            ptt on => ! refused: no link with the radio
            status 2/31 5 => ! refused: no link with the radio
            ask 3 => ! refused: no link with the radio
            probe)"},
        {"the operator resets the link with nothing open", "reset 500\n + 499\n + 1" + again},
        {"the operator resets the link in a call: it is hung up while one can", R"(
            call 2/31 => > A4 02 00 1F 00 08
            < C4 02 00 1F 00 00 => ! call 196 00
            reset 500 => > 86 02 00 1F 07 ; ! cleared by reset 00 00
            clear
            status 2/31 5 => ! refused: no link with the radio
            + 500)" + again},
        {"the operator resets the link with a message open", R"(
            status 2/31 5 => > 80 02 00 1F 00 05
            cancel => > A6 02 00 1F 08
            reset 500
            + 500)" + again + R"(
            status 2/40 5 => > 80 02 00 28 00 05  # nothing of the old link is waited for)"},
        {"stopped: no events, no refusals where none are due", R"(
            status 2/31 5 => > 80 02 00 1F 00 05
            stop
            cancel
            clear
            reset 500
            + 100000
            status 2/31 5 => ! refused: no link with the radio)"},
        {"a radio that takes nothing for a while loses nothing", R"(
            radio holds
            status 2/31 5
            + 1000
            radio takes => > 80 02 00 1F 00 05
            < C0 02 00 1F 00 00 => ! message 192 00 to 2/31)"},
    });
}

TEST(Terminal, ShortLinkRefusesLongMessages)
{
    LinkParameters radio;
    radio.n1 = 0;
    TerminalBench bench({}, radio);
    bench.BringUp();
    bench.RunScript(R"(
        text7 2/31 1234567890 => > 81 02 00 1F 00 B7 31 32 33 34 35 36 37 38 39 30
        < C0 02 00 1F 00 00 => ! message 192 00 to 2/31
        text7 2/31 12345678901 => ! refused: octets of the message: 17, at most 16
        gateway 1 123456789012345678901 => ! refused: octets of the message: 17, at most 16
        status 2/31 5 => > 80 02 00 1F 00 05
    )");
}

TEST(Terminal, CountsWhatItSkips)
{
    TerminalBench bench;
    bench.BringUp();
    for (const char* message :
         {"< 80 02 00 1F 00 20", "< 81 02 00 1F 00 E7 41", "< 00 01", "< D7 00", "< C0 00 00 00 00 00"})
        bench.Step(message);
    const TerminalCounters& counters = bench.TheTerminal().Counters();
    EXPECT_EQ(counters.statusOutOfRange, 1u);
    EXPECT_EQ(counters.unknownCodings, 1u);
    EXPECT_EQ(counters.notUsed, 1u);
    EXPECT_EQ(counters.undecodable, 1u);
    EXPECT_EQ(counters.late, 1u);
    EXPECT_EQ(counters.messagesReceived, 9u); // four of them answers to the first questions
    EXPECT_EQ(bench.TheTerminal().Numbering()->radio, AddressOf("2/31"));
    EXPECT_EQ(bench.TheTerminal().Personality()->serial, 123456u);
}
