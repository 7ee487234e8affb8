#pragma once

#include <QString>

// The first character that cannot be sent to a radio because code page 437 lacks it; empty when all can.
QString FirstUnsendable(const QString& text);
