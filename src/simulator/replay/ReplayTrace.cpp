#include "simulator/replay/ReplayTrace.h"

#include "map27/link/Framing.h"
#include "map27/link/LinkPackets.h"
#include "map27/trace/FrameParts.h"
#include "simulator/base/FaultSettings.h"

#include <QFile>

#include <algorithm>
#include <stdexcept>

namespace sim {

namespace {

constexpr qint64 LongestLine = qint64{256} * 1024; // octets

bool IsFault(const TraceEntry& entry, FaultKind kind)
{
    return entry.fault == DescriptionOf(kind).word;
}

bool IsFrameOf(const TraceEntry& entry, map27::Direction direction)
{
    return entry.kind == TraceEntry::Kind::Frame && entry.direction == direction;
}

// Marks the console's repetitions: of an acknowledgement at rest, and of anything that got no answer.
class Repetitions {
public:
    bool Take(const TraceEntry& entry)
    {
        if (IsFrameOf(entry, map27::Direction::FromRadio)) {
            m_sinceRadio.clear();
            return false;
        }
        if (!IsFrameOf(entry, map27::Direction::ToRadio))
            return false;
        if (PacketOf(entry.octets) == map27::packet::LinkAcknowledgement) {
            const bool isSame = entry.octets == m_acknowledgement;
            m_acknowledgement = entry.octets;
            return isSame;
        }
        const bool isSame = std::ranges::find(m_sinceRadio, entry.octets) != m_sinceRadio.end();
        m_sinceRadio.push_back(entry.octets);
        return isSame;
    }

private:
    map27::Octets m_acknowledgement;
    std::vector<map27::Octets> m_sinceRadio; // what the console sent since the radio's last frame
};

class Loader {
public:
    void Take(TraceEntry entry, int line)
    {
        if (map27::IsAnotherRun(m_last, entry.at))
            m_shift += m_last - entry.at;
        m_last = entry.at;
        m_lastPlayed = std::max(m_lastPlayed, entry.at + m_shift);
        entry.at = m_lastPlayed;
        const TraceEntry::Kind kind = entry.kind;
        const bool isOfUse =
            kind == TraceEntry::Kind::Frame || kind == TraceEntry::Kind::Command ||
            kind == TraceEntry::Kind::Opened || kind == TraceEntry::Kind::Said ||
            kind == TraceEntry::Kind::Lost ||
            (kind == TraceEntry::Kind::Noise && entry.direction == map27::Direction::FromRadio);
        if (!isOfUse)
            return;
        const bool mayBeMissing = m_repetitions.Take(entry);
        const std::uint8_t packet = PacketOf(entry.octets);
        m_entries.push_back({std::move(entry), line, packet, mayBeMissing});
    }

    std::vector<ReplayEntry> TakeEntries() { return std::move(m_entries); }

private:
    std::vector<ReplayEntry> m_entries;
    Repetitions m_repetitions;
    map27::TimePoint m_last{};       // in the trace
    map27::TimePoint m_lastPlayed{}; // as it is to be played
    map27::Milliseconds m_shift{0};
};

} // namespace

std::vector<ReplayEntry> LoadReplay(const QString& file)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        throw std::runtime_error(file.toStdString() + ": " + source.errorString().toStdString());
    Loader loader;
    int number = 0;
    while (!source.atEnd()) {
        QByteArray line = source.readLine(LongestLine);
        if (++number == 1 && line.startsWith("\xEF\xBB\xBF"))
            line.remove(0, 3); // some editors put it there
        if (line.trimmed().isEmpty())
            continue;
        const QByteArray inner = line.endsWith('\n') ? line.chopped(1) : line;
        const auto read = map27::ReadTraceEntry({inner.constData(), static_cast<std::size_t>(inner.size())});
        if (const auto* entry = std::get_if<TraceEntry>(&read)) {
            loader.Take(*entry, number);
        } else if (line.endsWith('\n') || !source.atEnd()) {
            const auto& problem = std::get<map27::TraceProblem>(read);
            throw std::runtime_error(file.toStdString() + ", line " + std::to_string(number) + ", column " +
                                     std::to_string(problem.column) + ": " + problem.reason);
        } // else it was cut off, as by a program that was killed
    }
    if (source.error() != QFileDevice::NoError)
        throw std::runtime_error(file.toStdString() + ": " + source.errorString().toStdString());
    std::vector<ReplayEntry> entries = loader.TakeEntries();
    if (std::ranges::none_of(
            entries, [](const ReplayEntry& one) { return one.entry.kind == TraceEntry::Kind::Frame; }))
        throw std::runtime_error(file.toStdString() + ": there is no frame in it");
    return entries;
}

std::vector<ReplayEntry> ToReplay(const std::vector<TraceEntry>& entries)
{
    Loader loader;
    int number = 0;
    for (const TraceEntry& entry : entries)
        loader.Take(entry, ++number);
    return loader.TakeEntries();
}

std::optional<std::string> WhyNotAllFrames(const std::vector<ReplayEntry>& entries)
{
    const auto isA = [](TraceEntry::Kind kind) {
        return [kind](const ReplayEntry& one) { return one.entry.kind == kind; };
    };
    const auto line = [](const ReplayEntry& one) { return "line " + std::to_string(one.line); };
    const auto opened = std::ranges::find_if(entries, isA(TraceEntry::Kind::Opened));
    const auto first = std::ranges::find_if(entries, [](const ReplayEntry& one) { return one.packet != 0; });
    if (first != entries.end() && first < opened && first->packet != map27::packet::LinkRequest)
        return line(*first) + ": the trace begins in the middle of a link, and no new link can go on there" +
               (opened == entries.end() ? std::string{}
                                        : "; the line is opened in " + line(*opened) +
                                              ", so that what follows can be played by itself");
    const auto lost = std::ranges::find_if(entries, isA(TraceEntry::Kind::Lost));
    if (lost != entries.end())
        return line(*lost) + ": " + std::to_string(lost->entry.number) +
               " lines of the trace are missing there";
    return std::nullopt;
}

std::uint8_t PacketOf(map27::OctetSpan frame)
{
    const auto parts = map27::TakeApart(frame);
    return parts && parts->IsGood() && !parts->body.empty() ? parts->body[0] : 0;
}

map27::Octets PlayedOctets(const TraceEntry& entry)
{
    map27::Octets octets = entry.octets;
    if (IsFault(entry, FaultKind::DropFrames) || IsFault(entry, FaultKind::LostLa) || entry.fault == "silent")
        return {};
    if (IsFault(entry, FaultKind::WrongFcs) || IsFault(entry, FaultKind::BitErrors))
        octets.back() = static_cast<std::uint8_t>(~octets.back());
    if (IsFault(entry, FaultKind::DuplicateLt))
        octets.insert(octets.end(), entry.octets.begin(), entry.octets.end());
    if (IsFault(entry, FaultKind::StrayLr)) {
        const map27::Octets request = map27::EncodeFrame(map27::Octets{map27::packet::LinkRequest, 14, 1, 1});
        octets.insert(octets.begin(), request.begin(), request.end());
    }
    return octets;
}

} // namespace sim
