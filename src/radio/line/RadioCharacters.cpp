#include "radio/line/RadioCharacters.h"

#include "map27/codec/CodePage437.h"

QString FirstUnsendable(const QString& text)
{
    for (const char32_t character : text.toStdU32String())
        if (!map27::ToCodePage437(character))
            return QString::fromUcs4(&character, 1);
    return {};
}
