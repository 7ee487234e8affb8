#include "dao/base/TextMatch.h"
#include <algorithm>

namespace dao {

namespace {

bool IsAscii(const QString& text)
{
    return std::all_of(
        text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

} // namespace

QString Fold(const QString& text)
{
    if (IsAscii(text))
        return text.toLower();
    std::u32string characters = text.normalized(QString::NormalizationForm_C).toStdU32String();
    for (char32_t& character : characters)
        character = QChar::toCaseFolded(character);
    return QString::fromStdU32String(characters);
}

QString WithSignsForNull(QString text)
{
    constexpr char16_t sign = 0x2400;
    return text.replace(QChar::Null, QChar(sign));
}

LookFor::LookFor(const QString& pattern) : m_pattern(U'*' + Fold(pattern).toStdU32String() + U'*') {}

// Greedy match with one point of return: when the text after the last "*" does not fit, that "*" takes one
// more character.
bool LookFor::Matches(const QString& text) const
{
    const std::u32string subject = Fold(text).toStdU32String();
    std::size_t p = 0;
    std::size_t s = 0;
    std::size_t star = std::u32string::npos;
    std::size_t starSubject = 0;
    while (s < subject.size()) {
        if (p < m_pattern.size() && m_pattern[p] == U'*') {
            star = p++;
            starSubject = s;
        } else if (p < m_pattern.size() && (m_pattern[p] == U'?' || m_pattern[p] == subject[s])) {
            ++p;
            ++s;
        } else if (star != std::u32string::npos) {
            p = star + 1;
            s = ++starSubject;
        } else {
            return false;
        }
    }
    return std::all_of(m_pattern.begin() + static_cast<std::ptrdiff_t>(p), m_pattern.end(),
                       [](char32_t c) { return c == U'*'; });
}

} // namespace dao
