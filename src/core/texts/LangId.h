#pragma once

#include <QLocale>

// Windows language identifiers: the low ten bits are the primary language, the rest its variant.
constexpr quint16 LangIdEnglishUs = 0x0409;

constexpr quint16 PrimaryLanguage(quint16 langId)
{
    return langId & 0x03ff;
}

// The identifier of a locale. A country without an identifier of its own gets that of its language's first
// country, an unknown language LangIdEnglishUs.
quint16 LangIdOf(const QLocale& locale);

// The locale of an identifier; of an unknown variant the language's first country, of an unknown language the
// C locale.
QLocale LocaleOf(quint16 langId);
