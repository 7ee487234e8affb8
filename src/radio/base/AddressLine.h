#pragma once

#include <QString>
#include <QStringList>

// The addresses of a line, separated by ";", without the blanks around them; empty when it holds none.
QStringList ParseAddressLine(const QString& line);
