// The console's end against a radio that answers what it likes, when it likes, while a person does what he
// likes.

#include "map27/terminal/Terminal.h"
#include "fuzz/Input.h"
#include "map27/codec/Utf8.h"
#include "map27/link/Link.h"

using namespace map27;

namespace {

constexpr int MostSteps = 300;

class Bench {
public:
    explicit Bench(const TerminalParameters& parameters) : m_terminal(parameters), m_radio(parameters.link)
    {
        ToTerminal(m_radio.Start(m_now));
        ToRadio(m_terminal.Start(m_now));
        Wait(Milliseconds{500});
    }

    void Step(Input& input)
    {
        const std::uint8_t what = input.Octet();
        if (what < 96)
            return FromRadio(input.Octets());
        if (what < 128)
            return Wait(Milliseconds{10} * input.Octet());
        switch (what % 8) {
        case 0:
            return Wait(Milliseconds{input.Word()});
        case 1:
            return ToTerminal(m_radio.Reset(m_now, Milliseconds{input.Octet()}));
        case 2: // the radio takes no messages for a while, or again
            return ToTerminal(m_radio.HoldReceiving(input.Octet() % 2 != 0, m_now));
        case 3: // what is no frame
            return ToRadio(m_terminal.Feed(input.Octets(), m_now));
        default:
            return Operate(input);
        }
    }

private:
    void Operate(Input& input)
    {
        const std::uint8_t what = input.Octet();
        const Address to{static_cast<std::uint8_t>(input.Octet() & HighestPrefix),
                         static_cast<std::uint16_t>(input.Word() & HighestIdent)};
        switch (what % 15) {
        case 0:
            return Take(m_terminal.SendStatus(to, input.Octet(), m_now));
        case 1:
            return Take(m_terminal.SendText(to, input.Text(),
                                            what < 128 ? TextCoding::SevenBit : TextCoding::EightBit, m_now));
        case 2:
            return Take(m_terminal.SendBinary(to, input.Octets(), m_now));
        case 3:
            return Take(m_terminal.MakeCall(to, (what & 16) != 0, (what & 32) != 0, (what & 64) != 0, m_now));
        case 4:
            return Take(m_terminal.MakeGatewayCall(what / 15 % 4, input.Text(), (what & 16) != 0,
                                                   (what & 32) != 0, (what & 64) != 0, m_now));
        case 5:
            return Take(m_terminal.AnswerCall(m_now));
        case 6:
            return Take(m_terminal.RefuseCall(m_now));
        case 7:
            return Take(m_terminal.SetTransmit((what & 16) != 0, m_now));
        case 8:
            return ToRadio(m_terminal.ClearCall(m_now));
        case 9:
            return Take(m_terminal.PutOnHook(m_now));
        case 10:
            return ToRadio(m_terminal.CancelTransaction(m_now));
        case 11:
            return Take(m_terminal.RequestRadioInfo(what / 15 % 6, m_now));
        case 12:
            return ToRadio(m_terminal.Probe(m_now));
        case 13:
            return ToRadio(m_terminal.HoldReceiving((what & 16) != 0, m_now));
        default:
            return ToRadio(m_terminal.ResetLink(Milliseconds{500}, m_now));
        }
    }

    void FromRadio(const Octets& message) { ToTerminal(m_radio.Send(message, m_now).output); }

    void Wait(Milliseconds time)
    {
        const TimePoint end = m_now + time;
        for (int calls = 0; const Deadline next = Earlier(m_terminal.NextDeadline(), m_radio.NextDeadline());
             ++calls) {
            MUST_HOLD(calls < 20000);
            if (*next > end)
                break;
            m_now = std::max(m_now, *next);
            if (const Deadline due = m_terminal.NextDeadline(); due && *due <= m_now)
                ToRadio(m_terminal.OnTime(m_now));
            if (const Deadline due = m_radio.NextDeadline(); due && *due <= m_now)
                ToTerminal(m_radio.OnTime(m_now));
        }
        m_now = end;
    }

    void Take(OperationResult result)
    {
        if (result.refusal) {
            MUST_HOLD(!RefusalText(*result.refusal).empty());
            MUST_HOLD(result.output.frames.empty());
        }
        ToRadio(std::move(result.output));
    }

    // What one end says the other hears at once, however long the two go on.
    void ToRadio(TerminalOutput output)
    {
        for (const TerminalEvent& event : output.events)
            Check(event);
        // Nobody transmits by accident.
        MUST_HOLD(!m_terminal.IsTransmitting() || m_terminal.State() == TerminalState::Active);
        MUST_HOLD(m_terminal.State() == TerminalState::Idle || m_terminal.IsLinkReady());
        for (const Octets& frame : output.frames)
            ToTerminal(m_radio.Feed(frame, m_now));
    }

    void ToTerminal(LinkOutput output)
    {
        MUST_HOLD(++m_depth < 200);
        for (const Octets& frame : output.frames)
            ToRadio(m_terminal.Feed(frame, m_now));
        --m_depth;
    }

    static void Check(const TerminalEvent& event)
    {
        if (const auto* status = std::get_if<StatusReceived>(&event))
            MUST_HOLD(status->status <= HighestStatus);
        if (const auto* text = std::get_if<TextReceived>(&event))
            for (std::string_view rest = text->text; !rest.empty();)
                MUST_HOLD(TakeUtf8(rest));
    }

    Terminal m_terminal;
    Link m_radio;
    TimePoint m_now{};
    int m_depth = 0;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    TerminalParameters parameters;
    parameters.link.k = static_cast<std::uint8_t>(1 + input.Octet() % 3);
    Bench bench(parameters);
    for (int step = 0; step < MostSteps && !input.IsAtEnd(); ++step)
        bench.Step(input);
    return 0;
}
