#pragma once

#include "map27/terminal/Terminal.h"

#include <QByteArray>
#include <QString>

// Watches a line for the operator: tells when the radio that should be there is not heard, and what is heard
// instead. The link has slower rules of its own (T1, N2, T4 of the standard); this one only observes, and
// asks for probes so that silence is noticed even when nobody has anything to send. Knows neither port nor
// clock.
class LinkWatch {
public:
    enum class Finding {
        None,     // nothing to tell, or too early
        Owes,     // the link is up, but the radio has not acknowledged for AnswerLimit
        Silent,   // no link, nothing is heard
        Foreign,  // no link, something sends characters that are not MAP27
        Noise,    // no link, senseless octets: the bit rate is wrong
        Damaged,  // no link, MAP27 frames with a wrong check sequence
        Echo,     // what is sent comes back
        LinkSlow, // no link, though good frames come
    };

    // On a line that is late both are longer by its round trip.
    static constexpr map27::Milliseconds ProbeInterval{8000};
    static constexpr map27::Milliseconds AnswerLimit{4000};
    // A line that has had no link for this long is opened anew: a dead network connection or a stuck adapter
    // never says so.
    static constexpr map27::Milliseconds ReopenInterval{30000};

    // The line was opened, or its link was lost.
    void Begin(map27::TimePoint now, const map27::Terminal& terminal);
    void LinkIsReady(map27::TimePoint now, const map27::Terminal& terminal);
    void Hear(map27::OctetSpan octets);
    void Send(const map27::Octets& frame);

    Finding Look(const map27::Terminal& terminal, map27::TimePoint now);
    // True once each time that a probe is due.
    bool TakeProbe(const map27::Terminal& terminal, map27::TimePoint now);
    bool ReopenIsDue(const map27::Terminal& terminal, map27::TimePoint now) const;
    // When to look again at the latest.
    map27::Deadline NextLook(const map27::Terminal& terminal) const;

    // What was heard instead of a radio, for a person: its characters, or its octets in hexadecimal.
    QString HeardInstead() const;

private:
    static map27::Milliseconds AnswerLimitOf(const map27::Terminal& terminal);
    Finding WhatIsHeard(const map27::Terminal& terminal) const;
    bool IsText() const;

    map27::TimePoint m_begin{};
    map27::TimePoint m_probeAt{};
    map27::TimePoint m_lastLook{};
    map27::FramingCounters m_framing; // at Begin
    QByteArray m_heard;               // the first octets since Begin or since the link came up
    QByteArray m_question;            // the last question sent, as a frame
};
