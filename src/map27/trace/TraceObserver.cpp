#include "map27/trace/TraceObserver.h"

#include "map27/trace/FrameParts.h"
#include "map27/trace/MessageObserver.h"
#include "map27/trace/MessageWords.h"

#include <algorithm>

namespace map27 {

namespace {

constexpr std::int64_t FastestLine = 100'000'000; // bits per second

std::string FcsWords(std::uint16_t fcs)
{
    const Octets octets{static_cast<std::uint8_t>(fcs & 0xFF), static_cast<std::uint8_t>(fcs >> 8)};
    return ToHex(octets);
}

std::string PortWords(const TraceEntry& entry)
{
    std::string words;
    if (!entry.port.empty())
        words += ": " + WithoutControls(entry.port);
    if (entry.number > 0)
        words += ", " + std::to_string(entry.number) + " bit/s";
    return words;
}

std::string ContinuedWords(const TraceEntry& entry)
{
    const std::string words = "goes on from an earlier file" + PortWords(entry);
    if (!entry.link)
        return words + ", no link";
    const LinkProposal& agreed = entry.link->agreed;
    return words + ", link up with N1=" + std::to_string(agreed.n1) + " k=" + std::to_string(agreed.k) +
           " version " + std::to_string(agreed.version);
}

unsigned SpeedOf(const TraceEntry& entry)
{
    return static_cast<unsigned>(std::min(entry.number, FastestLine));
}

} // namespace

TraceObserver::Seen TraceObserver::Take(const TraceEntry& entry)
{
    // A trace that was continued by another run begins anew.
    if (IsAnotherRun(m_last, entry.at) || entry.kind == TraceEntry::Kind::Opened)
        Begin();
    m_last = entry.at;
    Seen seen;
    switch (entry.kind) {
    case TraceEntry::Kind::Frame:
        seen = TakeFrame(entry);
        break;
    case TraceEntry::Kind::Noise:
        m_link.TakeDamage(entry.direction);
        seen.words = "no frame: " + ToHex(entry.octets);
        seen.findings.push_back({Finding::Weight::Remark, "noise", entry.direction,
                                 std::to_string(entry.octets.size()) + " octets outside of frames."});
        break;
    case TraceEntry::Kind::Opened:
        m_link.Open(SpeedOf(entry));
        seen.words = "line opened" + PortWords(entry);
        if (!entry.time.empty())
            seen.words += ", " + WithoutControls(entry.time);
        break;
    case TraceEntry::Kind::Continued:
        m_link.Continue(entry.link, SpeedOf(entry));
        seen.words = ContinuedWords(entry);
        break;
    case TraceEntry::Kind::Said:
        m_conversation.TakeSaid(entry.octets);
        seen.words = "the radio said before: " + MessageWords(entry.octets, Direction::FromRadio);
        break;
    case TraceEntry::Kind::Closed:
        Begin();
        seen.words = "line closed";
        break;
    case TraceEntry::Kind::Time:
        seen.words = "the clock shows " + WithoutControls(entry.time);
        break;
    case TraceEntry::Kind::Lost:
        Begin();
        seen.words = entry.number == 1
                         ? "a line of the trace is missing here"
                         : std::to_string(entry.number) + " lines of the trace are missing here";
        break;
    case TraceEntry::Kind::Command:
        seen.words = "the simulated radio was told \"" + WithoutControls(entry.command) +
                     "\": " + WithoutControls(entry.answer);
        break;
    }
    for (const Finding& finding : seen.findings)
        ++(finding.weight == Finding::Weight::Breach ? m_totals.breaches : m_totals.remarks);
    return seen;
}

TraceObserver::Seen TraceObserver::TakeFrame(const TraceEntry& entry)
{
    ++m_totals.frames;
    const std::string onPurpose =
        entry.fault.empty() ? std::string{} : " [spoiled on purpose: " + WithoutControls(entry.fault) + ']';
    const auto parts = TakeApart(entry.octets);
    if (parts && parts->IsGood()) {
        Seen seen = TakeBody(parts->body, entry.direction, entry.at);
        seen.words += onPurpose;
        return seen;
    }
    ++m_totals.damaged;
    m_link.TakeDamage(entry.direction);
    Seen seen{.words = "damaged frame" + onPurpose};
    // It is the line's fault more often than that of an end.
    if (parts)
        seen.findings.push_back(
            {Finding::Weight::Remark, "fcs", entry.direction,
             "Check sequence " + FcsWords(parts->fcs) + " where " + FcsWords(parts->rightFcs) + " belongs."});
    else
        seen.findings.push_back({Finding::Weight::Remark, "no-frame", entry.direction,
                                 "Not one frame from start flag to check sequence."});
    return seen;
}

TraceObserver::Seen TraceObserver::TakeBody(OctetSpan body, Direction direction, TimePoint at)
{
    LinkObserver::Seen link = m_link.Take(body, direction, at);
    Seen seen{.words = std::move(link.words), .findings = std::move(link.findings)};
    if (link.isRequest)
        m_conversation.Forget();
    if (link.message.empty())
        return seen;
    seen.words += "  " + MessageWords(link.message, direction);
    if (link.isRepeated)
        return seen;
    ++m_totals.messages;
    seen.message.assign(link.message.begin(), link.message.end());
    for (const Findings& more :
         {JudgeMessage(link.message, direction), m_conversation.Take(link.message, direction)})
        seen.findings.insert(seen.findings.end(), more.begin(), more.end());
    return seen;
}

void TraceObserver::Begin()
{
    m_link.Forget();
    m_conversation.Forget();
}

} // namespace map27
