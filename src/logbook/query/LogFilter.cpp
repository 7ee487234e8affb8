#include "logbook/query/LogFilter.h"

#include "core/eventlog/EventLog.h"
#include "dao/base/TextMatch.h"
#include "dao/base/Words.h"

#include <algorithm>

namespace {

constexpr qsizetype ShortestIndexed = 2; // a shorter beginning is in nearly every block
constexpr qsizetype LongestIndexed = 64;

QString Exactly(const QString& word)
{
    return u'"' + word.left(LongestIndexed) + u'"';
}

QString Beginning(const QString& word)
{
    return Exactly(word) + u'*';
}

QString AnyOf(const QStringList& parts)
{
    return u'(' + parts.join(QLatin1String(" OR ")) + u')';
}

} // namespace

LogMatch::LogMatch(const LogFilter& filter, const LogFacts& facts)
    : m_filter(filter),
      m_facts(facts),
      m_words(dao::WordsOf(filter.text)),
      m_party(dao::Fold(filter.party.trimmed())),
      m_isPattern(m_party.contains(u'*') || m_party.contains(u'?'))
{
    m_words.removeDuplicates();
}

bool LogMatch::Matches(const dao::EventRecord& record) const
{
    if (!m_filter.kinds.isEmpty() && !m_filter.kinds.contains(record.kind))
        return false;
    if ((m_filter.since.isValid() && record.time < m_filter.since) ||
        (m_filter.until.isValid() && record.time >= m_filter.until))
        return false;
    if (m_filter.direction != 0 && m_facts.DirectionOf(record) != m_filter.direction)
        return false;
    if (m_filter.emergency && !m_facts.IsEmergency(record))
        return false;
    return MatchesParty(record) && MatchesText(record);
}

bool LogMatch::MatchesParty(const dao::EventRecord& record) const
{
    if (m_party.isEmpty())
        return true;
    const QStringList names{record.from, record.to, record.fromNumber, record.toNumber};
    if (m_isPattern)
        return std::any_of(
            names.begin(), names.end(),
            [pattern = dao::LookFor(m_party)](const QString& name) { return pattern.Matches(name); });
    return std::any_of(names.begin(), names.end(),
                       [this](const QString& name) { return dao::Fold(name).startsWith(m_party); });
}

bool LogMatch::MatchesText(const dao::EventRecord& record) const
{
    if (m_words.isEmpty())
        return m_filter.text.trimmed().isEmpty() || m_facts.TextOf(record).contains(m_filter.text.trimmed());
    QStringList words =
        dao::WordsOf(QStringList{record.from, record.to, record.fromNumber, record.toNumber}.join(u' '));
    words += record.kind == static_cast<int>(EventType::Status) ? m_facts.WordsOfStatus(record.desc.toInt())
                                                                : dao::WordsOf(record.desc);
    return std::all_of(m_words.begin(), m_words.end(), [&](const QString& wanted) {
        return std::any_of(words.begin(), words.end(),
                           [&](const QString& word) { return word.startsWith(wanted); });
    });
}

dao::EventIndex::Wanted LogMatch::Wanted() const
{
    return {IndexWords(), m_filter.since, m_filter.until};
}

QString LogMatch::IndexWords() const
{
    QStringList all;
    for (const QString& word : m_words) {
        if (word.size() < ShortestIndexed)
            continue;
        QStringList any{Beginning(word)};
        for (const QString& code : m_facts.StatusesWith(word))
            any.append(Exactly(dao::WordOfStatus(code)));
        all.append(AnyOf(any));
    }
    if (!m_isPattern)
        for (const QString& word : dao::WordsOf(m_party))
            if (word.size() >= ShortestIndexed)
                all.append(Beginning(word));
    if (!m_filter.kinds.isEmpty()) {
        QStringList any;
        for (const int kind : m_filter.kinds)
            any.append(Exactly(dao::WordOfKind(kind)));
        all.append(AnyOf(any));
    }
    if (m_filter.emergency) {
        QStringList any;
        for (const QString& text : m_facts.EmergencyCalls()) {
            QStringList words;
            for (const QString& word : dao::WordsOf(text))
                words.append(Exactly(word));
            if (!words.isEmpty())
                any.append(u'(' + words.join(QLatin1String(" AND ")) + u')');
        }
        for (const int code : m_facts.EmergencyStatuses())
            any.append(Exactly(dao::WordOfStatus(QString::number(code))));
        any.sort();
        all.append(AnyOf(any));
    }
    return all.join(QLatin1String(" AND "));
}
