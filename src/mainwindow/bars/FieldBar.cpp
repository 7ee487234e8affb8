#include "mainwindow/bars/FieldBar.h"

#include <algorithm>

namespace {

constexpr int StepsPerMark = 32;
constexpr int Marks = 8;

// n / 32 to the nearest integer; halves go to the even one.
int RoundedMarks(int n)
{
    const int whole = n / StepsPerMark;
    const int twiceRest = 2 * (n % StepsPerMark);
    const bool up = twiceRest > StepsPerMark || (twiceRest == StepsPerMark && whole % 2 == 1);
    return up ? whole + 1 : whole;
}

} // namespace

QString FieldBarText(int fieldStrength)
{
    const int marks = std::clamp(RoundedMarks(std::max(fieldStrength, 0) + 1), 0, Marks);
    return QStringLiteral("%1 %2%3")
        .arg(fieldStrength)
        .arg(QString(marks, QLatin1Char('|')), QString(Marks - marks, QLatin1Char('.')));
}
