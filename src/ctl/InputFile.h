#pragma once

#include <QByteArray>
#include <QString>

// The whole file. Raises Error that names it when it cannot be read.
QByteArray ReadInputFile(const QString& path);
