#include "mainwindow/send/SendRules.h"

std::optional<int> StatusCodeOf(const QString& text)
{
    constexpr int HighestCode = 31;

    bool number = false;
    const int code = text.left(2).toInt(&number);
    return number && code >= 0 && code <= HighestCode ? std::optional(code) : std::nullopt;
}

QString WithoutOuterBlanks(const QString& text)
{
    qsizetype first = 0;
    qsizetype end = text.size();
    while (first < end && text[first] == QLatin1Char(' '))
        ++first;
    while (end > first && text[end - 1] == QLatin1Char(' '))
        --end;
    return text.mid(first, end - first);
}

std::optional<QString> MessageOf(const QString& text)
{
    const QString message = WithoutOuterBlanks(text);
    return message.isEmpty() || message.size() > LongestMessage ? std::nullopt : std::optional(message);
}
