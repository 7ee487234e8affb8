#pragma once

#include <QString>

// Text of the status panel "field": the field strength 0..255 in decimal and a bar of eight characters, one
// "|" for every 32 steps ("100 |||.....").
QString FieldBarText(int fieldStrength);
