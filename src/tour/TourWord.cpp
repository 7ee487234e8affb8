#include "tour/TourWord.h"

#include <QKeySequence>

namespace {

bool IsPlace(const TourToken& token)
{
    return !token.quoted && !token.text.isEmpty();
}

bool IsKey(const TourToken& token)
{
    const QKeySequence keys = QKeySequence::fromString(token.text);
    return !token.quoted && keys.count() == 1 && keys[0].key() != Qt::Key_unknown;
}

bool IsNumber(const TourToken& token)
{
    bool valid = false;
    return token.text.toUInt(&valid) < INT_MAX && valid && !token.quoted;
}

// Whether a token may stand where the shape has a word in capitals.
bool Fits(const TourToken& token, const QString& kind)
{
    if (kind == QLatin1String("TEXT"))
        return token.quoted;
    if (kind == QLatin1String("KEY"))
        return IsKey(token);
    if (kind == QLatin1String("NUMBER"))
        return IsNumber(token);
    return IsPlace(token) && (kind == QLatin1String("PLACE") || !token.text.contains(QLatin1Char('/')));
}

} // namespace

std::optional<QStringList> MatchShape(const QString& shape, const QString& line,
                                      const QList<TourToken>& tokens)
{
    QStringList values;
    const QStringList parts = shape.split(QLatin1Char(' '));
    for (qsizetype i = 0; i < parts.size(); ++i) {
        if (i >= tokens.size())
            return std::nullopt;
        if (parts[i] == QLatin1String("REST"))
            return values << line.mid(tokens[i].start);
        const bool isValue = parts[i].front().isUpper();
        if (isValue ? !Fits(tokens[i], parts[i]) : tokens[i].quoted || tokens[i].text != parts[i])
            return std::nullopt;
        if (isValue)
            values << tokens[i].text;
    }
    return parts.size() == tokens.size() ? std::optional(values) : std::nullopt;
}
