// How much of the line a storm of messages uses, of what the rules of the link allow: two ends of the link at
// a line with its speed, in virtual time. Window 1: an end waits for the acknowledgement before it sends the
// next message, and the other end may acknowledge once the last octet is there. A message therefore takes at
// least
//
//     (octets of its LT + octets of its LA) x 10 bits / bit rate
//
// with 3 octets before the body, 4 of its header, the message, 2 behind it and 2 of check; an octet 10h in
// the body goes out twice. An LA has no message: 11 octets.

#include "Report.h"
#include "map27/link/Link.h"

#include <cmath>
#include <deque>
#include <string>
#include <variant>

namespace {

using map27::Milliseconds;
using map27::Octets;
using map27::TimePoint;

constexpr int Messages = 300;
constexpr double BitsPerOctet = 10;

// The console is end 0, the radio end 1.
class Pair {
public:
    explicit Pair(unsigned bitRate)
        : m_bitRate(bitRate),
          m_ends{map27::Link(map27::LinkParameters::ForBitRate(bitRate)),
                 map27::Link(map27::LinkParameters::ForBitRate(bitRate))}
    {
        for (int end : {0, 1})
            Take(end, m_ends[end].Start(Now()));
        RunUntil([this] { return m_ends[0].IsReady() && m_ends[1].IsReady(); });
    }

    // Seconds that the messages took from the radio to the console, each acknowledged; 0 when one was lost.
    double Storm(const Octets& message)
    {
        RunUntil([this, quiet = m_now + Microseconds(5000000)] { return m_now >= quiet; });
        m_received = 0;
        const Microseconds begin = m_now;
        map27::Link& radio = m_ends[1];
        for (int sent = 0; sent < Messages; ++sent) {
            RunUntil([&radio] { return radio.Backlog() < 3; });
            auto outcome = radio.Send(message, Now());
            if (outcome.result != map27::SendResult::Accepted)
                return 0;
            Take(1, outcome.output);
        }
        RunUntil([&radio] { return radio.Backlog() == 0; });
        return m_received == Messages ? std::chrono::duration<double>(m_now - begin).count() : 0;
    }

private:
    using Microseconds = std::chrono::microseconds;
    struct Flying {
        Microseconds due; // its last bit
        Octets frame;
    };

    TimePoint Now() const { return TimePoint(std::chrono::duration_cast<Milliseconds>(m_now)); }
    template <typename Condition> void RunUntil(Condition condition)
    {
        while (!condition()) {
            Microseconds next = m_now + Microseconds(100000);
            for (const int end : {0, 1}) {
                if (!m_flying[end].empty())
                    next = std::min(next, m_flying[end].front().due);
                if (const auto deadline = m_ends[end].NextDeadline())
                    next = std::min<Microseconds>(next, deadline->time_since_epoch());
            }
            m_now = std::max(m_now, next);
            for (const int end : {0, 1}) {
                auto& flying = m_flying[1 - end];
                while (!flying.empty() && flying.front().due <= m_now) {
                    const Octets frame = std::move(flying.front().frame);
                    flying.pop_front();
                    Take(end, m_ends[end].Feed(frame, Now()));
                }
                if (const auto deadline = m_ends[end].NextDeadline(); deadline && *deadline <= Now())
                    Take(end, m_ends[end].OnTime(Now()));
            }
        }
    }
    void Take(int end, const map27::LinkOutput& output)
    {
        for (const Octets& frame : output.frames) {
            m_free[end] = std::max(m_free[end], m_now) +
                          Microseconds(std::llround(1e6 * BitsPerOctet * static_cast<double>(frame.size()) /
                                                    m_bitRate));
            m_flying[end].push_back({m_free[end], frame});
        }
        for (const map27::LinkEvent& event : output.events)
            m_received += std::holds_alternative<map27::MessageReceived>(event) ? 1 : 0;
    }

    unsigned m_bitRate;
    map27::Link m_ends[2];
    std::deque<Flying> m_flying[2]; // from this end
    Microseconds m_free[2]{};       // when its line is
    Microseconds m_now{1000000};
    int m_received = 0;
};

// As they come from the radio: the caller's address, then the status or the text in 7-bit characters.
Octets StatusMessage()
{
    return {0x80, 2, 0x00, 0x1F, 0x00, 5};
}
Octets TextMessage(std::uint8_t type, std::size_t characters)
{
    Octets message{type, 2, 0x00, 0x1F, 0x00, 0xB7};
    message.insert(message.end(), characters, 'A');
    return message;
}

double OctetsOfFrame(std::size_t message)
{
    return static_cast<double>(3 + 4 + message + 2 + 2);
}

void Measure(unsigned bitRate, const char* what, const Octets& message)
{
    Pair pair(bitRate);
    const double seconds = pair.Storm(message);
    const double least =
        (OctetsOfFrame(message.size()) + OctetsOfFrame(0)) * BitsPerOctet / bitRate * Messages;
    const std::string row = "line use, " + std::to_string(bitRate) + " bit/s, " + what;
    PrintRow(row.c_str(), seconds > 0 ? 100 * least / seconds : 0, "%");
}

} // namespace

int main()
{
    for (const unsigned bitRate : {1200U, 9600U, 19200U}) {
        Measure(bitRate, "statuses", StatusMessage());
        Measure(bitRate, "texts of 25", TextMessage(0x81, 25));
        Measure(bitRate, "texts of 100", TextMessage(0x82, 100));
    }
    return 0;
}
