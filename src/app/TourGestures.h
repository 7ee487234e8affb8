#pragma once

#include "app/TourHand.h"

// The gestures that the chapters of the tour are made of, on controls named by a literal.

inline void Click(const char* name)
{
    TourHand::Click(QString::fromLatin1(name));
}

inline void Type(const char* name, const QString& text)
{
    TourHand::Type(QString::fromLatin1(name), text);
}

inline void Menu(const char* menu, const char* item)
{
    TourHand::Menu(QString::fromLatin1(menu), QString::fromLatin1(item));
}
