#pragma once

#include <QPalette>

// The palette with a text of selected items that can be read: where text and background differ too little
// (less than 4.5 to 1), the text is black or white. One of the two always suffices.
QPalette WithReadableSelection(const QPalette& palette);

// Contrast of two colours, 1 to 21, as the Web Content Accessibility Guidelines define it.
double Contrast(const QColor& first, const QColor& second);
