#pragma once

#include <QByteArray>
#include <QString>

// The key by which the log proves itself, one for each account of the system that runs consoles. It lies
// beside the consoles' identity and is for that account alone. Raises Error, in words.
namespace LogKey {

// Where a folder keeps it.
QString FileIn(const QString& folder);
// Made when there is none; the first of several consoles makes it. A key that others may read or exchange
// proves nothing and is refused.
QByteArray Own(const QString& folder);
// Of a file that was named.
QByteArray Read(const QString& file);

} // namespace LogKey
