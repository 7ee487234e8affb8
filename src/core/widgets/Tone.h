#pragma once

#include <QByteArray>

// The two-tone sound that announces a message: 16-bit samples in the machine's byte order, one channel.
QByteArray MessageTone(int samplesPerSecond);
