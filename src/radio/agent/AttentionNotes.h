#pragma once

#include "radio/base/Transaction.h"

#include <QDateTime>
#include <QString>

class AttentionBook;
class Sounds;
class StatusTexts;
struct Caller;

// What of the radio's events waits for a person, and what ends such waiting by itself: a call that is
// answered or called back, a message that gets through after all.
class AttentionNotes {
public:
    // All must outlive it.
    AttentionNotes(AttentionBook& book, Sounds& sounds, const StatusTexts& statusTexts);

    // `what` is shown beside the caller.
    void EmergencyCall(const Caller& caller, const QString& what, const QDateTime& time);
    // A status has come in; it is an emergency where an administrator has marked it.
    void Status(const Caller& caller, int code, const QDateTime& time);
    void Missed(const QString& caller, const QString& callBack, const QString& what, const QDateTime& since);
    void WantsCallBack(const QString& caller, const QString& callBack, const QString& what,
                       const QDateTime& time);

    // An emergency call is connected: the operator here has it.
    void Answered(const QString& caller);
    // A call from here is connected, to what it was set up for.
    void Connected(const QString& destination);
    // An outgoing message, before its record is written; `reason` in words.
    void Failed(const OutgoingMessage& message, const QString& reason, const QDateTime& time);
    void Delivered(const OutgoingMessage& message);

private:
    AttentionBook& m_book;
    Sounds& m_sounds;
    const StatusTexts& m_statusTexts;
};
