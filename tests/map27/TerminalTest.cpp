#include "map27/TerminalBench.h"

#include <gtest/gtest.h>

using namespace map27;

TEST(Terminal, Conversations)
{
    for (const Conversation& conversation : ReadConversations("map27-terminal.txt", 61)) {
        SCOPED_TRACE(conversation.title);
        LinkParameters radio;
        if (conversation.with.contains("n1"))
            radio.n1 = static_cast<std::uint8_t>(conversation.with.at("n1"));
        TerminalBench bench({}, radio);
        bench.BringUp();
        bench.RunScript(conversation.script);
        ASSERT_FALSE(HasFailure());
    }
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
