#include "radio/line/LinkWatch.h"

#include <algorithm>

namespace {

using map27::TimePoint;

constexpr qsizetype Memory = 256;     // octets
constexpr qsizetype FewestOctets = 4; // fewer prove nothing
constexpr qsizetype ShownCharacters = 24;
constexpr qsizetype ShownOctets = 8;
constexpr map27::Milliseconds LookInterval{1000};
constexpr std::size_t PacketType = 3; // its place in a frame, counted from the start flag
constexpr std::size_t MessageType = 7;
constexpr std::uint8_t Transfer = 0x04;

bool IsPrintable(char c)
{
    return (c >= ' ' && c <= '~') || c == '\r' || c == '\n' || c == '\t';
}

} // namespace

void LinkWatch::Begin(TimePoint now, const map27::Terminal& terminal)
{
    m_begin = now;
    m_lastLook = now;
    m_framing = terminal.LinkCounters().framing;
    m_heard.clear();
    m_question.clear();
}

void LinkWatch::LinkIsReady(TimePoint now, const map27::Terminal& terminal)
{
    m_probeAt = now + ProbeInterval + terminal.RoundTripTime();
    m_heard.clear();
}

void LinkWatch::Hear(map27::OctetSpan octets)
{
    const auto length = std::min(static_cast<qsizetype>(octets.size()), Memory - m_heard.size());
    m_heard.append(reinterpret_cast<const char*>(octets.data()), length);
}

// A radio never asks this question: a line that carries it to us echoes our own.
void LinkWatch::Send(const map27::Octets& frame)
{
    if (frame.size() > MessageType && frame[PacketType] == Transfer &&
        frame[MessageType] == map27::Type::Personality)
        m_question =
            QByteArray(reinterpret_cast<const char*>(frame.data()), static_cast<qsizetype>(frame.size()));
}

LinkWatch::Finding LinkWatch::Look(const map27::Terminal& terminal, TimePoint now)
{
    m_lastLook = now;
    if (!m_question.isEmpty() && m_heard.contains(m_question))
        return Finding::Echo;
    if (!terminal.IsLinkReady())
        return now - m_begin >= AnswerLimitOf(terminal) ? WhatIsHeard(terminal) : Finding::None;
    const map27::Deadline since = terminal.UnacknowledgedSince();
    return since && now - *since >= AnswerLimitOf(terminal) ? Finding::Owes : Finding::None;
}

map27::Milliseconds LinkWatch::AnswerLimitOf(const map27::Terminal& terminal)
{
    return AnswerLimit + terminal.RoundTripTime();
}

LinkWatch::Finding LinkWatch::WhatIsHeard(const map27::Terminal& terminal) const
{
    const map27::FramingCounters& framing = terminal.LinkCounters().framing;
    if (framing.frames > m_framing.frames)
        return Finding::LinkSlow;
    if (framing.wrongFcs > m_framing.wrongFcs)
        return Finding::Damaged;
    if (m_heard.size() < FewestOctets)
        return Finding::Silent;
    return IsText() ? Finding::Foreign : Finding::Noise;
}

bool LinkWatch::IsText() const
{
    const auto printable = std::count_if(m_heard.begin(), m_heard.end(), IsPrintable);
    return printable * 10 >= m_heard.size() * 9;
}

bool LinkWatch::TakeProbe(const map27::Terminal& terminal, TimePoint now)
{
    if (!terminal.IsLinkReady() || now < m_probeAt)
        return false;
    m_probeAt = now + ProbeInterval + terminal.RoundTripTime();
    return true;
}

bool LinkWatch::ReopenIsDue(const map27::Terminal& terminal, TimePoint now) const
{
    return !terminal.IsLinkReady() && now - m_begin >= ReopenInterval;
}

map27::Deadline LinkWatch::NextLook(const map27::Terminal& terminal) const
{
    if (!terminal.IsLinkReady())
        return std::max(m_begin + AnswerLimitOf(terminal), m_lastLook + LookInterval);
    const map27::Deadline since = terminal.UnacknowledgedSince();
    const bool toldLater = since && *since + AnswerLimitOf(terminal) > m_lastLook;
    return toldLater ? std::min(*since + AnswerLimitOf(terminal), m_probeAt) : m_probeAt;
}

QString LinkWatch::HeardInstead() const
{
    if (!IsText())
        return QString::fromLatin1(m_heard.left(ShownOctets).toHex(' ').toUpper());
    return QString::fromLatin1(m_heard).simplified().left(ShownCharacters);
}
