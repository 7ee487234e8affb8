#pragma once

#include <QString>
#include <QStringList>
#include <ostream>

// GoogleTest would print a QString as a list of code units.
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QStringList& texts, std::ostream* out)
{
    PrintTo(texts.join("\", \""), out);
}
