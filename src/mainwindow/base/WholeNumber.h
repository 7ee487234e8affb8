#pragma once

#include <QString>
#include <optional>

// The whole number that a typed text stands for; a fraction is rounded, halves to the even number. Nothing
// for a text that is no number or one that a 32-bit integer cannot hold.
std::optional<int> WholeNumber(const QString& text);
