#include "core/texts/FormatMessage.h"

#include "core/texts/StringSource.h"

namespace {

bool IsAsciiDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

// The number of the placeholder whose "#" stands at `hash`; 0 when no two digits follow.
int PlaceholderNumber(const QString& text, qsizetype hash)
{
    if (hash + 2 >= text.size() || !IsAsciiDigit(text[hash + 1]) || !IsAsciiDigit(text[hash + 2]))
        return 0;
    return text[hash + 1].digitValue() * 10 + text[hash + 2].digitValue();
}

// What the escape stands for whose backslash is at `backslash`, and how many units of text it takes.
struct Escape {
    QStringView expansion;
    qsizetype length;
};

Escape EscapeAt(const QString& text, qsizetype backslash)
{
    if (backslash + 1 >= text.size())
        return {u"", 1};
    const QChar character = text[backslash + 1];
    if (character == u'n')
        return {u"\r\n", 2};
    if (character == u't')
        return {u"\t", 2};
    if (character == u'\\')
        return {u"\\", 2};
    const bool pair =
        character.isHighSurrogate() && backslash + 2 < text.size() && text[backslash + 2].isLowSurrogate();
    return {u"", pair ? 3 : 2};
}

} // namespace

QString FormatMessage(const QString& text, const QStringList& values)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype pos = 0; pos < text.size();) {
        const QChar character = text[pos];
        if (character == u'\\') {
            const Escape escape = EscapeAt(text, pos);
            result += escape.expansion;
            pos += escape.length;
            continue;
        }
        const int number = character == u'#' ? PlaceholderNumber(text, pos) : 0;
        if (number >= 1 && number <= values.size()) {
            result += values[number - 1];
            pos += 3;
        } else {
            result += character;
            ++pos;
        }
    }
    return result;
}

QString FormatMessage(const IStringSource& strings, int id, const QStringList& values)
{
    return FormatMessage(strings.LoadString(id), values);
}
