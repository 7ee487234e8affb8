#include "core/texts/Validation.h"

#include "core/texts/TextIds.h"
#include "dao/tables/AddressTable.h"

#include <QList>

namespace {

constexpr qsizetype LongestCallsign = 14;

bool IsDigit(uint character)
{
    return character >= '0' && character <= '9';
}

bool IsWord(const QList<uint>& characters)
{
    if (characters.isEmpty() || !QChar::isLetter(characters.first()))
        return false;
    for (const uint character : characters)
        if (!QChar::isLetter(character) && !IsDigit(character) && character != ' ' && character != '_')
            return false;
    return true;
}

} // namespace

bool IsLetter(const QString& text)
{
    const QList<uint> characters = text.left(2).toUcs4();
    return !characters.isEmpty() && QChar::isLetter(characters.first());
}

bool IsDigitText(const QString& text)
{
    return !text.isEmpty() && IsDigit(text[0].unicode());
}

bool IsValidCallsign(const QString& text)
{
    const QList<uint> characters = text.toUcs4();
    return characters.size() <= LongestCallsign && IsWord(characters);
}

bool IsValidName(const QString& text)
{
    return IsWord(text.toUcs4());
}

int ProblemOfCallsign(const dao::AddressRecord& entry)
{
    return IsValidCallsign(entry.callsign) ? 0 : CoreText::CallsignRule;
}

int ProblemOfName(const dao::AddressRecord& entry)
{
    return entry.kind == dao::EntryKind::Talkgroup || IsValidName(entry.name) ? 0 : CoreText::NameRule;
}
