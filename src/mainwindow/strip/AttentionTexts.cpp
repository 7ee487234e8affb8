#include "mainwindow/strip/AttentionTexts.h"

#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "mainwindow/base/LongTime.h"
#include "mainwindow/base/TextIds.h"

#include <QLocale>
#include <algorithm>
#include <utility>

using Kind = dao::AttentionRecord::Kind;

namespace {

int KindText(Kind kind)
{
    switch (kind) {
    case Kind::Emergency:
        return MainText::WaitingEmergency;
    case Kind::MissedCall:
        return MainText::WaitingMissedCall;
    case Kind::CallBack:
        return MainText::WaitingCallBack;
    case Kind::Failed:
        return MainText::WaitingFailed;
    }
    return 0;
}

} // namespace

QString AttentionTexts::KindOf(const Entry& entry) const
{
    return m_strings.LoadString(KindText(entry.kind));
}

QString AttentionTexts::Time(const QDateTime& time, const QDateTime& now) const
{
    const QDateTime local = time.toLocalTime();
    const QString clock = LongTime(local.time());
    if (local.date() == now.toLocalTime().date())
        return clock;
    return QLocale().toString(local.date(), QLocale::ShortFormat) + u' ' + clock;
}

QString AttentionTexts::TakenBy(const Entry& entry, const QDateTime& now) const
{
    if (!entry.IsTaken())
        return {};
    return FormatMessage(m_strings, entry.takenAway ? MainText::WaitingTakenAway : MainText::WaitingTaken,
                         {entry.takenBy, entry.takenOn, Time(entry.takenAt, now)});
}

QString AttentionTexts::Line(const Entry& entry, const QDateTime& now) const
{
    const QString since = Time(entry.since, now);
    QString line = entry.times == 1 ? FormatMessage(m_strings, MainText::WaitingLine,
                                                    {KindOf(entry), entry.caller, entry.what, since})
                                    : FormatMessage(m_strings, MainText::WaitingLineTimes,
                                                    {KindOf(entry), entry.caller, entry.what, since,
                                                     QString::number(entry.times), Time(entry.last, now)});
    if (entry.IsTaken())
        line += QStringLiteral(" - ") + TakenBy(entry, now);
    return line;
}

QString AttentionTexts::Counts(const std::vector<Entry>& entries) const
{
    constexpr std::pair<Kind, int> Texts[] = {{Kind::Emergency, MainText::CountEmergencies},
                                              {Kind::MissedCall, MainText::CountMissedCalls},
                                              {Kind::CallBack, MainText::CountCallBacks},
                                              {Kind::Failed, MainText::CountFailed}};
    QStringList counts;
    for (const auto& [kind, text] : Texts) {
        const auto count = std::count_if(entries.begin(), entries.end(), [kind = kind](const Entry& entry) {
            return entry.kind == kind && !entry.IsTaken();
        });
        if (count > 0)
            counts.append(FormatMessage(m_strings, text, {QString::number(count)}));
    }
    const auto taken =
        std::count_if(entries.begin(), entries.end(), [](const Entry& entry) { return entry.IsTaken(); });
    if (taken > 0)
        counts.append(FormatMessage(m_strings, MainText::CountTaken, {QString::number(taken)}));
    return counts.join(QStringLiteral(", "));
}
