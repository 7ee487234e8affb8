// Two ends of the link, and a line between them that loses, repeats and spoils frames and takes its time, in
// order as a line does. What one end sends arrives at the other once, unspoiled and in order, or not at all.

#include "fuzz/Input.h"
#include "map27/link/Framing.h"
#include "map27/link/Link.h"

#include <deque>

using namespace map27;

namespace {

constexpr int MostSteps = 600;

struct OnTheWay {
    TimePoint arrives;
    Octets octets;
};

struct End {
    explicit End(const LinkParameters& parameters) : link(parameters) {}

    Link link;
    std::deque<OnTheWay> line; // to this end
    unsigned lastSent = 0;
    unsigned lastReceived = 0;
};

class Bench {
public:
    Bench(const LinkParameters& parameters, Milliseconds delay)
        : m_ends{End(parameters), End(parameters)},
          m_delay(delay)
    {
        for (int end : {0, 1})
            Take(end, m_ends[end].link.Start(m_now));
    }

    void Step(Input& input)
    {
        const std::uint8_t octet = input.Octet();
        const int end = octet & 1;
        switch (octet / 2 % 8) {
        case 0:
        case 1:
            return Wait(Milliseconds{input.Octet()});
        case 2:
            return Wait(Milliseconds{10} * input.Octet());
        case 3:
            return Send(end, input.Octet());
        case 4:
            return Take(end, m_ends[end].link.HoldReceiving((octet & 0x40) != 0, m_now));
        case 5: // the frame that comes next is lost
            if (!m_ends[end].line.empty())
                m_ends[end].line.pop_front();
            return;
        case 6: // an octet of it is spoiled
            if (!m_ends[end].line.empty()) {
                Octets& octets = m_ends[end].line.front().octets;
                octets[input.Octet() % octets.size()] ^= static_cast<std::uint8_t>(1u << (octet >> 4 & 7));
            }
            return;
        default: // noise in front of it
            if (!m_ends[end].line.empty()) {
                const Octets noise = input.Octets();
                Octets& octets = m_ends[end].line.front().octets;
                octets.insert(octets.begin(), noise.begin(), noise.end());
            }
            return;
        }
    }

private:
    void Send(int end, std::uint8_t length)
    {
        const unsigned number = m_ends[end].lastSent + 1;
        Octets message{static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)};
        message.resize(2 + length % 60, static_cast<std::uint8_t>(number * 37));
        SendOutcome outcome = m_ends[end].link.Send(message, m_now);
        if (outcome.result == SendResult::Accepted)
            m_ends[end].lastSent = number;
        Take(end, std::move(outcome.output));
    }

    void Wait(Milliseconds time)
    {
        const TimePoint until = m_now + time;
        for (int calls = 0; const Deadline next = Next(); ++calls) {
            MUST_HOLD(calls < 20000);
            if (*next > until)
                break;
            m_now = std::max(m_now, *next);
            for (int end : {0, 1}) {
                while (!m_ends[end].line.empty() && m_ends[end].line.front().arrives <= m_now) {
                    const Octets octets = std::move(m_ends[end].line.front().octets);
                    m_ends[end].line.pop_front();
                    Take(end, m_ends[end].link.Feed(octets, m_now));
                }
                if (const Deadline due = m_ends[end].link.NextDeadline(); due && *due <= m_now)
                    Take(end, m_ends[end].link.OnTime(m_now));
            }
        }
        m_now = until;
    }

    Deadline Next() const
    {
        Deadline next;
        for (const End& end : m_ends) {
            next = Earlier(next, end.link.NextDeadline());
            if (!end.line.empty())
                next = Earlier(next, end.line.front().arrives);
        }
        return next;
    }

    void Take(int end, LinkOutput output)
    {
        for (Octets& frame : output.frames) {
            std::deque<OnTheWay>& line = m_ends[1 - end].line;
            const TimePoint before = line.empty() ? m_now : line.back().arrives;
            line.push_back({std::max(before, m_now + m_delay), std::move(frame)});
        }
        for (const LinkEvent& event : output.events)
            if (const auto* received = std::get_if<MessageReceived>(&event))
                Receive(m_ends[end], m_ends[1 - end], received->message);
    }

    static void Receive(End& end, const End& from, const Octets& message)
    {
        MUST_HOLD(message.size() >= 2);
        const unsigned number = message[0] * 256u + message[1];
        for (std::size_t i = 2; i < message.size(); ++i)
            MUST_HOLD(message[i] == static_cast<std::uint8_t>(number * 37));
        MUST_HOLD(number > end.lastReceived && number <= from.lastSent);
        end.lastReceived = number;
    }

    End m_ends[2];
    TimePoint m_now{};
    Milliseconds m_delay;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    LinkParameters parameters;
    parameters.k = static_cast<std::uint8_t>(1 + input.Octet() % 7);
    const std::uint8_t options = input.Octet();
    parameters.bitRate = (options & 1) != 0 ? 0 : 9600;
    parameters.t2 = Milliseconds{(options & 2) != 0 ? 200 : 0};
    Bench bench(parameters, Milliseconds{options >> 2}); // up to 63 ms, as in a network close by
    for (int step = 0; step < MostSteps && !input.IsAtEnd(); ++step)
        bench.Step(input);
    return 0;
}
