#include "radio/agent/AttentionNotes.h"

#include "core/attention/AttentionBook.h"
#include "core/sounds/Sounds.h"
#include "radio/agent/CallerNames.h"
#include "radio/base/StatusTexts.h"

using Entry = dao::AttentionRecord;
using Kind = Entry::Kind;
using Again = Entry::Again;

namespace {

Again AgainOf(const OutgoingMessage& message)
{
    if (!message.LastMayRepeat)
        return Again::Nothing;
    if (message.LastSentKind == EventType::Status)
        return Again::Status;
    return message.LastInEightBits ? Again::TextInEightBits : Again::Text;
}

} // namespace

AttentionNotes::AttentionNotes(AttentionBook& book, Sounds& sounds, const StatusTexts& statusTexts)
    : m_book(book),
      m_sounds(sounds),
      m_statusTexts(statusTexts)
{
}

void AttentionNotes::EmergencyCall(const Caller& caller, const QString& what, const QDateTime& time)
{
    m_book.Hear({.caller = caller.shown,
                 .kind = Kind::Emergency,
                 .what = what,
                 .callBack = caller.callBack,
                 .since = time});
}

void AttentionNotes::Status(const Caller& caller, int code, const QDateTime& time)
{
    if (!m_statusTexts.IsEmergency(code))
        return m_sounds.Tell(SoundKind::Status);
    m_book.Hear({.caller = caller.shown,
                 .kind = Kind::Emergency,
                 .what = m_statusTexts.StatusInText(code),
                 .callBack = caller.callBack,
                 .since = time});
}

void AttentionNotes::Missed(const QString& caller, const QString& callBack, const QString& what,
                            const QDateTime& since)
{
    m_book.Hear(
        {.caller = caller, .kind = Kind::MissedCall, .what = what, .callBack = callBack, .since = since});
}

void AttentionNotes::WantsCallBack(const QString& caller, const QString& callBack, const QString& what,
                                   const QDateTime& time)
{
    m_book.Hear(
        {.caller = caller, .kind = Kind::CallBack, .what = what, .callBack = callBack, .since = time});
    m_sounds.Tell(SoundKind::Ringing);
}

void AttentionNotes::Answered(const QString& caller)
{
    for (const Entry& entry : std::vector<Entry>(m_book.Entries()))
        if (entry.kind == Kind::Emergency && entry.caller == caller && !entry.IsTaken())
            m_book.Take(entry);
}

void AttentionNotes::Connected(const QString& destination)
{
    for (const Entry& entry : std::vector<Entry>(m_book.Entries())) {
        if (entry.callBack.isEmpty() || entry.callBack != destination)
            continue;
        if (entry.kind == Kind::MissedCall || entry.kind == Kind::CallBack)
            m_book.Finish(entry);
        else if (entry.kind == Kind::Emergency && !entry.IsTaken())
            m_book.Take(entry);
    }
}

void AttentionNotes::Failed(const OutgoingMessage& message, const QString& reason, const QDateTime& time)
{
    const bool status = message.LastSentKind == EventType::Status;
    const QString text =
        status ? m_statusTexts.StatusOutText(message.LastMessageText.toInt()) : message.LastMessageText;
    m_book.Hear({.caller = message.LastDestination,
                 .kind = Kind::Failed,
                 .what = reason.isEmpty() ? text : text + QStringLiteral(": ") + reason,
                 .callBack = message.LastDestination,
                 .again = AgainOf(message),
                 .message = message.LastMessageText,
                 .since = time});
    m_sounds.Tell(SoundKind::Failure);
}

void AttentionNotes::Delivered(const OutgoingMessage& message)
{
    for (const Entry& entry : std::vector<Entry>(m_book.Entries()))
        if (entry.kind == Kind::Failed && entry.caller == message.LastDestination &&
            entry.message == message.LastMessageText && entry.again == AgainOf(message))
            m_book.Finish(entry);
}
