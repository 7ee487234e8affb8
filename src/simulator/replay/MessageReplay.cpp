#include "simulator/replay/MessageReplay.h"

#include "map27/codec/Messages.h"
#include "map27/trace/MessageWords.h"
#include "map27/trace/TraceObserver.h"

#include <algorithm>
#include <array>

namespace sim {

namespace {

constexpr Milliseconds Unremarkable{1000};

// What answers each question.
constexpr std::array<std::uint8_t, 5> Answers{map27::Type::Personality, map27::Type::Numbering,
                                              map27::Type::Settings, map27::Type::OperatingCondition,
                                              map27::Type::NetworkInfo};

bool IsQuestion(const map27::Octets& message)
{
    return message.size() > 1 && message[0] == map27::Type::Personality && message[1] < Answers.size();
}

std::string WordsOf(const map27::Octets& message)
{
    return map27::MessageWords(message, map27::Direction::ToRadio) + " [" + map27::ToHex(message) + ']';
}

} // namespace

MessageReplay::MessageReplay(const std::vector<ReplayEntry>& entries, const ReplaySettings& settings)
    : m_settings(settings)
{
    map27::TraceObserver observer;
    for (const ReplayEntry& one : entries) {
        if (one.entry.kind == TraceEntry::Kind::Said)
            m_said[one.entry.octets[0]].push_back({m_steps.size(), one.entry.octets});
        const map27::Octets message = observer.Take(one.entry).message;
        const bool isCommand = one.entry.kind == TraceEntry::Kind::Command && settings.withCommands;
        if (!message.empty() || isCommand)
            Add(one, message);
    }
    m_openQuestion.reset();
}

void MessageReplay::Add(const ReplayEntry& one, const map27::Octets& message)
{
    const bool toRadio = one.entry.direction == map27::Direction::ToRadio;
    if (toRadio && IsQuestion(message)) {
        m_openQuestion = Answers.at(message[1]);
        return;
    }
    const bool aboutItself = !toRadio && std::ranges::find(Answers, message[0]) != Answers.end();
    if (aboutItself)
        m_said[message[0]].push_back({m_steps.size(), message});
    if (aboutItself && m_openQuestion == message[0])
        m_openQuestion.reset();
    else
        m_steps.push_back({one.entry, one.line, message});
}

ReplayOutput MessageReplay::ConsoleCame(TimePoint now)
{
    if (!m_started && !m_steps.empty())
        m_shift = now - m_steps.front().entry.at;
    m_started = true;
    m_splitter.Clear();
    m_link.Stop();
    Take(m_link.Start(now), now);
    return TakeOutput();
}

ReplayOutput MessageReplay::ConsoleWent(TimePoint)
{
    m_link.Stop();
    return TakeOutput();
}

ReplayOutput MessageReplay::Feed(map27::OctetSpan octets, TimePoint now)
{
    for (map27::LinePiece& piece : m_splitter.Feed(octets))
        m_output.traced.push_back({.kind = piece.isFrame ? TraceEntry::Kind::Frame : TraceEntry::Kind::Noise,
                                   .at = now,
                                   .direction = map27::Direction::ToRadio,
                                   .octets = std::move(piece.octets)});
    Take(m_link.Feed(octets, now), now);
    Advance(now);
    return TakeOutput();
}

ReplayOutput MessageReplay::OnTime(TimePoint now)
{
    Take(m_link.OnTime(now), now);
    Advance(now);
    return TakeOutput();
}

Deadline MessageReplay::NextDeadline() const
{
    if (!m_started)
        return std::nullopt;
    Deadline next = m_link.NextDeadline();
    if (m_end || m_next == m_steps.size() || !m_link.IsReady())
        return map27::Earlier(next, m_end ? Deadline{} : m_patienceEnds);
    const Step& step = m_steps[m_next];
    if (step.OfConsole())
        return map27::Earlier(next, m_noted ? m_patienceEnds
                                            : map27::Earlier(DueAt(step) + Unremarkable, m_patienceEnds));
    return step.message.empty() ? next : map27::Earlier(next, DueAt(step));
}

Player::Answer MessageReplay::Execute(const std::string& command, TimePoint now)
{
    Advance(now);
    if (!m_settings.withCommands)
        return {"error this is a replay, and its trace is played without commands", TakeOutput()};
    const auto awaited = std::find_if(m_steps.begin() + static_cast<std::ptrdiff_t>(m_next), m_steps.end(),
                                      [](const Step& step) { return step.message.empty(); });
    if (awaited == m_steps.end() || awaited->entry.command != command) {
        const std::string then =
            awaited == m_steps.end() ? "no further command" : '"' + awaited->entry.command + '"';
        return {"error the trace has " + then + " here", TakeOutput()};
    }
    // What the console has not done yet may still come.
    const Step step = *awaited;
    std::rotate(m_steps.begin() + static_cast<std::ptrdiff_t>(m_next), awaited, awaited + 1);
    TraceEntry entry = step.entry;
    entry.at = now;
    m_output.traced.push_back(std::move(entry));
    Pass(now);
    Advance(now);
    return {step.entry.answer, TakeOutput()};
}

void MessageReplay::Take(map27::LinkOutput output, TimePoint now)
{
    for (const map27::Octets& frame : output.frames) {
        m_output.toConsole.insert(m_output.toConsole.end(), frame.begin(), frame.end());
        m_output.traced.push_back({.at = now, .direction = map27::Direction::FromRadio, .octets = frame});
    }
    for (const map27::LinkEvent& event : output.events)
        if (const auto* received = std::get_if<map27::MessageReceived>(&event))
            TakeMessage(received->message, now);
        else if (std::holds_alternative<map27::LinkFailed>(event))
            m_output.notes.push_back("link lost");
}

void MessageReplay::TakeMessage(const map27::Octets& message, TimePoint now)
{
    if (m_end)
        return;
    if (IsQuestion(message))
        return Take(m_link.Send(AnswerTo(message[1]), now).output, now);
    const auto awaited = std::find_if(m_steps.begin() + static_cast<std::ptrdiff_t>(m_next), m_steps.end(),
                                      [](const Step& step) { return step.OfConsole(); });
    if (awaited == m_steps.end() || awaited->message != message) {
        const bool isOver = awaited == m_steps.end();
        m_end = End{false, (isOver ? std::string("after the trace's last message of the console")
                                   : "line " + std::to_string(awaited->line) + " of the trace") +
                               ": the console sends " + WordsOf(message) +
                               (isOver ? "" : " where it then sent " + WordsOf(awaited->message))};
        return;
    }
    // It may come before what the radio said then.
    std::rotate(m_steps.begin() + static_cast<std::ptrdiff_t>(m_next), awaited, awaited + 1);
    Pass(now);
}

// As the radio said it last at this place of the trace, else as it first said it.
map27::Octets MessageReplay::AnswerTo(std::uint8_t reason) const
{
    const auto said = m_said.find(Answers.at(reason));
    if (said == m_said.end())
        return map27::EncodeFromRadio(map27::ProtocolInfoMessage{map27::ProtocolReason::NotSupported});
    const map27::Octets* answer = &said->second.front().message;
    for (const Said& one : said->second)
        if (one.before <= m_next)
            answer = &one.message;
    return *answer;
}

void MessageReplay::Advance(TimePoint now)
{
    while (m_started && !m_end && m_link.IsReady()) {
        if (m_next == m_steps.size()) {
            if (m_link.Backlog() > 0)
                return; // the last ones are still on their way
            m_end = End{true, "the trace has been played, and the console has done what it did then"};
            return;
        }
        const Step& next = m_steps[m_next];
        if (next.OfConsole())
            return AwaitConsole(next, now);
        if (next.message.empty() || (!m_settings.fast && now < DueAt(next)))
            return;
        Take(m_link.Send(next.message, now).output, now);
        Pass(now);
    }
}

void MessageReplay::AwaitConsole(const Step& next, TimePoint now)
{
    if (!m_patienceEnds && m_settings.patience > Milliseconds{0})
        m_patienceEnds = std::max(now, DueAt(next)) + m_settings.patience;
    if (!m_noted && now >= DueAt(next) + Unremarkable) {
        m_noted = true;
        m_output.notes.push_back("waiting for the console: " + WordsOf(next.message));
    }
    if (m_patienceEnds && now >= *m_patienceEnds)
        m_end = End{false, "line " + std::to_string(next.line) + " of the trace: the console does not send " +
                               WordsOf(next.message)};
}

// The step at hand is done. What follows keeps its distance from what was done to the radio.
void MessageReplay::Pass(TimePoint now)
{
    const Step& step = m_steps[m_next];
    const Milliseconds late = now - step.entry.at;
    const bool leads = m_settings.fast || step.OfConsole() || step.message.empty();
    m_shift = leads ? late : std::max(m_shift, late);
    m_patienceEnds.reset();
    m_noted = false;
    ++m_next;
}

} // namespace sim
