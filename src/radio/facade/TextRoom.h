#pragma once

#include <QString>

// How much a text may still grow.
struct TextRoom {
    int left = 0;       // characters; negative: too many
    QString unsendable; // the first character that the coding does not have; empty: it has all
};

// Of a text as it goes on the air.
TextRoom RoomOf(const QString& sent, bool eightBit);
