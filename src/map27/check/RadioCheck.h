#pragma once

#include "map27/check/OwnTransfers.h"
#include "map27/check/StepWatch.h"
#include "map27/link/Link.h"
#include "map27/trace/FrameSplitter.h"
#include "map27/trace/TraceObserver.h"

#include <deque>

namespace map27 {

// What one call brought about.
struct CheckOutput {
    std::vector<Octets> frames;     // to transmit, in order
    std::vector<TraceEntry> traced; // what went over the line, both ways
};

// Walks through a connected radio as a console would, step by step, and watches every frame meanwhile. Has
// neither port nor clock and is used like Link.
class RadioCheck {
public:
    explicit RadioCheck(const CheckSettings& settings);

    CheckOutput Start(TimePoint now);
    CheckOutput Feed(OctetSpan octets, TimePoint now);
    CheckOutput OnTime(TimePoint now);
    Deadline NextDeadline() const;

    bool IsOver() const { return m_over; }
    const CheckReport& Report() const { return m_report; }
    // What is being tried, for whoever waits.
    std::string_view Current() const { return m_steps.empty() ? "" : m_steps.front().name; }

private:
    void Take(LinkOutput output, TimePoint now);
    void TakeEvents(TimePoint now);
    void TakeMessage(OctetSpan message, TimePoint now);
    void TakeArrival(OctetSpan message, TimePoint now);
    void Send(Octets frame, TimePoint now);
    void Note(TraceEntry entry);
    void NoteAcknowledgement(const TraceEntry& entry);
    void OnReady(TimePoint now);
    void Await(TimePoint now);
    void Begin(TimePoint now);
    Milliseconds LimitOf(const CheckStep& step) const;
    void BeginMessage(const Octets& message, TimePoint now);
    void EndStep(TimePoint now);
    void OnLimit(TimePoint now);
    void OnAnswer(OctetSpan answer, TimePoint now);
    void JudgeQuickQuestions();
    void GiveUp(TimePoint now, const char* why = "the link was lost and did not come up for long enough");
    void LeaveOutMessages();
    void LeaveOutTheRest();
    void Finish();
    CheckOutput TakeOutput() { return std::exchange(m_output, {}); }

    CheckSettings m_settings;
    Link m_link;
    FrameSplitter m_splitter;
    TraceObserver m_observer;
    CheckReport m_report;
    std::deque<CheckStep> m_steps;
    std::deque<LinkEvent> m_events; // not dealt with yet
    CheckOutput m_output;

    TimePoint m_startedAt{};
    bool m_over = false;
    bool m_running = false;     // the step at the front has begun
    bool m_waiting = false;     // it will when the link is free
    bool m_wasAnswered = false; // the step before it was
    bool m_asked = false;       // for the new link that is being set up
    bool m_takingEvents = false;
    TimePoint m_begunAt{};
    Deadline m_limit;
    OwnTransfers m_transfers;
    StepWatch m_watch;      // of the step that has begun
    int m_heard = 0;        // frames, good or bad, and noise
    bool m_allQuick = true; // every quick question was answered
};

} // namespace map27
