#include "tour/TourTexts.h"

#include "core/Errors.h"
#include "core/FormatMessage.h"
#include "core/StringSource.h"

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

QString TourTexts::Expand(const QString& text) const
{
    qsizetype position = 0;
    return ExpandUntil(text, position, {});
}

// Stops before the first of `ends`, or at the end of the text when there are none.
QString TourTexts::ExpandUntil(const QString& text, qsizetype& position, const QString& ends) const
{
    QString result;
    while (position < text.size() && !ends.contains(text[position])) {
        if (text[position] == QLatin1Char('{'))
            result += Reference(text, position);
        else
            result += text[position++];
    }
    if (position == text.size() && !ends.isEmpty())
        throw Error(ErrorCode::General, QStringLiteral("a } is missing"));
    return result;
}

QString TourTexts::Reference(const QString& text, qsizetype& position) const
{
    QStringList parts;
    do {
        ++position; // the brace or the bar
        parts << ExpandUntil(text, position, QStringLiteral("|}")).trimmed();
    } while (text[position] == QLatin1Char('|'));
    ++position;
    const QString name = parts.takeFirst();
    if (m_words.contains(name))
        return m_words.value(name);
    if (!m_ids.contains(name))
        throw Error(ErrorCode::General, QStringLiteral("{%1} is not a known name").arg(name));
    static const QRegularExpression place(QStringLiteral("#\\d\\d"));
    return FormatMessage(m_strings, m_ids.value(name), parts).replace(place, QStringLiteral("*"));
}
