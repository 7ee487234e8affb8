#include "tour/TourWord.h"

#include <utility>

QRegularExpression PatternOf(const QString& shape)
{
    static const std::pair<const char*, const char*> values[] = {
        {"NAME", "([^\\s\"/]+)"}, {"PLACE", "([^\\s\"]+(?:\"[^\"]*\")?)"},
        {"TEXT", "(\"[^\"]*\")"}, {"KEY", "([^\\s\"]+)"},
        {"NUMBER", "(\\d{1,6})"}, {"REST", "(.+)"},
    };
    QString pattern = QRegularExpression::escape(shape).replace(QLatin1String("\\ "), QLatin1String(" +"));
    for (const auto& [value, expression] : values)
        pattern.replace(QLatin1String(value), QLatin1String(expression));
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern));
}
