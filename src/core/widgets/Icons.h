#pragma once

#include <QIcon>

class QWidget;

// A picture of the program by its key; a null icon for a key without one.
QIcon LoadIcon(const QString& key);

// Edge of the pictures in a widget's font, so that they grow with the text beside them.
QSize IconSize(const QWidget& widget);
QSize SmallIconSize(const QWidget& widget);
