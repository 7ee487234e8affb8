#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

// Text of one catalogue file, by id. See the catalogue's own heading for the line format.
using Catalogue = QHash<int, QString>;

// Reads a catalogue: UTF-8, one entry a line, `2057 "Radio dispatcher is already running."`. The text lies
// between the first and the last double quote of its line and is taken literally; its escapes are
// FormatMessage's affair. Blank lines and lines that begin with ";" are comments. Raises Error that names
// `name` and the line for a line of any other form or an id that is used twice, and for bytes that are not
// UTF-8.
Catalogue ParseCatalogue(const QByteArray& bytes, const QString& name);

// The same for a file. Raises Error also when the file cannot be read.
Catalogue ReadCatalogue(const QString& file);
