#pragma once

#include <QString>
#include <optional>

constexpr qsizetype LongestMessage = 100;

// The status code at the beginning of a typed or chosen text: the integer value of its first two characters.
// Nothing when they are no number or no code from 0 to 31.
std::optional<int> StatusCodeOf(const QString& text);

QString WithoutOuterBlanks(const QString& text);

// The message to send: the text without leading and trailing blanks. Nothing when that is empty or longer
// than 100 characters.
std::optional<QString> MessageOf(const QString& text);
