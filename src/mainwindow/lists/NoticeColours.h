#pragma once

#include <QColor>

class QWidget;

// Colours of the window's notices. They are the same on a light and a dark desktop, since they carry a
// meaning.
namespace NoticeColours {

constexpr QRgb EmergencyBack = 0xffb3261e;
constexpr QRgb WarningBack = 0xffffe3a8;
constexpr QRgb WarningText = 0xff241a00;
constexpr QRgb SimulationBack = 0xff6b4fa8;
constexpr QRgb White = 0xffffffff;

// Fills the widget's background; its labels take over the text's colour.
void Colour(QWidget& widget, QRgb back, QRgb text);

} // namespace NoticeColours
