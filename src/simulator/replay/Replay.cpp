#include "simulator/replay/Replay.h"

#include "map27/trace/TraceObserver.h"

#include <algorithm>

namespace sim {

namespace {

constexpr std::size_t RememberedFrames = 4;
constexpr Milliseconds Unremarkable{1000};

std::string WordsOf(const map27::Octets& frame)
{
    map27::TraceObserver observer;
    return observer.Take({.direction = map27::Direction::ToRadio, .octets = frame}).words + " [" +
           map27::ToHex(frame) + ']';
}

} // namespace

Replay::Replay(std::vector<ReplayEntry> entries, const ReplaySettings& settings)
    : m_entries(std::move(entries)),
      m_done(m_entries.size()),
      m_settings(settings)
{
    // What nobody gives is as good as given.
    for (std::size_t index = 0; index < m_entries.size(); ++index) {
        const TraceEntry::Kind kind = m_entries[index].entry.kind;
        const bool isPlayed = kind == TraceEntry::Kind::Frame || kind == TraceEntry::Kind::Noise;
        m_done[index] = !isPlayed && !(kind == TraceEntry::Kind::Command && settings.withCommands);
    }
}

ReplayOutput Replay::ConsoleCame(TimePoint now)
{
    m_splitter.Clear();
    if (!m_started && !m_entries.empty())
        m_shift = now - m_entries.front().entry.at;
    m_started = true;
    Advance(now);
    return TakeOutput();
}

ReplayOutput Replay::Feed(map27::OctetSpan octets, TimePoint now)
{
    for (map27::LinePiece& piece : m_splitter.Feed(octets))
        TakePiece(std::move(piece), now);
    Advance(now);
    return TakeOutput();
}

ReplayOutput Replay::OnTime(TimePoint now)
{
    Advance(now);
    return TakeOutput();
}

Deadline Replay::NextDeadline() const
{
    if (m_end || !m_started)
        return std::nullopt;
    const std::size_t holding = Holding();
    if (holding == m_entries.size())
        return DueAt(m_entries.back()) + Unremarkable;
    const ReplayEntry& next = m_entries[holding];
    if (next.entry.kind == TraceEntry::Kind::Command)
        return std::nullopt;
    if (!IsOfConsole(next))
        return DueAt(next);
    return m_noted ? m_patienceEnds : map27::Earlier(DueAt(next) + Unremarkable, m_patienceEnds);
}

Replay::Answer Replay::Execute(const std::string& command, TimePoint now)
{
    Advance(now);
    if (!m_settings.withCommands)
        return {"error this is a replay, and its trace is played without commands", TakeOutput()};
    const auto awaited = std::find_if(m_entries.begin() + static_cast<std::ptrdiff_t>(m_next),
                                      m_entries.end(), [this](const ReplayEntry& one) {
                                          return one.entry.kind == TraceEntry::Kind::Command &&
                                                 !IsDone(static_cast<std::size_t>(&one - m_entries.data()));
                                      });
    if (awaited == m_entries.end() || awaited->entry.command != command) {
        const std::string then =
            awaited == m_entries.end() ? "no further command" : '"' + awaited->entry.command + '"';
        return {"error the trace has " + then + " here", TakeOutput()};
    }
    m_done[static_cast<std::size_t>(awaited - m_entries.begin())] = true;
    m_shift = now - awaited->entry.at;
    TraceEntry entry = awaited->entry;
    entry.at = now;
    Trace(entry);
    Advance(now);
    return {entry.answer, TakeOutput()};
}

// Plays whatever can be played now.
void Replay::Advance(TimePoint now)
{
    while (m_started && !m_end) {
        while (m_next < m_entries.size() && IsDone(m_next))
            ++m_next;
        const std::size_t holding = Holding();
        if (holding == m_entries.size()) {
            // What may be missing is given its time, so that it can be seen in the trace.
            if (m_settings.fast || m_next == m_entries.size() ||
                now >= DueAt(m_entries.back()) + Unremarkable)
                m_end = End{true, "the trace has been played, and the console has done what it did then"};
            return;
        }
        const ReplayEntry& next = m_entries[holding];
        if (IsOfConsole(next))
            return AwaitConsole(next, now);
        if (next.entry.kind == TraceEntry::Kind::Command || (!m_settings.fast && now < DueAt(next)))
            return;
        Play(holding, now);
    }
}

void Replay::AwaitConsole(const ReplayEntry& next, TimePoint now)
{
    if (!m_patienceEnds && m_settings.patience > Milliseconds{0})
        m_patienceEnds = std::max(now, DueAt(next)) + m_settings.patience;
    if (!m_noted && now >= DueAt(next) + Unremarkable) {
        m_noted = true;
        m_output.notes.push_back("waiting for the console: " + WordsOf(next.entry.octets));
    }
    if (m_patienceEnds && now >= *m_patienceEnds)
        Deviate(PlaceOf(next) + ": the console does not send " + WordsOf(next.entry.octets));
}

// The first entry that has to be done before any other; beyond the end when there is none.
std::size_t Replay::Holding() const
{
    std::size_t index = m_next;
    while (index < m_entries.size() && (IsDone(index) || m_entries[index].mayBeMissing))
        ++index;
    return index;
}

void Replay::Play(std::size_t index, TimePoint now)
{
    const ReplayEntry& next = m_entries[index];
    const map27::Octets octets = PlayedOctets(next.entry);
    m_output.toConsole.insert(m_output.toConsole.end(), octets.begin(), octets.end());
    TraceEntry entry = next.entry;
    entry.at = now;
    Trace(std::move(entry));
    // What follows keeps its distance where this one is late.
    m_shift = m_settings.fast ? now - next.entry.at : std::max(m_shift, now - next.entry.at);
    m_done[index] = true;
}

void Replay::TakePiece(map27::LinePiece piece, TimePoint now)
{
    if (m_end)
        return;
    Trace({.kind = piece.isFrame ? TraceEntry::Kind::Frame : TraceEntry::Kind::Noise,
           .at = now,
           .direction = map27::Direction::ToRadio,
           .octets = piece.octets});
    if (!piece.isFrame)
        return;
    const auto awaited = Awaited(piece.octets);
    if (!awaited) {
        if (IsRepetition(piece.octets))
            return;
        const std::size_t next = NextOfConsole(m_next, PacketOf(piece.octets));
        const bool isOver = next == m_entries.size();
        Deviate((isOver ? std::string("after the trace's end") : PlaceOf(m_entries[next])) +
                ": the console sends " + WordsOf(piece.octets) +
                (isOver ? "" : " where it then sent " + WordsOf(m_entries[next].entry.octets)));
        return;
    }
    // What only repeated something before it was left out.
    for (std::size_t index = m_next; index < *awaited; ++index)
        if (IsOfConsole(m_entries[index]) && m_entries[index].packet == m_entries[*awaited].packet)
            m_done[index] = true;
    m_done[*awaited] = true;
    m_shift = now - m_entries[*awaited].entry.at;
    m_patienceEnds.reset();
    m_noted = false;
    m_heard.push_back(std::move(piece.octets));
    if (m_heard.size() > RememberedFrames)
        m_heard.pop_front();
}

// The console's next frame of the same packet, or one behind others that may be missing.
std::optional<std::size_t> Replay::Awaited(const map27::Octets& frame) const
{
    const std::uint8_t packet = PacketOf(frame);
    for (std::size_t index = NextOfConsole(m_next, packet); index < m_entries.size();
         index = NextOfConsole(index + 1, packet)) {
        if (m_entries[index].entry.octets == frame)
            return index;
        if (!m_entries[index].mayBeMissing)
            break;
    }
    return std::nullopt;
}

std::size_t Replay::NextOfConsole(std::size_t from, std::uint8_t packet) const
{
    while (from < m_entries.size() &&
           (IsDone(from) || !IsOfConsole(m_entries[from]) || m_entries[from].packet != packet))
        ++from;
    return from;
}

bool Replay::IsRepetition(const map27::Octets& frame) const
{
    return std::ranges::find(m_heard, frame) != m_heard.end();
}

bool Replay::IsOfConsole(const ReplayEntry& one) const
{
    return one.entry.kind == TraceEntry::Kind::Frame && one.entry.direction == map27::Direction::ToRadio;
}

std::string Replay::PlaceOf(const ReplayEntry& one) const
{
    return "line " + std::to_string(one.line) + " of the trace, at " +
           std::to_string(one.entry.at.time_since_epoch().count()) + " ms";
}

} // namespace sim
