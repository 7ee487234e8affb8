#pragma once

#include <QColor>

class QWidget;

// Colours of what the window has to say. They are its own on a light and on a dark desktop, since they mean
// something.
namespace NoticeColours {

constexpr QRgb EmergencyBack = 0xffb3261e;
constexpr QRgb WarningBack = 0xffffe3a8;
constexpr QRgb WarningText = 0xff241a00;
constexpr QRgb SimulationBack = 0xff6b4fa8;
constexpr QRgb White = 0xffffffff;

// Fills the widget's background; its labels take over the text's colour.
void Colour(QWidget& widget, QRgb back, QRgb text);

} // namespace NoticeColours
