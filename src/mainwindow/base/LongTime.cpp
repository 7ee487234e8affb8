#include "mainwindow/base/LongTime.h"

#include <QLocale>

namespace {

// The locale's long time format without its zone, which Qt writes as "t" to "tttt", in some locales in
// brackets.
QString FormatWithoutZone(const QString& format)
{
    QString result;
    bool quoted = false;
    for (const QChar character : format) {
        if (character == QLatin1Char('\''))
            quoted = !quoted;
        if (quoted || character != QLatin1Char('t'))
            result += character;
    }
    result.remove(QLatin1String("()"));
    return result.simplified();
}

} // namespace

QString LongTime(const QTime& time)
{
    const QLocale locale;
    return locale.toString(time, FormatWithoutZone(locale.timeFormat(QLocale::LongFormat)));
}
