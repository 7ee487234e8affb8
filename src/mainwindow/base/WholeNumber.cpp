#include "mainwindow/base/WholeNumber.h"

#include <QLocale>
#include <cmath>
#include <limits>

std::optional<int> WholeNumber(const QString& text)
{
    bool number = false;
    double value = QLocale::c().toDouble(text.trimmed(), &number);
    if (!number)
        value = QLocale().toDouble(text.trimmed(), &number);
    if (!number || !std::isfinite(value))
        return std::nullopt;
    const double rounded = std::nearbyint(value); // the default rounding mode takes halves to the even number
    if (rounded < std::numeric_limits<int>::min() || rounded > std::numeric_limits<int>::max())
        return std::nullopt;
    return static_cast<int>(rounded);
}
