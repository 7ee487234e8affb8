#include "dao/base/Words.h"
#include "dao/base/TextMatch.h"

namespace dao {

namespace {

constexpr int StatusKind = 1;
constexpr char16_t StatusMark = 0xE001;
constexpr char16_t KindMark = 0xE002;

// The engines agree on these classes.
bool IsOfWord(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Letter_Uppercase:
    case QChar::Letter_Lowercase:
    case QChar::Letter_Titlecase:
    case QChar::Letter_Modifier:
    case QChar::Letter_Other:
    case QChar::Number_DecimalDigit:
        return true;
    default:
        return false;
    }
}

} // namespace

QStringList WordsOf(const QString& text)
{
    QStringList words;
    QString word;
    const QString folded = Fold(text);
    for (qsizetype i = 0; i < folded.size(); ++i) {
        const bool pair = folded[i].isHighSurrogate() && i + 1 < folded.size();
        const char32_t character =
            pair ? QChar::surrogateToUcs4(folded[i], folded[i + 1]) : char32_t(folded[i].unicode());
        if (IsOfWord(character)) {
            word += QStringView(folded).mid(i, pair ? 2 : 1);
        } else if (!word.isEmpty()) {
            words.append(word);
            word.clear();
        }
        i += pair ? 1 : 0;
    }
    if (!word.isEmpty())
        words.append(word);
    return words;
}

QString WordOfStatus(const QString& code)
{
    return QChar(StatusMark) + code;
}

QString WordOfKind(int kind)
{
    return QChar(KindMark) + QString::number(kind);
}

QStringList EventWords(int kind, const QString& content, const QStringList& parties)
{
    return (kind == StatusKind ? QStringList{WordOfStatus(content)} : WordsOf(content)) +
           QStringList{WordOfKind(kind)} + WordsOf(parties.join(u' '));
}

} // namespace dao
