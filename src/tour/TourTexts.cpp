#include "tour/TourTexts.h"

#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"

#include <QRegularExpression>

TourTexts::TourTexts(const IStringSource& strings, const QMap<QString, QString>& words)
    : m_strings(strings),
      m_words(words)
{
}

void TourTexts::Name(const QString& name, int id)
{
    if (m_words.contains(name) || m_ids.contains(name))
        throw Error(ErrorCode::General, QStringLiteral("the name %1 is taken").arg(name));
    m_strings.LoadString(id);
    m_ids.insert(name, id);
}

// From the last brace to the first, so that the inner ones come before those around them.
QString TourTexts::Expand(QString text) const
{
    qsizetype open = text.size();
    while (open > 0 && (open = text.lastIndexOf(QLatin1Char('{'), open - 1)) >= 0) {
        const qsizetype close = text.indexOf(QLatin1Char('}'), open);
        if (close < 0)
            throw Error(ErrorCode::General, QStringLiteral("a } is missing"));
        QStringList parts = text.mid(open + 1, close - open - 1).split(QLatin1Char('|'));
        for (QString& part : parts)
            part = part.trimmed();
        text.replace(open, close - open + 1, Value(parts.first(), parts.mid(1)));
    }
    return text;
}

QString TourTexts::Value(const QString& name, const QStringList& values) const
{
    if (m_words.contains(name))
        return m_words.value(name);
    if (!m_ids.contains(name))
        throw Error(ErrorCode::General, QStringLiteral("{%1} is not a known name").arg(name));
    static const QRegularExpression place(QStringLiteral("#\\d\\d"));
    return FormatMessage(m_strings, m_ids.value(name), values).replace(place, QStringLiteral("*"));
}
