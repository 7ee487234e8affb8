// One end of the link against whatever may happen to it.

#include "map27/link/Link.h"
#include "fuzz/Input.h"
#include "map27/link/Framing.h"
#include "map27/link/LinkPackets.h"

using namespace map27;

namespace {

constexpr int MostSteps = 400;

class Bench {
public:
    explicit Bench(const LinkParameters& parameters) : m_parameters(parameters), m_link(parameters) {}

    void Step(Input& input)
    {
        switch (input.Octet() % 10) {
        case 0:
            return Take(m_link.Start(m_now));
        case 1:
            m_link.Stop();
            return Check();
        case 2: // a good frame of anything
            return Take(m_link.Feed(EncodeFrame(input.Octets()), m_now));
        case 3: // anything
            return Take(m_link.Feed(input.Octets(), m_now));
        case 4:
            return Wait(Milliseconds{input.Octet()});
        case 5:
            return Wait(Milliseconds{input.Word()});
        case 6:
            if (const Deadline next = m_link.NextDeadline())
                Wait(*next - m_now);
            return;
        case 7:
            return Send(input.Octets());
        case 8:
            return Take(m_link.Reset(m_now, Milliseconds{input.Word()}));
        default:
            return Take(m_link.HoldReceiving(input.Octet() % 2 != 0, m_now));
        }
    }

private:
    void Send(const Octets& message)
    {
        const bool wasReady = m_link.IsReady();
        const std::size_t longest = m_link.LongestMessage();
        SendOutcome outcome = m_link.Send(message, m_now);
        MUST_HOLD(wasReady || outcome.result != SendResult::Accepted);
        MUST_HOLD(message.size() <= longest || outcome.result != SendResult::Accepted);
        Take(std::move(outcome.output));
    }

    // Calls it whenever it has asked for that.
    void Wait(Milliseconds time)
    {
        const TimePoint end = m_now + std::max(time, Milliseconds{0});
        for (int calls = 0; m_link.NextDeadline() && *m_link.NextDeadline() <= end; ++calls) {
            const TimePoint at = std::max(m_now, *m_link.NextDeadline());
            m_now = at;
            Take(m_link.OnTime(m_now));
            // It does not ask for the same moment for ever.
            MUST_HOLD(calls < 2000);
        }
        m_now = end;
    }

    void Take(LinkOutput output)
    {
        for (const Octets& frame : output.frames) {
            const std::vector<Octets> bodies = FrameDecoder().Feed(frame);
            MUST_HOLD(bodies.size() == 1 && bodies[0].size() >= packet::HeaderOctets);
            const std::uint8_t type = bodies[0][0];
            MUST_HOLD(type == packet::LinkRequest || type == packet::LinkAcknowledgement ||
                      (type == packet::LinkTransfer && bodies[0].size() > packet::HeaderOctets));
            MUST_HOLD(bodies[0].size() <= packet::HeaderOctets + m_parameters.LongestMessage());
        }
        for (const LinkEvent& event : output.events) {
            if (std::holds_alternative<LinkReady>(event)) {
                const auto& ready = std::get<LinkReady>(event);
                MUST_HOLD(ready.n1 <= m_parameters.n1 && ready.k <= m_parameters.k &&
                          ready.version <= m_parameters.version);
                MUST_HOLD(!m_wasReady);
                m_wasReady = true;
            } else if (std::holds_alternative<LinkFailed>(event)) {
                MUST_HOLD(m_wasReady);
                m_wasReady = false;
            } else {
                MUST_HOLD(m_wasReady && !std::get<MessageReceived>(event).message.empty());
            }
        }
        Check();
    }

    void Check()
    {
        if (m_link.State() == LinkState::Stopped)
            MUST_HOLD(!m_link.NextDeadline());
        // Reset and Stop end a link without an event.
        m_wasReady = m_wasReady && m_link.IsReady();
        MUST_HOLD(m_wasReady == m_link.IsReady());
        MUST_HOLD(m_link.Backlog() <= m_parameters.queueLimit + m_parameters.k);
        MUST_HOLD(m_link.Backlog() == 0 || m_link.IsReady());
    }

    LinkParameters m_parameters;
    Link m_link;
    TimePoint m_now{};
    bool m_wasReady = false;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    LinkParameters parameters;
    parameters.n1 = input.Octet();
    parameters.k = static_cast<std::uint8_t>(1 + input.Octet() % 7);
    const std::uint8_t options = input.Octet();
    parameters.checkWindow = (options & 1) != 0;
    parameters.bitRate = (options & 2) != 0 ? 0 : 9600;
    parameters.t2 = Milliseconds{(options & 4) != 0 ? 200 : 0};
    parameters.queueLimit = (options & 8) != 0 ? 4 : 256;
    Bench bench(parameters);
    for (int step = 0; step < MostSteps && !input.IsAtEnd(); ++step)
        bench.Step(input);
    return 0;
}
