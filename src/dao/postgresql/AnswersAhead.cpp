#include "dao/postgresql/AnswersAhead.h"
#include "dao/postgresql/ServerLink.h"
#include <QRegularExpression>
#include <utility>

namespace dao::postgresql {

QByteArray AnswersAhead::Key(const QString& sql, const std::vector<QByteArray>& texts)
{
    QByteArray key = sql.toUtf8();
    for (const QByteArray& text : texts)
        key += '\0' + (text.isNull() ? QByteArray("n") : 't' + text);
    return key;
}

void AnswersAhead::Keep(const QByteArray& key, Result answer)
{
    m_answers.insert_or_assign(key, std::move(answer));
}

std::optional<Result> AnswersAhead::Take(const QByteArray& key)
{
    auto kept = m_answers.extract(key);
    return kept ? std::optional(std::move(kept.mapped())) : std::nullopt;
}

void AnswersAhead::Follow(const ServerLink& link)
{
    if (m_generation != link.Generation() || m_notices != link.Notices())
        Drop();
    m_generation = link.Generation();
    m_notices = link.Notices();
}

// The update of a table changes what is read of this table and nothing else; other statements may do more.
void AnswersAhead::DropWhatReads(const QString& change)
{
    static const QRegularExpression update("^UPDATE \"(\\w+)\" SET ");
    const QByteArray table = update.match(change).captured(1).toUtf8();
    std::erase_if(m_answers, [&](const auto& kept) { return kept.first.contains(table); });
}

} // namespace dao::postgresql
