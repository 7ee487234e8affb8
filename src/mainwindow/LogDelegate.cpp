#include "mainwindow/LogDelegate.h"

namespace {

constexpr char16_t FirstPrintable = 0x20;
constexpr char16_t Delete = 0x7F;
constexpr char16_t ControlPictures = 0x2400;
constexpr char16_t DeletePicture = 0x2421;
constexpr char16_t LineEndSign = 0x21B5;
constexpr char16_t TabSign = 0x21E5;

QChar SignOf(QChar character)
{
    switch (character.unicode()) {
    case u'\r':
    case u'\n':
        return QChar(LineEndSign);
    case u'\t':
        return QChar(TabSign);
    case Delete:
        return QChar(DeletePicture);
    default:
        return QChar(static_cast<char16_t>(ControlPictures + character.unicode()));
    }
}

} // namespace

QString LogDelegate::displayText(const QVariant& value, const QLocale&) const
{
    QString text = value.toString();
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    for (QChar& character : text) {
        if (character.unicode() < FirstPrintable || character.unicode() == Delete) {
            character = SignOf(character);
        }
    }
    return text;
}
