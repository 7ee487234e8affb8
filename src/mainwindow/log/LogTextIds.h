#pragma once

// Catalogue ids of what is said of a line's pictures in the message log.
namespace LogText {

constexpr int Emergency = 7040;
constexpr int StatusIn = 7041;
constexpr int StatusOut = 7042;
constexpr int TextIn = 7043;
constexpr int TextOut = 7044;
constexpr int CallIn = 7045;
constexpr int CallOut = 7046;

} // namespace LogText
