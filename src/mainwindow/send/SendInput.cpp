#include "mainwindow/send/SendInput.h"

std::optional<int> StatusCodeOf(const QString& text)
{
    constexpr int HighestCode = 31;

    bool number = false;
    const int code = text.left(2).toInt(&number);
    return number && code >= 0 && code <= HighestCode ? std::optional(code) : std::nullopt;
}

std::optional<QString> MessageOf(const QString& text)
{
    constexpr qsizetype LongestMessage = 100;

    qsizetype first = 0;
    qsizetype end = text.size();
    while (first < end && text[first] == QLatin1Char(' '))
        ++first;
    while (end > first && text[end - 1] == QLatin1Char(' '))
        --end;
    const QString message = text.mid(first, end - first);
    return message.isEmpty() || message.size() > LongestMessage ? std::nullopt : std::optional(message);
}
