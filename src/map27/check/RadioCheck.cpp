#include "map27/check/RadioCheck.h"

#include "map27/link/Framing.h"
#include "map27/trace/FrameParts.h"
#include "map27/trace/MessageWords.h"

#include <algorithm>

namespace map27 {

namespace {

using Verdict = CheckReport::Verdict;
using Way = CheckStep::Way;

constexpr Milliseconds UntilLink{20000};
constexpr Milliseconds UntilCredit{60000}; // several times what a radio is silent at rest
constexpr Milliseconds LateLine{100};      // acknowledgements that take longer
constexpr int MostLinksLost = 20;

// What somebody wants of the operator, and what the radio does not say again.
bool IsArrival(OctetSpan message)
{
    switch (message[0]) {
    case Type::Status:
    case Type::Sst:
    case Type::Mst:
    case Type::ModemData:
    case Type::Call:
    case Type::EmergencyCall:
    case Type::ReceiveNegative: // who has called
        return true;
    default:
        return false;
    }
}

std::string ProposalText(const LinkProposal& proposal)
{
    return "N1=" + std::to_string(proposal.n1) + " k=" + std::to_string(proposal.k) + " version " +
           std::to_string(proposal.version);
}

} // namespace

RadioCheck::RadioCheck(const CheckSettings& settings)
    : m_settings(settings),
      m_link(LinkParameters::ForBitRate(settings.bitsPerSecond))
{
    for (CheckStep& step : CheckStepsFor(settings))
        m_steps.push_back(std::move(step));
}

CheckOutput RadioCheck::Start(TimePoint now)
{
    m_startedAt = m_begunAt = now;
    m_limit = now + UntilLink;
    Note({.kind = TraceEntry::Kind::Opened, .at = now, .number = m_settings.bitsPerSecond});
    Take(m_link.Start(now), now);
    return TakeOutput();
}

CheckOutput RadioCheck::Feed(OctetSpan octets, TimePoint now)
{
    if (m_over)
        return {};
    for (LinePiece& piece : m_splitter.Feed(octets)) {
        ++m_heard;
        Note({.kind = piece.isFrame ? TraceEntry::Kind::Frame : TraceEntry::Kind::Noise,
              .at = now,
              .direction = Direction::FromRadio,
              .octets = std::move(piece.octets)});
    }
    Take(m_link.Feed(octets, now), now);
    return TakeOutput();
}

CheckOutput RadioCheck::OnTime(TimePoint now)
{
    if (m_over)
        return {};
    Take(m_link.OnTime(now), now);
    if (!m_over && m_limit && now >= *m_limit)
        OnLimit(now);
    return TakeOutput();
}

Deadline RadioCheck::NextDeadline() const
{
    return m_over ? Deadline{} : Earlier(m_link.NextDeadline(), m_limit);
}

void RadioCheck::Take(LinkOutput output, TimePoint now)
{
    for (Octets& frame : output.frames)
        Send(std::move(frame), now);
    m_events.insert(m_events.end(), output.events.begin(), output.events.end());
    if (m_takingEvents)
        return;
    TakeEvents(now);
    while (m_waiting && !m_over && m_link.IsFree()) {
        m_waiting = false;
        Begin(now);
    }
}

// What an event brings about may bring events of its own, which follow it.
void RadioCheck::TakeEvents(TimePoint now)
{
    m_takingEvents = true;
    while (!m_events.empty()) {
        const LinkEvent event = std::move(m_events.front());
        m_events.pop_front();
        if (const auto* received = std::get_if<MessageReceived>(&event)) {
            TakeMessage(received->message, now);
        } else if (m_over) {
            continue;
        } else if (std::holds_alternative<LinkReady>(event)) {
            OnReady(now);
        } else {
            ++m_report.linksLost;
            m_limit = now + UntilLink;
            m_running = m_waiting = false; // tried again on the next link
            if (m_report.linksLost > MostLinksLost)
                GiveUp(now);
        }
    }
    m_takingEvents = false;
}

void RadioCheck::Send(Octets frame, TimePoint now)
{
    const auto parts = TakeApart(frame);
    if (parts && parts->IsGood() && parts->body[0] == packet::LinkTransfer)
        m_transfers.Take(frame, parts->body[1], now);
    Note({.at = now, .direction = Direction::ToRadio, .octets = frame});
    m_output.frames.push_back(std::move(frame));
}

void RadioCheck::Note(TraceEntry entry)
{
    const TraceObserver::Seen seen = m_observer.Take(entry);
    // What this end does wrong on purpose is not of interest.
    for (const Finding& finding : seen.findings)
        if (finding.by == Direction::FromRadio)
            m_report.Add(finding);
    if (entry.kind == TraceEntry::Kind::Frame && entry.direction == Direction::FromRadio)
        NoteAcknowledgement(entry);
    m_output.traced.push_back(std::move(entry));
}

void RadioCheck::NoteAcknowledgement(const TraceEntry& entry)
{
    const auto parts = TakeApart(entry.octets);
    const bool isAcknowledgement = parts && parts->IsGood() && parts->body.size() >= packet::HeaderOctets &&
                                   parts->body[0] == packet::LinkAcknowledgement;
    if (!isAcknowledgement)
        return;
    const std::uint8_t number = parts->body[1];
    m_watch.TakeAcknowledgement(m_transfers.IsBeyond(number));
    if (const auto took = m_transfers.TakeAcknowledgement(number, entry.at))
        m_report.acknowledgements.Add(*took);
}

void RadioCheck::OnReady(TimePoint now)
{
    m_transfers.Begin();
    const auto agreed = m_observer.Link().SetUp().Agreed();
    if (!m_report.linkCameUp) {
        m_report.linkCameUp = true;
        const auto asked = m_observer.Link().SetUp().First(Direction::FromRadio);
        m_report.Add("link", Verdict::Good,
                     "up; the radio asked for " + (asked ? ProposalText(*asked) : "nothing") +
                         ", agreed are " + (agreed ? ProposalText(*agreed) : "unknown values"),
                     now - m_startedAt);
    } else if (m_asked && !m_steps.empty()) {
        m_asked = false;
        m_report.Add(m_steps.front().name, Verdict::Good, "the radio agrees to a new link", now - m_begunAt);
        m_steps.pop_front();
    }
    Await(now);
}

// A radio may give no credit for a while; what a step sends would wait for it, and its time run out.
void RadioCheck::Await(TimePoint now)
{
    if (m_steps.empty())
        return Finish();
    m_running = false;
    m_waiting = true;
    m_limit = now + UntilCredit;
    if (!m_steps.front().IsSent() || (m_link.IsFree() && !m_takingEvents)) {
        m_waiting = false;
        Begin(now);
    }
}

// The step at the front.
void RadioCheck::Begin(TimePoint now)
{
    const CheckStep& step = m_steps.front();
    m_running = true;
    m_begunAt = now;
    m_limit = now + LimitOf(step);
    m_watch.Begin();
    switch (step.way) {
    case Way::Message:
        return BeginMessage(step.message, now);
    case Way::FlagFcs:
        return BeginMessage(m_transfers.WithFlagFcs(step.message), now);
    case Way::Damaged: {
        Octets frame = EncodeFrame(m_transfers.Next(step.message));
        frame.back() ^= 0x55;
        return Send(std::move(frame), now);
    }
    case Way::Repeated:
        if (!m_transfers.Last().empty() && m_wasAnswered)
            return Send(m_transfers.Last(), now);
        m_report.Add(step.name, Verdict::LeftOut,
                     m_transfers.Last().empty() ? "the link is a new one, so that there is nothing to repeat"
                                                : "the message before was not answered");
        return EndStep(now);
    case Way::NewLink:
        m_asked = true;
        m_running = false;
        return Take(m_link.Reset(now, Milliseconds{0}), now);
    case Way::Pause:
    case Way::Rest:
        break;
    }
}

// A late line needs more time, for what must not come, too.
Milliseconds RadioCheck::LimitOf(const CheckStep& step) const
{
    const Milliseconds longest = m_report.acknowledgements.Quantile(100);
    switch (step.way) {
    case Way::Damaged:
    case Way::Repeated:
        return std::max(step.limit, 2 * longest);
    case Way::Pause:
        return longest > LateLine ? 2 * longest : Milliseconds{0};
    case Way::Rest:
    case Way::NewLink:
        return step.limit;
    default:
        return step.limit + 2 * longest;
    }
}

void RadioCheck::BeginMessage(const Octets& message, TimePoint now)
{
    auto [result, output] = m_link.Send(message, now);
    if (result == SendResult::TooLong) {
        m_report.Add(m_steps.front().name, Verdict::LeftOut, "longer than the agreed N1 allows");
        return EndStep(now);
    }
    Take(std::move(output), now);
}

void RadioCheck::TakeMessage(OctetSpan message, TimePoint now)
{
    if (IsArrival(message))
        return TakeArrival(message, now);
    if (!m_running || m_steps.empty())
        return;
    const CheckStep& step = m_steps.front();
    const bool mayAnswer = step.isAnswer != nullptr && step.isAnswer(message);
    m_watch.TakeMessage(message);
    if (mayAnswer)
        OnAnswer(message, now);
}

// An emergency ends the check, so that the console can take the radio over.
void RadioCheck::TakeArrival(OctetSpan message, TimePoint now)
{
    const bool isEmergency = message[0] == Type::EmergencyCall;
    m_report.received.push_back(
        {now - m_startedAt, isEmergency, MessageWords(message, Direction::FromRadio)});
    if (m_over)
        return;
    // An answer has had to wait behind it for a round trip.
    if (m_running && m_limit && m_steps.front().isAnswer != nullptr)
        *m_limit += m_report.acknowledgements.Quantile(100);
    if (!isEmergency)
        return;
    if (m_running && !m_steps.empty() && m_steps.front().GoesOut())
        BeginMessage(CancelOf(m_steps.front()).message, now);
    LeaveOutTheRest();
    Finish();
}

void RadioCheck::OnAnswer(OctetSpan answer, TimePoint now)
{
    const CheckStep& step = m_steps.front();
    const Milliseconds took = now - m_begunAt;
    m_wasAnswered = true;
    if (step.isQuestion)
        m_report.answers.Add(took);
    if (step.judge)
        step.judge(m_report, answer, took);
    else
        m_report.Add(step.name, Verdict::Good, step.answered, took);
    EndStep(now);
}

void RadioCheck::EndStep(TimePoint now)
{
    const std::string_view name = m_steps.front().name;
    m_steps.pop_front();
    m_running = false;
    if (name == "quick-questions" && Current() != name)
        JudgeQuickQuestions();
    if (m_link.IsReady())
        Await(now);
}

void RadioCheck::JudgeQuickQuestions()
{
    m_report.Add("quick-questions", m_allQuick ? Verdict::Good : Verdict::NoAnswer,
                 "asked one after the other, past number 16; all answers so far within " +
                     std::to_string(m_report.answers.Quantile(100).count()) + " ms");
}

void RadioCheck::OnLimit(TimePoint now)
{
    if (m_waiting)
        return GiveUp(now, "the radio gives no credit to send it");
    if (!m_link.IsReady() || !m_running)
        return GiveUp(now);
    const CheckStep& step = m_steps.front();
    if (step.way == Way::Pause)
        return EndStep(now);
    m_wasAnswered = false;
    if (step.name == "quick-questions") {
        m_allQuick = false;
        // The others would not be answered either.
        while (m_steps.size() > 1 && m_steps[1].name == step.name)
            m_steps.erase(m_steps.begin() + 1);
        return EndStep(now);
    }
    m_report.items.push_back(m_watch.Judge(step, now - m_begunAt));
    if (step.GoesOut())
        m_steps.insert(m_steps.begin() + 1, CancelOf(step));
    else if (step.way == Way::Message && step.message[0] == Type::Cancel)
        LeaveOutMessages();
    EndStep(now);
}

// As long as one is under way, what the radio says of the next one tells nothing.
void RadioCheck::LeaveOutMessages()
{
    for (const CheckStep& step : m_steps)
        if (step.GoesOut())
            m_report.Add(step.name, Verdict::LeftOut, "an earlier message has not come to its end");
    std::erase_if(m_steps, [](const CheckStep& step) { return step.GoesOut(); });
}

void RadioCheck::GiveUp(TimePoint now, const char* why)
{
    if (!m_report.linkCameUp)
        m_report.Add("link", Verdict::NoAnswer,
                     m_heard == 0 ? "nothing comes from the radio"
                                  : "something comes, but no link within " +
                                        std::to_string((now - m_startedAt).count() / 1000) + " s");
    else
        m_report.Add(Current(), Verdict::NoAnswer, why);
    if (!m_steps.empty() && m_report.linkCameUp)
        m_steps.pop_front();
    LeaveOutTheRest();
    Finish();
}

// Each name once: some are tried several times.
void RadioCheck::LeaveOutTheRest()
{
    std::string_view last = m_report.items.empty() ? "" : m_report.items.back().name;
    for (const CheckStep& step : m_steps)
        if (std::exchange(last, step.name) != step.name)
            m_report.Add(step.name, Verdict::LeftOut, "not tried");
    m_steps.clear();
}

void RadioCheck::Finish()
{
    m_over = true;
    m_limit.reset();
    m_link.Stop();
}

} // namespace map27
