#include "map27/link/Link.h"
#include "map27/Script.h"

#include <gtest/gtest.h>

using namespace map27;

namespace {

// One link; the steps of tests/data/map27-link.txt.
class LinkBench {
public:
    explicit LinkBench(LinkParameters parameters) : m_link(parameters) {}

    std::vector<std::string> operator()(const std::string& step)
    {
        m_seen.clear();
        const auto words = Words(step);
        const std::string rest = step.size() > words[0].size() ? step.substr(words[0].size()) : "";
        if (words[0] == "up")
            ComeUp();
        else if (words[0] == "start")
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
    // The peer answers our LR, and its LA ours.
    void ComeUp()
    {
        for (const char* step : {"start", "< 01 0E 01 01", "< 02 01 01 00"})
            (*this)(step);
        EXPECT_EQ(m_seen.back(), "! ready 14 1 1");
        m_seen.clear();
    }

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

LinkParameters ParametersOf(const Conversation& conversation)
{
    LinkParameters parameters;
    for (const auto& [name, value] : conversation.with) {
        if (name == "bitRate")
            parameters = LinkParameters::ForBitRate(static_cast<unsigned>(value));
        else if (name == "n1")
            parameters.n1 = static_cast<std::uint8_t>(value);
        else if (name == "k")
            parameters.k = static_cast<std::uint8_t>(value);
        else if (name == "t2")
            parameters.t2 = Milliseconds(value);
        else if (name == "t3")
            parameters.t3 = Milliseconds(value);
        else if (name == "queueLimit")
            parameters.queueLimit = static_cast<std::size_t>(value);
        else if (name == "checkWindow")
            parameters.checkWindow = value != 0;
        else
            ADD_FAILURE() << name;
    }
    return parameters;
}

} // namespace

TEST(Link, Conversations)
{
    for (const Conversation& conversation : ReadConversations("map27-link.txt", 51)) {
        SCOPED_TRACE(conversation.title);
        LinkBench bench(ParametersOf(conversation));
        RunScript(conversation.script, std::ref(bench));
        ASSERT_FALSE(HasFailure());
    }
}

TEST(Link, NumbersPassTwoHundredAndFiftyFive)
{
    LinkBench bench({});
    RunScript("up", std::ref(bench));
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
    RunScript(R"(
        up
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
